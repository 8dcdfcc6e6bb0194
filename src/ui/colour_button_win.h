#pragma once

#include "base/colour.h"

#include <windows.h>

namespace facetor {

/// Draws an owner-drawn button that shows a colour, for the draw-item message.
void drawColourButton(const DRAWITEMSTRUCT& item, Rgb555 colour);

/// Lets the user choose a colour in the system's dialog, with sixteen custom colours that are kept
/// for the run. Returns `colour` when the user cancels.
Rgb555 pickColour(HWND owner, Rgb555 colour);

/// The colour that the system's dialog answers with, as pickColour() returns it: red and green by
/// their top five bits, blue by its top six but for one, of which the highest goes into the lowest
/// bit of green.
Rgb555 fromPickedColour(COLORREF picked);

} // namespace facetor
