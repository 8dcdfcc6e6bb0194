#pragma once

#include "base/message.h"

#include <windows.h>

#include <shellapi.h>

#include <string>

namespace facetor {

/// The longest path that a drop is taken with, in bytes.
inline constexpr UINT longestDroppedPath = 256;

/// Takes the first of the files dropped on a window, ignores the others and ends the drop. An empty
/// path, with no message, for a drop without files or on a window that is disabled; cannotOpenFile
/// for a path that is too long, since one that was cut would name another file.
Message takeDroppedFile(HWND window, HDROP drop, std::string& path);

} // namespace facetor
