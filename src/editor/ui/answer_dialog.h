#pragma once

#include "base/message.h"

#include <windows.h>

#include <cstddef>
#include <optional>
#include <string>

namespace facetor {

/// Asks for one line of text in a dialog with a title and a prompt, which may be empty; `text` is
/// there to begin with. Returns its first `longest` bytes at most, or none when the user cancels.
std::optional<std::string> askAnswer(HWND owner, Word title, const std::string& prompt,
                                     const std::string& text, std::size_t longest);

} // namespace facetor
