#pragma once

#include "base/colour.h"
#include "ui/alert.h"
#include "ui/module.h"

#include <windows.h>

#include <array>

namespace facetor {

enum class ColourPicker {
    module, ///< the module colourModuleName beside the program
    system, ///< the system's colour dialog
};

inline constexpr char colourModuleName[] = "GetColor.dll";

/// How colours are chosen: one of it in the program.
struct ColourPicking {
    ColourPicker picker = ColourPicker::module;
    std::array<COLORREF, 16> customColours{}; ///< of the system's dialog
    UniqueModule module;                      ///< from the first colour that it chose on
};

/// Lets the user choose a colour, in a dialog over `owner`, with the picker that is set. The module
/// is loaded from the program's folder and stays loaded; docs/colour-module.md describes it, and
/// its 16-bit answer is returned as it is. When it is missing, cannot be loaded or lacks its
/// export, an alert says so and the answer is 0, black. The system's dialog answers by
/// fromPickedColour(), or with `colour` when the user cancels.
Rgb555 pickColour(ColourPicking& picking, AlertState& alerts, HWND owner, Rgb555 colour);

/// The system's colour as pickColour() returns it: red and green by their top five bits, blue by
/// its top six but for one, of which the highest goes into the lowest bit of green.
Rgb555 fromPickedColour(COLORREF picked);

} // namespace facetor
