#pragma once

#include "base/message.h"

#include <windows.h>

#include <shellapi.h>

#include <string>

namespace facetor {

/// The longest path that a drop is taken with, in bytes.
inline constexpr UINT longestDroppedPath = 256;

/// Takes the first of the dropped files, ignores the others and ends the drop. An empty path, with
/// no message, for a drop without files; cannotOpenFile for a path that is too long, since one that
/// was cut would name another file.
Message takeDroppedFile(HDROP drop, std::string& path);

} // namespace facetor
