#include "get_color/colour_part_window.h"

#include "ui/handles.h"

#include <windowsx.h>

namespace facetor {

namespace {

/// From the window's edge to the inside, in pixels: the focus mark, a gap and the frame.
constexpr int margin = 3;

LRESULT sendToDialog(HWND part, UINT message, LPARAM argument)
{
    return SendMessageA(GetParent(part), message, static_cast<WPARAM>(GetDlgCtrlID(part)),
                        argument);
}

PartSize insideOf(HWND part)
{
    RECT area{};
    GetClientRect(part, &area);
    return {area.right - 2 * margin, area.bottom - 2 * margin};
}

void drawPart(HWND part, HDC dc, RECT area)
{
    FillRect(dc, &area, GetSysColorBrush(COLOR_BTNFACE));
    if (GetFocus() == part) DrawFocusRect(dc, &area);
    InflateRect(&area, 1 - margin, 1 - margin);
    FrameRect(dc, &area, GetSysColorBrush(COLOR_BTNSHADOW));
    InflateRect(&area, -1, -1);
    IntersectClipRect(dc, area.left, area.top, area.right, area.bottom);
    SetViewportOrgEx(dc, area.left, area.top, nullptr);
    const PartPaint paint{dc, {area.right - area.left, area.bottom - area.top}};
    sendToDialog(part, messageDrawPart, reinterpret_cast<LPARAM>(&paint));
}

/// Draws into a bitmap first: a part is drawn anew for each move of the mouse, and shall not
/// flicker.
void onPaint(HWND part)
{
    const PaintContext paint(part);
    RECT area{};
    GetClientRect(part, &area);
    const UniqueHandle<HDC, DeleteDC> memory(CreateCompatibleDC(paint.dc()));
    const UniqueHandle<HBITMAP, DeleteObject> bitmap(
        CreateCompatibleBitmap(paint.dc(), area.right, area.bottom));
    const int saved = SaveDC(memory.get());
    SelectObject(memory.get(), bitmap.get());
    const int drawing = SaveDC(memory.get());
    drawPart(part, memory.get(), area);
    RestoreDC(memory.get(), drawing);
    BitBlt(paint.dc(), 0, 0, area.right, area.bottom, memory.get(), 0, 0, SRCCOPY);
    RestoreDC(memory.get(), saved);
}

void onMouse(HWND part, LPARAM position)
{
    const PartSize size = insideOf(part);
    if (size.width < 1 || size.height < 1) return;
    const PartPointing pointing{{GET_X_LPARAM(position) - margin, GET_Y_LPARAM(position) - margin},
                                size};
    sendToDialog(part, messagePartPoint, reinterpret_cast<LPARAM>(&pointing));
}

LRESULT CALLBACK partProcedure(HWND part, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_ERASEBKGND: return 1;
    case WM_PAINT: onPaint(part); return 0;
    case WM_SETFOCUS:
    case WM_KILLFOCUS: InvalidateRect(part, nullptr, FALSE); return 0;
    case WM_GETDLGCODE: return DLGC_WANTARROWS;
    case WM_KEYDOWN: sendToDialog(part, messagePartKey, static_cast<LPARAM>(wParam)); return 0;
    case WM_LBUTTONDOWN:
        if (GetWindowLongPtrA(part, GWL_STYLE) & WS_TABSTOP) SetFocus(part);
        SetCapture(part);
        onMouse(part, lParam);
        return 0;
    case WM_MOUSEMOVE:
        if (GetCapture() == part) onMouse(part, lParam);
        return 0;
    case WM_LBUTTONUP: ReleaseCapture(); return 0;
    default: return DefWindowProcA(part, message, wParam, lParam);
    }
}

} // namespace

ColourPartClass::ColourPartClass(HINSTANCE instance) : instance_(instance)
{
    WNDCLASSA description{};
    description.lpfnWndProc = partProcedure;
    description.hInstance = instance;
    description.hCursor = LoadCursorA(nullptr, IDC_ARROW);
    description.lpszClassName = colourPartClass;
    RegisterClassA(&description);
}

ColourPartClass::~ColourPartClass()
{
    UnregisterClassA(colourPartClass, instance_);
}

} // namespace facetor
