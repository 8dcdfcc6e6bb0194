#include "ui/colour_button_win.h"

#include "ui/handles_win.h"

#include <commdlg.h>

#include <array>

namespace facetor {

namespace {

COLORREF screenColour(Rgb555 colour)
{
    const auto [red, green, blue] = toScreenColour(colour);
    return RGB(red, green, blue);
}

} // namespace

void drawColourButton(const DRAWITEMSTRUCT& item, Rgb555 colour)
{
    RECT area = item.rcItem;
    const bool down = (item.itemState & ODS_SELECTED) != 0;
    DrawFrameControl(item.hDC, &area, DFC_BUTTON, DFCS_BUTTONPUSH | (down ? DFCS_PUSHED : 0));
    InflateRect(&area, -4, -4);
    if (down) OffsetRect(&area, 1, 1);
    const UniqueHandle<HBRUSH, DeleteObject> brush(CreateSolidBrush(screenColour(colour)));
    FillRect(item.hDC, &area, brush.get());
    FrameRect(item.hDC, &area, GetSysColorBrush(COLOR_BTNSHADOW));
    if (item.itemState & ODS_FOCUS) {
        InflateRect(&area, 2, 2);
        DrawFocusRect(item.hDC, &area);
    }
}

Rgb555 pickColour(HWND owner, Rgb555 colour)
{
    static std::array<COLORREF, 16> customColours{};
    CHOOSECOLORA choice{};
    choice.lStructSize = sizeof choice;
    choice.hwndOwner = owner;
    choice.rgbResult = screenColour(colour);
    choice.lpCustColors = customColours.data();
    choice.Flags = CC_RGBINIT | CC_FULLOPEN;
    return ChooseColorA(&choice) ? fromPickedColour(choice.rgbResult) : colour;
}

Rgb555 fromPickedColour(COLORREF picked)
{
    const int blue = (GetBValue(picked) & 0xFB) >> 2;
    return static_cast<Rgb555>(rgb555(GetRValue(picked) >> 3, GetGValue(picked) >> 3, 0) | blue);
}

} // namespace facetor
