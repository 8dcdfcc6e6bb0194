#include "ui/colour_button.h"

#include "ui/handles.h"
#include "ui/window_data.h"

#include <windows.h>

#include <uxtheme.h>
#include <vssym32.h>

#include <array>

namespace facetor {

namespace {

constexpr int border = 4; ///< from a button's edge to what it shows, in pixels

/// Draws the button's text into the area, with the mark of its mnemonic unless marks are hidden.
void drawCaption(const DRAWITEMSTRUCT& item, RECT area)
{
    // Wide: what is drawn by the system's drawing functions is not in the process's code page.
    std::array<wchar_t, 64> text{};
    GetWindowTextW(item.hwndItem, text.data(), static_cast<int>(text.size()));
    const UINT marks = item.itemState & ODS_NOACCEL ? DT_HIDEPREFIX : 0;
    SetBkMode(item.hDC, TRANSPARENT);
    SetTextColor(item.hDC, GetSysColor(COLOR_BTNTEXT));
    DrawTextW(item.hDC, text.data(), -1, &area, DT_LEFT | DT_VCENTER | DT_SINGLELINE | marks);
}

/// Draws a button without its content, as the system draws the others of the dialog.
void drawButton(const DRAWITEMSTRUCT& item, bool down)
{
    RECT area = item.rcItem;
    const UniqueHandle<HTHEME, CloseThemeData> theme(OpenThemeData(item.hwndItem, L"BUTTON"));
    if (!theme) {
        DrawFrameControl(item.hDC, &area, DFC_BUTTON, DFCS_BUTTONPUSH | (down ? DFCS_PUSHED : 0));
        return;
    }
    DrawThemeParentBackground(item.hwndItem, item.hDC, &area); // behind its round corners
    DrawThemeBackground(theme.get(), item.hDC, BP_PUSHBUTTON, down ? PBS_PRESSED : PBS_NORMAL,
                        &area, nullptr);
}

/// Lays the mesh along the edge of the colour.
void drawFocusMark(const DRAWITEMSTRUCT& item, RECT area)
{
    constexpr int lines = 4; // half the bitmap's size
    const UniqueHandle<HBITMAP, DeleteObject> mesh(
        LoadBitmapA(instanceOf(item.hwndItem), "IDB_MESH0"));
    const UniqueHandle<HBRUSH, DeleteObject> brush(CreatePatternBrush(mesh.get()));
    SetBrushOrgEx(item.hDC, area.left, area.top, nullptr);
    for (int i = 0; i < lines; ++i) {
        FrameRect(item.hDC, &area, brush.get());
        InflateRect(&area, -1, -1);
    }
}

/// Draws the button with what it shows filled by a brush.
void drawFilledButton(const DRAWITEMSTRUCT& item, HBRUSH brush)
{
    RECT area = item.rcItem;
    const bool down = (item.itemState & ODS_SELECTED) != 0;
    drawButton(item, down);
    InflateRect(&area, -border, -border);
    if (down) OffsetRect(&area, 1, 1);
    if (GetWindowTextLengthW(item.hwndItem) > 0) {
        const LONG swatchWidth = 2 * (area.bottom - area.top);
        RECT caption = area;
        caption.left += swatchWidth + 2 * border;
        area.right = area.left + swatchWidth;
        drawCaption(item, caption);
    }
    FillRect(item.hDC, &area, brush);
    FrameRect(item.hDC, &area, GetSysColorBrush(COLOR_BTNSHADOW));
    if (item.itemState & ODS_FOCUS) drawFocusMark(item, area);
}

} // namespace

COLORREF screenColour(Rgb555 colour)
{
    const auto [red, green, blue] = toScreenColour(colour);
    return RGB(red, green, blue);
}

void drawColourButton(const DRAWITEMSTRUCT& item, Rgb555 colour)
{
    const UniqueHandle<HBRUSH, DeleteObject> brush(CreateSolidBrush(screenColour(colour)));
    drawFilledButton(item, brush.get());
}

void drawMixedColourButton(const DRAWITEMSTRUCT& item)
{
    const UniqueHandle<HBRUSH, DeleteObject> brush(
        CreateHatchBrush(HS_FDIAGONAL, GetSysColor(COLOR_BTNSHADOW)));
    SetBkColor(item.hDC, GetSysColor(COLOR_BTNFACE));
    SetBkMode(item.hDC, OPAQUE);
    drawFilledButton(item, brush.get());
}

} // namespace facetor
