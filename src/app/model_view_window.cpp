#include "app/model_view_window.h"

#include "app/editor_win.h"
#include "engine/frame_surface.h"
#include "resources/resource_ids.h"
#include "ui/handles_win.h"

#include <algorithm>

namespace facetor {

namespace {

/// Where the context menu opens, from the cursor, in pixels.
constexpr POINT contextMenuOffset{-32, -16};

const BITMAPINFO* bitmapInfo(const FrameSurface& surface)
{
    static_assert(sizeof(BitmapHeader) == sizeof(BITMAPINFOHEADER));
    return reinterpret_cast<const BITMAPINFO*>(&surface.header());
}

/// Copies the whole surface. Its width is rounded down to a multiple of 4; the up to three columns
/// of a narrow client area that this leaves repeat the surface's last one.
void presentSurface(HDC dc, const FrameSurface& surface, ClientSize client)
{
    const int width = surface.width, height = surface.height;
    SetDIBitsToDevice(dc, 0, 0, static_cast<DWORD>(width), static_cast<DWORD>(height), 0, 0, 0,
                      static_cast<UINT>(height), surface.pixels(), bitmapInfo(surface),
                      DIB_RGB_COLORS);
    const int missing = std::min(client.width, surfaceMaxWidth) - width;
    if (missing > 0)
        StretchDIBits(dc, width, 0, missing, height, width - 1, 0, 1, height, surface.pixels(),
                      bitmapInfo(surface), DIB_RGB_COLORS, SRCCOPY);
}

/// The innermost submenu of `menu` that holds a command's item; nullptr when none does.
HMENU findMenuWith(HMENU menu, UINT command)
{
    const int count = GetMenuItemCount(menu);
    for (int position = 0; position < count; ++position) {
        if (GetMenuItemID(menu, position) == command) return menu;
        if (const HMENU submenu = GetSubMenu(menu, position))
            if (const HMENU found = findMenuWith(submenu, command)) return found;
    }
    return nullptr;
}

void setLeftButton(Editor& editor, ButtonState state)
{
    editor.drag.left = state;
    editor.view.dragging = state == ButtonState::down;
}

} // namespace

ClientSize clientSize(HWND window)
{
    RECT client{};
    GetClientRect(window, &client);
    return {client.right, client.bottom};
}

void requestRedraw(Editor& editor)
{
    SendMessageA(editor.mainWindow, WM_USER, 0, 0);
}

void showFixedView(Editor& editor, FixedView direction)
{
    applyFixedView(editor.view, editor.engine, direction);
    requestRedraw(editor);
}

void paintModelView(Editor& editor)
{
    const PaintContext paint(editor.mainWindow);
    const ClientSize client = clientSize(editor.mainWindow);
    if (client.width == 0 || client.height == 0) return;
    paintFrame(editor.view, editor.engine, editor.document.model, client);
    presentSurface(paint.dc(), editor.engine.surface, client);
}

void eraseAroundModelView(Editor& editor, HDC dc)
{
    RECT client{};
    GetClientRect(editor.mainWindow, &client);
    ExcludeClipRect(dc, 0, 0, surfaceMaxWidth, surfaceMaxHeight);
    FillRect(dc, &client,
             reinterpret_cast<HBRUSH>(GetClassLongPtrA(editor.mainWindow, GCLP_HBRBACKGROUND)));
}

void onLeftButtonDown(Editor& editor)
{
    setLeftButton(editor, ButtonState::down);
    requestRedraw(editor);
}

void onLeftButtonUp(Editor& editor)
{
    editor.drag.delta = {0, 0};
    setLeftButton(editor, ButtonState::up);
    requestRedraw(editor);
}

void onRightButtonDown(Editor& editor, POINT position)
{
    editor.drag.right = ButtonState::down;
    const HMENU cameraMenu = findMenuWith(GetMenu(editor.mainWindow), IDM_CAMERA_FORWARD);
    ClientToScreen(editor.mainWindow, &position);
    TrackPopupMenu(cameraMenu, TPM_RIGHTBUTTON, position.x + contextMenuOffset.x,
                   position.y + contextMenuOffset.y, 0, editor.mainWindow, nullptr);
}

void onRightButtonUp(Editor& editor)
{
    editor.drag.delta = {0, 0};
    editor.drag.right = ButtonState::up;
}

void onMouseMove(Editor& editor, POINT position)
{
    DragState& drag = editor.drag;
    if (drag.left == ButtonState::down) {
        drag.delta = {position.x - drag.last.x, position.y - drag.last.y};
        requestRedraw(editor);
    }
    drag.last = position;
}

void onCursorLeft(Editor& editor)
{
    setLeftButton(editor, ButtonState::outside);
    editor.drag.right = ButtonState::outside;
}

} // namespace facetor
