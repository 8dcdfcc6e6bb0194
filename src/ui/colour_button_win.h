#pragma once

#include "base/colour.h"

#include <windows.h>

namespace facetor {

/// The system's form of a colour, as the screen shows it.
COLORREF screenColour(Rgb555 colour);

/// Draws an owner-drawn button that shows a colour, for the draw-item message. A button with a text
/// shows the colour on its left and the text beside it.
void drawColourButton(const DRAWITEMSTRUCT& item, Rgb555 colour);

} // namespace facetor
