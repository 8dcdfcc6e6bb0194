#pragma once

#include "get_color/recent_colours.h"

#include <windows.h>

namespace facetor {

/// Lets the user choose a 15-bit colour over `owner` (or over nothing). The chosen one has bit 15
/// as `given` has it and is remembered in `recent`; on Cancel, or when the dialog cannot be shown,
/// the answer is `given`. `instance` is the module whose resource the dialog is.
Rgb555 chooseColour(HINSTANCE instance, HWND owner, Rgb555 given, RecentColours& recent);

} // namespace facetor
