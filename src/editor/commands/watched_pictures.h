#pragma once

#include "watch/file_watch.h"

#include <string>
#include <vector>

namespace facetor {

struct Editor;

// The images that slots were imported from.

/// The images that are watched, as they were when they were read.
std::vector<WatchedFile> watchedPictures(const Editor& editor);

/// Puts images that have changed into the slots that still show what they were. What cannot be read
/// leaves its slots alone.
void rereadPictures(Editor& editor, const WatchAction& action);

/// The texture list at `path` was opened or saved: takes up, or keeps, where its textures came
/// from.
void recallPictures(Editor& editor, const std::string& path);
void rememberPictures(Editor& editor, const std::string& path);

} // namespace facetor
