#pragma once

#include <windows.h>

#include <cstdint>
#include <optional>

namespace facetor {

/// The whole number in an edit field, with blanks around it and a "-" allowed. None for any other
/// text, and for what 32 bits cannot hold.
std::optional<std::int32_t> numberIn(HWND dialog, int field);

void setNumber(HWND dialog, int field, std::int32_t number);

/// Gives a field the keyboard, its text selected, as after a wrong input.
void focusField(HWND dialog, int field);

} // namespace facetor
