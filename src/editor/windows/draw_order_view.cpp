#include "windows/draw_order_view.h"

#include "state/editor.h"
#include "ui/handles.h"
#include "windows/draw_order_window.h"

#include <windows.h>

#include <array>

namespace facetor {

namespace {

/// Lines in black dashes on white, which show on every background. A width of 0 is one pixel of the
/// screen in an enlarged view, too: wider dashes would be drawn as a line.
template <typename Draw> void drawInDashes(HDC dc, const Draw& draw)
{
    const UniqueHandle<HPEN, DeleteObject> white(CreatePen(PS_SOLID, 3, RGB(255, 255, 255)));
    const UniqueHandle<HPEN, DeleteObject> black(CreatePen(PS_DOT, 0, RGB(0, 0, 0)));
    const int saved = SaveDC(dc);
    SetBkMode(dc, TRANSPARENT);
    for (const HPEN pen : {white.get(), black.get()}) {
        SelectObject(dc, pen);
        draw();
    }
    RestoreDC(dc, saved);
}

} // namespace

void noteFrame(Editor& editor)
{
    editor.drawOrder.frameIsNew = true;
}

void paintDrawOrder(const Editor& editor, HDC dc)
{
    const DrawOrderWindow& shown = editor.drawOrder;
    if (!shown.window) return;
    if (!shown.showsAll && shown.drawn > 0 && shown.drawn <= shown.order.size()) {
        const ScreenQuad& quad = shown.order[shown.drawn - 1].point;
        std::array<POINT, 5> outline{};
        for (std::size_t c = 0; c < outline.size(); ++c)
            outline[c] = {quad[c % 4].x, quad[c % 4].y};
        drawInDashes(dc, [&] { Polyline(dc, outline.data(), static_cast<int>(outline.size())); });
    }
    if (!shown.pixel) return;
    const auto [x, y] = *shown.pixel;
    drawInDashes(dc, [&, x = x, y = y] {
        constexpr std::array<std::array<int, 4>, 4> arms{
            {{-10, 0, -2, 0}, {3, 0, 11, 0}, {0, -10, 0, -2}, {0, 3, 0, 11}}};
        for (const auto& [fromX, fromY, toX, toY] : arms) {
            MoveToEx(dc, x + fromX, y + fromY, nullptr);
            LineTo(dc, x + toX, y + toY);
        }
    });
}

bool onAskedPixel(Editor& editor, POINT position)
{
    DrawOrderWindow& shown = editor.drawOrder;
    if (!shown.window || !shown.isAsking) return false;
    shown.pixel = ScreenPoint{position.x, position.y};
    showPixelWriters(editor);
    InvalidateRect(editor.mainWindow, nullptr, FALSE);
    return true;
}

bool showAskCursor(const Editor& editor)
{
    if (!editor.drawOrder.window || !editor.drawOrder.isAsking) return false;
    SetCursor(LoadCursorA(nullptr, IDC_CROSS));
    return true;
}

} // namespace facetor
