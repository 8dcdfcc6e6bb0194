#include "ui/colour_picker.h"

#include "ui/colour_button.h"
#include "ui/module.h"
#include "ui/window_data.h"

#include <windows.h>

#include <commdlg.h>

#include <optional>
#include <string>

namespace facetor {

namespace {

/// The module's export. It answers with 16 bits; what the register holds above them is not said.
using GetColourFunction = DWORD(WINAPI*)(HWND owner, WORD colour);
constexpr WORD getColourOrdinal = 1;

// The run-time of MinGW-w64 takes an index of the process at each loading on 32-bit x86, and does
// not give it back: a module that is loaded for each choice ends the program after some 1,080.
std::optional<Rgb555> pickWithModule(ColourPicking& picking, HWND owner, Rgb555 colour)
{
    const std::string folder = programFolder(nullptr);
    if (folder.empty()) return std::nullopt;
    if (!picking.module) picking.module = loadModule(folder + "\\" + colourModuleName);
    if (!picking.module) return std::nullopt;
    const auto getColour =
        exportOf<GetColourFunction>(picking.module, reinterpret_cast<LPCSTR>(getColourOrdinal));
    if (!getColour) {
        picking.module.reset(); // another one may be put in its place
        return std::nullopt;
    }
    return static_cast<Rgb555>(getColour(owner, colour));
}

Rgb555 pickWithSystem(ColourPicking& picking, HWND owner, Rgb555 colour)
{
    CHOOSECOLORA choice{};
    choice.lStructSize = sizeof choice;
    choice.hwndOwner = owner;
    choice.rgbResult = screenColour(colour);
    choice.lpCustColors = picking.customColours.data();
    choice.Flags = CC_RGBINIT | CC_FULLOPEN;
    return ChooseColorA(&choice) ? fromPickedColour(choice.rgbResult) : colour;
}

} // namespace

Rgb555 pickColour(ColourPicking& picking, AlertState& alerts, HWND owner, Rgb555 colour)
{
    if (picking.picker == ColourPicker::system) return pickWithSystem(picking, owner, colour);
    if (const auto picked = pickWithModule(picking, owner, colour)) return *picked;
    setAlertTexts(alerts, colourModuleName, {});
    alert(alerts, nullptr, Message::cannotFindModule, AlertStyle::stop);
    return 0;
}

Rgb555 fromPickedColour(COLORREF picked)
{
    const int blue = (GetBValue(picked) & 0xFB) >> 2;
    return static_cast<Rgb555>(rgb555(GetRValue(picked) >> 3, GetGValue(picked) >> 3, 0) | blue);
}

} // namespace facetor
