#pragma once

#include "base/colour.h"

#include <windows.h>

namespace facetor {

/// The system's form of a colour, as the screen shows it.
COLORREF screenColour(Rgb555 colour);

/// Draws an owner-drawn button that shows a colour, for the draw-item message. A button with a text
/// shows the colour on its left and the text beside it. The keyboard's focus is marked with the
/// program's bitmap "IDB_MESH0", laid along the colour's edge.
void drawColourButton(const DRAWITEMSTRUCT& item, Rgb555 colour);

/// The same of a button that stands for several colours at once: it shows stripes.
void drawMixedColourButton(const DRAWITEMSTRUCT& item);

} // namespace facetor
