#include "windows/slice_view.h"

#include "resources/resource_ids.h"
#include "state/editor.h"
#include "ui/tool_bar.h"
#include "windows/main_tool_bar.h"
#include "windows/model_view_window.h"
#include "windows/tool_box_window.h"

namespace facetor {

namespace {

constexpr int handleSize = 7; ///< in pixels; odd, so that a handle has a middle

const char* cursorFor(unsigned sides)
{
    switch (sides) {
    case placementInside: return IDC_SIZEALL;
    case placementLeft:
    case placementRight: return IDC_SIZEWE;
    case placementTop:
    case placementBottom: return IDC_SIZENS;
    case placementLeft | placementTop:
    case placementRight | placementBottom: return IDC_SIZENWSE;
    default: return IDC_SIZENESW;
    }
}

bool isMoving(const Editor& editor)
{
    return editor.slice.shown && editor.toolBox.tool == ViewTool::moveSlicedTexture;
}

void paintHandle(HDC dc, int x, int y)
{
    const RECT handle{x - handleSize / 2, y - handleSize / 2, x + handleSize / 2 + 1,
                      y + handleSize / 2 + 1};
    FillRect(dc, &handle, static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH)));
    FrameRect(dc, &handle, static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH)));
}

} // namespace

InclusiveRectangle slicePlace(const Editor& editor)
{
    if (editor.slice.place) return *editor.slice.place;
    const TextureList& list = editor.document.textures;
    const TextureSlot& texture = list.slot(list.current);
    return startPlacement(viewSize(editor), texture.width, texture.height);
}

std::optional<PlacedTexture> shownSlice(Editor& editor)
{
    if (!editor.slice.shown) return std::nullopt;
    const TextureList& list = editor.document.textures;
    return PlacedTexture{list.slot(list.current), slicePlace(editor)};
}

void toggleShowSliced(Editor& editor)
{
    SliceView& slice = editor.slice;
    slice.shown = !slice.shown;
    setButtonState(editor.toolBox.toolBar, IDM_TOOL_MOVE_SLICE, slice.shown, false);
    if (!slice.shown && editor.toolBox.tool == ViewTool::moveSlicedTexture)
        chooseToolFromMenu(editor, slice.toolBefore);
    refreshMenuState(editor);
    requestRedraw(editor);
}

void onSliceDown(Editor& editor, POINT position)
{
    editor.slice.dragged =
        isMoving(editor) ? placementSidesAt(slicePlace(editor), {position.x, position.y}) : 0;
}

void onSliceDrag(Editor& editor, POINT delta)
{
    if (isMoving(editor) && editor.slice.dragged != 0)
        moveSlice(editor, editor.slice.dragged, delta);
}

void moveSlice(Editor& editor, unsigned sides, POINT delta)
{
    editor.slice.place =
        draggedPlacement(slicePlace(editor), sides, delta.x, delta.y, viewSize(editor));
}

bool showSliceCursor(Editor& editor)
{
    if (!isMoving(editor)) return false;
    POINT position{};
    GetCursorPos(&position);
    ScreenToClient(editor.mainWindow, &position);
    position = viewPosition(editor, position);
    const bool dragging = editor.drag.left == ButtonState::down;
    const unsigned sides = dragging
                               ? editor.slice.dragged
                               : placementSidesAt(slicePlace(editor), {position.x, position.y});
    if (sides == 0) return false;
    SetCursor(LoadCursorA(nullptr, cursorFor(sides)));
    return true;
}

void paintSliceOutline(Editor& editor, HDC dc)
{
    if (!isMoving(editor)) return;
    const auto [left, top, right, bottom] = slicePlace(editor);
    const RECT outline{left, top, right, bottom};
    frameInDashes(dc, outline);
    for (const int x : {left, (left + right) / 2, right - 1})
        for (const int y : {top, (top + bottom) / 2, bottom - 1})
            if (x != (left + right) / 2 || y != (top + bottom) / 2) paintHandle(dc, x, y);
}

} // namespace facetor
