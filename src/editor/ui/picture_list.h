#pragma once

#include "keep/small_picture.h"
#include "ui/list_columns.h"

#include <windows.h>

#include <cstdint>
#include <initializer_list>
#include <string>
#include <vector>

namespace facetor {

// A list in a dialog whose rows begin with a picture: a list view in its report form.

/// Makes columns, the first one with room for pictures, as large as the screen's resolution asks
/// for.
void preparePictureList(HWND list, std::initializer_list<ListColumn> columns);

/// The sides of the pictures that addPictureRow() takes, in pixels.
struct PictureSize {
    std::uint32_t width, height;
};
PictureSize pictureSizeOf(HWND list);

/// Adds a row behind the others, with a text for each column.
void addPictureRow(HWND list, const SmallPicture& picture, const std::vector<std::string>& texts);

/// Removes rows and pictures.
void clearPictureList(HWND list);

/// Chooses a row and brings it into sight.
void choosePictureRow(HWND list, int row);
/// The chosen row; -1 for none.
int chosenPictureRow(HWND list);

/// A time in seconds since 1970 as the user's system writes it, date and time of day.
std::string localTimeText(std::int64_t seconds);

/// Bytes in whole kilobytes, as lists of files show them.
std::string sizeText(HWND window, std::uint64_t bytes);

} // namespace facetor
