#include "windows/texture_painting.h"

#include "image/image_surface.h"
#include "state/editor.h"
#include "ui/handles.h"
#include "windows/texture_window.h"

#include <algorithm>
#include <string>

namespace facetor {

namespace {

constexpr std::uint16_t surfaceSide = 256; ///< what is shown of a texture at most, in texels
constexpr std::uint16_t surfaceDepth = 16;
constexpr std::uint32_t marqueeSteps = 4;

/// The colours of the window, by the system's present ones.
struct Colours {
    COLORREF frame = GetSysColor(COLOR_MENU);
    COLORREF light = RGB((GetRValue(frame) + 255) / 2, (GetGValue(frame) + 255) / 2,
                         (GetBValue(frame) + 255) / 2);
    COLORREF dim = RGB(GetRValue(frame) / 2, GetGValue(frame) / 2, GetBValue(frame) / 2);
};

RECT partOf(const PixelRectangle& cell, const PixelRectangle& part)
{
    const PixelRectangle r = movedBy(part, cell.left, cell.top);
    return {r.left, r.top, r.right, r.bottom};
}

void fill(HDC dc, const RECT& area, COLORREF colour)
{
    SetDCBrushColor(dc, colour);
    FillRect(dc, &area, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
}

/// A frame of one pixel: its upper left half in one colour, its lower right half in another.
void drawBevel(HDC dc, const RECT& r, COLORREF upper, COLORREF lower)
{
    fill(dc, {r.left, r.top, r.right - 1, r.top + 1}, upper);
    fill(dc, {r.left, r.top + 1, r.left + 1, r.bottom - 1}, upper);
    fill(dc, {r.left, r.bottom - 1, r.right, r.bottom}, lower);
    fill(dc, {r.right - 1, r.top, r.right, r.bottom - 1}, lower);
}

void drawThumbnail(HDC dc, const PixelRectangle& cell, const TextureSlot& texture,
                   ImageSurface& surface, Rgb555 background)
{
    showTexture(surface, texture.pixels, texture.width, texture.height, background);
    const PixelRectangle fitted =
        fittedInto(movedBy(cellPicture, cell.left, cell.top), texture.width, texture.height);
    const PixelRectangle source{0, 0, std::min(texture.width, surfaceSide),
                                std::min(texture.height, surfaceSide)};
    const BlitGeometry blit = blitGeometry(
        surface, source, {fitted.left, fitted.top, fitted.right, fitted.bottom}, Mirror::none);
    StretchDIBits(
        dc, blit.destinationX, blit.destinationY, blit.destinationWidth, blit.destinationHeight,
        blit.sourceX, blit.sourceY, blit.sourceWidth, blit.sourceHeight, surfaceBits(surface),
        reinterpret_cast<const BITMAPINFO*>(surface.block.data()), DIB_RGB_COLORS, SRCCOPY);
}

void drawCell(HDC dc, const PixelRectangle& cell, std::uint32_t slot, bool current,
              const Colours& colours)
{
    RECT caption = partOf(cell, cellCaption);
    DrawTextW(dc, std::to_wstring(slot).c_str(), -1, &caption,
              DT_CENTER | DT_SINGLELINE | DT_NOPREFIX);
    const RECT outline = partOf(cell, cellOutline);
    if (current)
        drawBevel(dc, outline, colours.dim, colours.light);
    else
        drawBevel(dc, outline, colours.dim, colours.dim);
    RECT around = partOf(cell, cellPicture);
    InflateRect(&around, 1, 1);
    drawBevel(dc, around, colours.light, colours.dim);
}

/// Draws the frame around the current texture, if it is visible.
void drawMarquee(HDC dc, const Editor& editor)
{
    const TextureWindow& textures = editor.textureWindow;
    const auto cell = cellOf(gridArea(textures), textures.topSlot,
                             static_cast<std::int32_t>(editor.document.textures.current));
    if (!cell) return;
    RECT frame = partOf(*cell, cellOutline);
    InflateRect(&frame, 1, 1);
    const std::string name = "IDB_MARQUEE" + std::to_string(textures.marqueePhase % marqueeSteps);
    const UniqueHandle<HBITMAP, DeleteObject> pattern(LoadBitmapA(editor.instance, name.c_str()));
    const UniqueHandle<HBRUSH, DeleteObject> brush(CreatePatternBrush(pattern.get()));
    FrameRect(dc, &frame, brush.get());
}

/// Draws what lies within `dirty`, in client pixels.
void drawGrid(HDC dc, const Editor& editor, const RECT& dirty)
{
    const TextureWindow& textures = editor.textureWindow;
    const TextureList& list = editor.document.textures;
    const Colours colours;
    fill(dc, dirty, colours.frame);
    SetStretchBltMode(dc, COLORONCOLOR);
    SelectObject(dc, GetStockObject(ANSI_VAR_FONT));
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, GetSysColor(COLOR_MENUTEXT));
    ImageSurface surface; // without one, the cells are shown without their pictures
    const bool pictures =
        createSurface(surface, surfaceSide, surfaceSide, surfaceDepth) == Message::none;
    const GridArea area = gridArea(textures);
    for (std::int32_t slot = textures.topSlot;; ++slot) {
        const auto cell = cellOf(area, textures.topSlot, slot);
        if (!cell) break;
        const RECT all{cell->left, cell->top, cell->right, cell->bottom};
        if (RECT common; !IntersectRect(&common, &all, &dirty)) continue;
        const auto number = static_cast<std::uint32_t>(slot);
        drawCell(dc, *cell, number, number == list.current, colours);
        if (pictures)
            drawThumbnail(dc, *cell, list.slot(number), surface, editor.view.backgroundColour);
    }
    drawMarquee(dc, editor);
}

} // namespace

void paintTextures(Editor& editor)
{
    const PaintContext paint(editor.textureWindow.window);
    const GridArea area = gridArea(editor.textureWindow);
    const RECT grid{0, area.top, area.width, area.bottom};
    RECT dirty{};
    if (!IntersectRect(&dirty, &grid, &paint.area())) return;
    const int width = dirty.right - dirty.left, height = dirty.bottom - dirty.top;
    const UniqueHandle<HDC, DeleteDC> memory(CreateCompatibleDC(paint.dc()));
    const UniqueHandle<HBITMAP, DeleteObject> bitmap(
        CreateCompatibleBitmap(paint.dc(), width, height));
    const int saved = SaveDC(memory.get());
    SelectObject(memory.get(), bitmap.get());
    SetWindowOrgEx(memory.get(), dirty.left, dirty.top, nullptr);
    SetBrushOrgEx(memory.get(), -dirty.left, -dirty.top, nullptr); // patterns as in the window
    drawGrid(memory.get(), editor, dirty);
    BitBlt(paint.dc(), dirty.left, dirty.top, width, height, memory.get(), dirty.left, dirty.top,
           SRCCOPY);
    RestoreDC(memory.get(), saved);
}

void eraseBehindToolBar(const Editor& editor, HDC dc)
{
    const HWND window = editor.textureWindow.window;
    if (!window || WindowFromDC(dc) == window) return;
    RECT client{};
    GetClientRect(window, &client);
    FillRect(dc, &client, GetSysColorBrush(COLOR_BTNFACE));
}

void stepMarquee(Editor& editor)
{
    ++editor.textureWindow.marqueePhase;
    const WindowDc dc(editor.textureWindow.window);
    const GridArea area = gridArea(editor.textureWindow);
    IntersectClipRect(dc.get(), 0, area.top, area.width, area.bottom);
    drawMarquee(dc.get(), editor);
}

} // namespace facetor
