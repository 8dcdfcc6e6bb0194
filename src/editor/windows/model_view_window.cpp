#include "windows/model_view_window.h"

#include "engine/frame_surface.h"
#include "resources/resource_ids.h"
#include "state/editor.h"
#include "ui/handles.h"
#include "ui/menu.h"
#include "ui/window_data.h"
#include "view/select_more.h"
#include "windows/attribute_window.h"
#include "windows/draw_order_view.h"
#include "windows/hierarchy_window.h"
#include "windows/main_tool_bar.h"
#include "windows/slice_view.h"
#include "windows/view_gestures.h"

#include <algorithm>
#include <utility>

namespace facetor {

namespace {

/// Where the context menu opens, from the cursor, in pixels.
constexpr POINT contextMenuOffset{-32, -16};

/// What an arrow key stands for, in pixels that the mouse would move.
constexpr LONG keyStep = 8;
constexpr LONG smallKeyStep = 1;

const BITMAPINFO* bitmapInfo(const FrameSurface& surface)
{
    static_assert(sizeof(BitmapHeader) == sizeof(BITMAPINFOHEADER));
    return reinterpret_cast<const BITMAPINFO*>(&surface.header());
}

/// Copies the whole surface, each of its pixels as a square of `zoom` ones. Its width is rounded
/// down to a multiple of 4; the up to three columns of a narrow client area that this leaves repeat
/// the surface's last one.
void presentSurface(HDC dc, const FrameSurface& surface, ClientSize size, int zoom)
{
    const int width = surface.width, height = surface.height;
    if (zoom == 1) {
        SetDIBitsToDevice(dc, 0, 0, static_cast<DWORD>(width), static_cast<DWORD>(height), 0, 0, 0,
                          static_cast<UINT>(height), surface.pixels(), bitmapInfo(surface),
                          DIB_RGB_COLORS);
    } else {
        SetStretchBltMode(dc, COLORONCOLOR); // the nearest pixel
        StretchDIBits(dc, 0, 0, width * zoom, height * zoom, 0, 0, width, height, surface.pixels(),
                      bitmapInfo(surface), DIB_RGB_COLORS, SRCCOPY);
    }
    const int missing = std::min(size.width, surfaceMaxWidth) - width;
    if (missing > 0)
        StretchDIBits(dc, width * zoom, 0, missing * zoom, height * zoom, width - 1, 0, 1, height,
                      surface.pixels(), bitmapInfo(surface), DIB_RGB_COLORS, SRCCOPY);
}

/// Lets what is drawn from here on have its places in pixels of the view.
void scaleToView(HDC dc, int zoom)
{
    if (zoom == 1) return;
    SetMapMode(dc, MM_ANISOTROPIC);
    SetWindowExtEx(dc, 1, 1, nullptr);
    SetViewportExtEx(dc, zoom, zoom, nullptr);
}

void setLeftButton(Editor& editor, ButtonState state)
{
    editor.drag.left = state;
    editor.view.dragging = state == ButtonState::down || editor.drag.middle == ButtonState::down;
}

void moveModel(Editor& editor)
{
    const POINT delta = std::exchange(editor.drag.delta, POINT{0, 0});
    const POINT cursor = editor.drag.last;
    applyViewTool(editor.view, editor.engine, editor.toolBox.tool,
                  {delta.x, delta.y, {cursor.x, cursor.y}, isKeyDown(VK_SHIFT)});
}

/// In the other windows, the polygon that was picked last.
void showPicked(Editor& editor, std::uint32_t polygon)
{
    loadWorkingAttribute(editor, polygon);
    showObjectOf(editor, polygon);
}

void pickAtCursor(Editor& editor)
{
    const bool held = editor.drag.left == ButtonState::down;
    if (!held && !editor.band.open) return;
    listFrame(editor.view, editor.engine, editor.document.model, viewSize(editor));
    sortPolygons(editor.engine);
    const POINT cursor = editor.drag.last;
    const PickInput input{
        {cursor.x, cursor.y}, held, isKeyDown(VK_SHIFT), isKeyDown(VK_CONTROL), isKeyDown(VK_TAB)};
    Model& model = editor.document.model;
    const auto polygon = pickPolygons(model, editor.engine, editor.band, input);
    dropHidden(model, editor.view.hidden); // a whole object may have been marked
    if (polygon) showPicked(editor, *polygon);
}

void pickWithKey(Editor& editor, POINT direction)
{
    listFrame(editor.view, editor.engine, editor.document.model, viewSize(editor));
    const Neighbour neighbour =
        direction.x + direction.y > 0 ? Neighbour::next : Neighbour::previous;
    if (const auto polygon =
            pickNeighbour(editor.document.model, editor.engine, neighbour, isKeyDown(VK_SHIFT)))
        showPicked(editor, *polygon);
}

} // namespace

std::optional<POINT> arrowDirection(WPARAM key)
{
    switch (key) {
    case VK_LEFT: return POINT{-1, 0};
    case VK_RIGHT: return POINT{1, 0};
    case VK_UP: return POINT{0, -1};
    case VK_DOWN: return POINT{0, 1};
    default: return std::nullopt;
    }
}

ClientSize clientSize(HWND window)
{
    RECT client{};
    GetClientRect(window, &client);
    return {client.right, client.bottom};
}

ClientSize viewSize(const Editor& editor)
{
    const ClientSize client = clientSize(editor.mainWindow);
    const auto begun = [&](std::int32_t pixels) {
        return (pixels + editor.zoom - 1) / editor.zoom;
    };
    return {begun(client.width), begun(client.height)};
}

POINT viewPosition(const Editor& editor, POINT client)
{
    // Rounded down, also left of and above the client area.
    const auto pixel = [&](LONG at) {
        return at >= 0 ? at / editor.zoom : -((editor.zoom - 1 - at) / editor.zoom);
    };
    return {pixel(client.x), pixel(client.y)};
}

void setViewZoom(Editor& editor, int zoom)
{
    editor.zoom = std::clamp(zoom, 1, mostViewZoom);
    // The view has other pixels now: the picture that is to be sliced stays within reach.
    if (std::optional<InclusiveRectangle>& place = editor.slice.place)
        place = draggedPlacement(*place, placementInside, 0, 0, viewSize(editor));
    refreshMenuState(editor);
    requestRedraw(editor);
    InvalidateRect(editor.mainWindow, nullptr, TRUE); // the surface may cover less now
}

void frameInDashes(HDC dc, const RECT& outline)
{
    // Diagonal stripes of four pixels: along any side they are dashes.
    constexpr WORD stripes[8] = {0xF0, 0xE1, 0xC3, 0x87, 0x0F, 0x1E, 0x3C, 0x78};
    const UniqueHandle<HBITMAP, DeleteObject> pattern(CreateBitmap(8, 8, 1, 1, stripes));
    const UniqueHandle<HBRUSH, DeleteObject> brush(CreatePatternBrush(pattern.get()));
    FrameRect(dc, &outline, brush.get());
}

void requestRedraw(Editor& editor)
{
    if (!isRunning(editor)) return;
    if (editor.toolBox.tool == ViewTool::selectPolygons)
        pickAtCursor(editor);
    else
        editor.band = RubberBand{}; // the tool may have been changed while one was open
    moveModel(editor);
    refreshMenuState(editor);
    showMixedValues(editor);
    editor.view.frameNeedsDrawing = true;
    InvalidateRect(editor.mainWindow, nullptr, FALSE);
}

void showFixedView(Editor& editor, FixedView direction)
{
    applyFixedView(editor.view, editor.engine, direction);
    requestRedraw(editor);
}

void paintModelView(Editor& editor)
{
    const PaintContext paint(editor.mainWindow);
    const ClientSize client = viewSize(editor);
    if (client.width == 0 || client.height == 0) return;
    const std::optional<PlacedTexture> slice = shownSlice(editor);
    if (paintFrame(editor.view, editor.engine, editor.document.model, client,
                   slice ? &*slice : nullptr))
        noteFrame(editor);
    presentSurface(paint.dc(), editor.engine.surface, client, editor.zoom);
    scaleToView(paint.dc(), editor.zoom);
    // What lies beside the surface is only erased, not painted anew: no overlay may reach there.
    IntersectClipRect(paint.dc(), 0, 0, surfaceMaxWidth, surfaceMaxHeight);
    if (editor.band.open) {
        const InclusiveRectangle& band = editor.band.rectangle;
        frameInDashes(paint.dc(), {band.left, band.top, band.right + 1, band.bottom + 1});
    }
    paintSliceOutline(editor, paint.dc());
    paintDrawOrder(editor, paint.dc());
}

void eraseAroundModelView(Editor& editor, HDC dc)
{
    RECT client{};
    GetClientRect(editor.mainWindow, &client);
    if (WindowFromDC(dc) != editor.mainWindow) { // the tool bar has its background from here
        FillRect(dc, &client, GetSysColorBrush(COLOR_BTNFACE));
        return;
    }
    const int saved = SaveDC(dc); // the paint message may go on with the same one
    ExcludeClipRect(dc, 0, 0, surfaceMaxWidth * editor.zoom, surfaceMaxHeight * editor.zoom);
    FillRect(dc, &client,
             reinterpret_cast<HBRUSH>(GetClassLongPtrA(editor.mainWindow, GCLP_HBRBACKGROUND)));
    RestoreDC(dc, saved);
}

void showMenuAt(Editor& editor, UINT command, POINT cursor)
{
    const HMENU menu = findMenuWith(GetMenu(editor.mainWindow), command);
    TrackPopupMenu(menu, TPM_RIGHTBUTTON, cursor.x + contextMenuOffset.x,
                   cursor.y + contextMenuOffset.y, 0, editor.mainWindow, nullptr);
}

void onLeftButtonDown(Editor& editor, POINT position)
{
    if (editor.drag.middle == ButtonState::down) return; // one drag at a time
    if (onAskedPixel(editor, position)) return;
    editor.drag.last = position;
    onSliceDown(editor, position);
    setLeftButton(editor, ButtonState::down);
    requestRedraw(editor);
}

void onLeftButtonUp(Editor& editor)
{
    editor.drag.delta = {0, 0};
    setLeftButton(editor, ButtonState::up);
    requestRedraw(editor);
}

void onRightButtonDown(Editor& editor, POINT position, WPARAM keys)
{
    editor.drag.right = ButtonState::down;
    ClientToScreen(editor.mainWindow, &position);
    const UINT command = keys & MK_CONTROL ? IDM_CAMERA_FORWARD
                         : keys & MK_SHIFT ? IDM_TOOL_ROTATE
                                           : IDM_EDIT_UNDO;
    showMenuAt(editor, command, position);
}

void onRightButtonUp(Editor& editor)
{
    editor.drag.delta = {0, 0};
    editor.drag.right = ButtonState::up;
}

void onMouseMove(Editor& editor, POINT position, WPARAM keys)
{
    DragState& drag = editor.drag;
    const POINT before = std::exchange(drag.last, position);
    if (drag.middle == ButtonState::down)
        return onMiddleDrag(editor, {position.x - before.x, position.y - before.y}, keys);
    if (drag.left != ButtonState::down) return;
    if (!(keys & MK_LBUTTON)) return onCursorLeft(editor); // released over another window
    drag.delta = {position.x - before.x, position.y - before.y};
    onSliceDrag(editor, drag.delta);
    requestRedraw(editor);
}

bool onViewKey(Editor& editor, WPARAM key)
{
    const std::optional<POINT> direction = arrowDirection(key);
    if (!direction || editor.drag.left == ButtonState::down) return false;
    const LONG step = isKeyDown(VK_CONTROL) ? smallKeyStep : keyStep;
    const POINT delta{direction->x * step, direction->y * step};
    switch (editor.toolBox.tool) {
    case ViewTool::selectPolygons: pickWithKey(editor, *direction); break;
    case ViewTool::moveSlicedTexture:
        moveSlice(editor, isKeyDown(VK_SHIFT) ? placementRight | placementBottom : placementInside,
                  delta);
        break;
    default: editor.drag.delta = delta; break;
    }
    requestRedraw(editor);
    return true;
}

void onCursorLeft(Editor& editor)
{
    const bool dragged = editor.drag.left == ButtonState::down;
    setLeftButton(editor, ButtonState::outside);
    editor.drag.right = ButtonState::outside;
    if (dragged) requestRedraw(editor); // in full again; what a rubber band holds now is picked
}

} // namespace facetor
