#pragma once

#include "base/message.h"

#include <windows.h>

#include <string>

namespace facetor {

struct Editor;

/// Shows as the main window's title the program's title, " - " and the name of the model's file.
void showTitle(Editor& editor);

/// The title of a window beside the main one: the program's title, " - " and a catalogue text.
void setWindowTitle(const Editor& editor, HWND window, Word word);

/// The path of the model's file, or "Untitled" for a model without one, as the title shows it.
std::string shownModelFile(const Editor& editor);

} // namespace facetor
