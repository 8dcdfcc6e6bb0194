#include "engine/cell_shapes.h"

#include "engine/cell_grid.h"
#include "engine/triangle_fill.h"

#include <algorithm>
#include <cassert>

namespace facetor {

namespace {

/// A square of rows that a cell is drawn into: it reaches at most 8 pixels from its corner 0.
constexpr std::int32_t side = 32, middle = 12;

struct DrawnPixel {
    std::int32_t x, row; ///< from the cell's corner 0
    std::uint16_t texel;
    CellGouraud gouraud;
};

/// Every pixel of both triangles.
struct Recording {
    static constexpr std::uint16_t room = CellShapes::longestList;
    std::array<DrawnPixel, room> pixel;
    std::size_t count = 0;
};

/// Notes pixels and texels in place of drawing them.
struct RecordingSource {
    static constexpr std::size_t coordinates = 4; // as fillTexturedGouraud() has them
    static constexpr FillPath path = FillPath::plain;
    std::array<float, 4> limit;
    std::int32_t width;
    const Rgb555* start; ///< of the square's rows
    ScreenPoint corner;
    Recording* recording;

    template <PixelMode mode> void pixel(const std::array<std::int32_t, 4>& at, Rgb555& d) const
    {
        assert(recording->count < Recording::room);
        const auto place = static_cast<std::int32_t>(&d - start);
        recording->pixel[recording->count++] = {
            place % side - corner.x,
            place / side - corner.y,
            static_cast<std::uint16_t>(at[1] * width + at[0]),
            {static_cast<std::uint8_t>(at[2]), static_cast<std::uint8_t>(at[3])}};
    }
};

/// Whether a pixel lies on the edge from corner a to b of another cell that shares it, and so is
/// drawn by that one: a row's span holds the edge's pixel in that row, and all of a level edge.
bool liesOnEdge(const DrawnPixel& pixel, const ScreenPoint& a, const ScreenPoint& b)
{
    if (pixel.row < std::min(a.y, b.y) || pixel.row > std::max(a.y, b.y)) return false;
    if (a.y == b.y) return pixel.x >= std::min(a.x, b.x) && pixel.x <= std::max(a.x, b.x);
    const float t = static_cast<float>(pixel.row - a.y) / static_cast<float>(b.y - a.y);
    return pixel.x == static_cast<std::int32_t>(static_cast<float>(b.x - a.x) * t) + a.x;
}

bool isSameTexel(const DrawnPixel& a, const DrawnPixel& b)
{
    return a.texel == b.texel && a.gouraud.column == b.gouraud.column &&
           a.gouraud.row == b.gouraud.row;
}

/// Removes what is drawn over later in the same list; `sameTexel`: only where it is drawn again
/// with the same texel. A pixel is drawn by each of the two triangles at most once.
void dropDrawnOver(Recording& recording, bool sameTexel)
{
    constexpr std::uint16_t none = Recording::room;
    std::array<std::uint16_t, static_cast<std::size_t>(side * side)> later; // by place: its pixel
    later.fill(none);
    auto& pixel = recording.pixel;
    std::size_t kept = pixel.size();
    for (std::size_t i = recording.count; i-- > 0;) { // kept at the end, from the last on
        const auto place =
            static_cast<std::size_t>((pixel[i].row + middle) * side + pixel[i].x + middle);
        const bool again =
            later[place] != none && (!sameTexel || isSameTexel(pixel[later[place]], pixel[i]));
        if (again) continue;
        pixel[--kept] = pixel[i];
        later[place] = static_cast<std::uint16_t>(kept);
    }
    recording.count = pixel.size() - kept;
    std::move(pixel.begin() + static_cast<std::ptrdiff_t>(kept), pixel.end(), pixel.begin());
}

/// A cell: corners 1, 2, 3 from corner 0, its place in the grid of the polygon, and a CellList.
struct Cell {
    std::array<std::int32_t, 3> x, y;
    std::uint32_t across, down, list;
};

Cell cellOf(std::uint32_t key)
{
    Cell cell;
    for (std::size_t i = 0; i < 3; ++i) {
        cell.x[i] = static_cast<std::int32_t>(key >> (4 * i) & 15) + leastCorner;
        cell.y[i] = static_cast<std::int32_t>(key >> (cellRowShift + 4 * i) & 15) + leastCorner;
    }
    cell.list = key >> cellListShift & 7;
    cell.across = key >> cellPlaceShift & 3;
    cell.down = key >> (cellPlaceShift + 2);
    return cell;
}

/// Draws a cell as the triangle filler does.
void record(Recording& recording, const Cell& cell, const TextureGrid& grid, std::int32_t width,
            std::int32_t height)
{
    constexpr std::array<std::size_t, 4> right{0, 1, 1, 0}, below{0, 0, 1, 1};
    std::array<Rgb555, static_cast<std::size_t>(side * side)> rows;
    std::array<std::int16_t, 2 * static_cast<std::size_t>(side)> ends;
    const bool odd = cell.list == static_cast<std::uint32_t>(CellList::oddMesh);
    const auto gouraud = gridCoordinates(static_cast<std::int32_t>(gouraudTextureSize), false);
    const ScreenPoint corner{middle + (odd ? 1 : 0), middle};
    std::array<TriangleCorner<4>, 4> corners;
    for (std::size_t i = 0; i < 4; ++i) {
        corners[i].at =
            i == 0 ? corner : ScreenPoint{corner.x + cell.x[i - 1], corner.y + cell.y[i - 1]};
        const std::size_t across = cell.across + right[i], down = cell.down + below[i];
        corners[i].coordinate = {grid[0][across], grid[1][down], gouraud[across], gouraud[down]};
    }
    constexpr auto gouraudLimit = static_cast<float>(gouraudTextureSize);
    const RecordingSource source{
        {static_cast<float>(width), static_cast<float>(height), gouraudLimit, gouraudLimit},
        width,
        rows.data(),
        corner,
        &recording};
    const PixelRows square{rows.data(), side, side};
    const SpanEnds spanEnds{ends.data(), ends.data() + side};
    const auto draw = [&]<bool mesh>() {
        fillTriangle<PixelMode::replace, mesh>(square, spanEnds,
                                               {corners[0], corners[1], corners[2]}, source);
        fillTriangle<PixelMode::replace, mesh>(square, spanEnds,
                                               {corners[0], corners[2], corners[3]}, source);
    };
    if (odd || cell.list == static_cast<std::uint32_t>(CellList::evenMesh))
        draw.operator()<true>();
    else
        draw.operator()<false>();
}

void keepLast(Recording& recording, const Cell& cell)
{
    dropDrawnOver(recording, false);
    const std::uint32_t covered = cell.list - static_cast<std::uint32_t>(CellList::last);
    const ScreenPoint c1{cell.x[0], cell.y[0]}, c2{cell.x[1], cell.y[1]}, c3{cell.x[2], cell.y[2]};
    const auto end =
        std::remove_if(recording.pixel.begin(),
                       recording.pixel.begin() + static_cast<std::ptrdiff_t>(recording.count),
                       [&](const DrawnPixel& pixel) {
                           return ((covered & cellOnTheRight) != 0 && liesOnEdge(pixel, c1, c2)) ||
                                  ((covered & cellBelow) != 0 && liesOnEdge(pixel, c3, c2));
                       });
    recording.count = static_cast<std::size_t>(end - recording.pixel.begin());
}

} // namespace

bool CellShapes::allocate()
{
    return entries_.allocate(entryCount) && pixels_.allocate(pixelCapacity + readBeyond) &&
           gouraud_.allocate(pixelCapacity + readBeyond);
}

void CellShapes::forget()
{
    std::fill(entries_.begin(), entries_.end(), Entry{});
    used_ = 0;
    pixelCount_ = 0;
    layoutCount_ = 0;
    layout_ = 0;
    full_ = false;
}

void CellShapes::beginFrame()
{
    if (full_) forget();
    newLeft_ = newInFrame;
}

bool CellShapes::select(std::int32_t surfaceWidth, const TextureSlot& texture, int flip)
{
    if (texture.width > largestSide || texture.height > largestSide) return false;
    if (surfaceWidth != surfaceWidth_) {
        forget();
        surfaceWidth_ = surfaceWidth;
    }
    const auto isIt = [&](const Layout& layout) {
        return layout.width == texture.width && layout.height == texture.height &&
               layout.flip == flip;
    };
    if (layout_ != 0 && isIt(layouts_[layout_ - 1u])) return true;
    const auto known = layouts_.begin() + layoutCount_;
    const auto found = std::find_if(layouts_.begin(), known, isIt);
    if (found == layouts_.end()) {
        full_ = true;
        return false;
    }
    if (found == layouts_.begin() + layoutCount_) {
        *found = {texture.width, texture.height, flip};
        ++layoutCount_;
    }
    layout_ = static_cast<std::uint16_t>(found - layouts_.begin() + 1);
    return true;
}

bool CellShapes::add(CellPixels& list, std::uint32_t key, std::uint32_t at)
{
    if (full_ || newLeft_ == 0) return false;
    const Layout& layout = layouts_[layout_ - 1u];
    const Cell cell = cellOf(key);
    Recording recording;
    record(recording, cell, textureGrid(layout.width, layout.height, layout.flip), layout.width,
           layout.height);
    if (cell.list >= static_cast<std::uint32_t>(CellList::last))
        keepLast(recording, cell);
    else if (cell.list == static_cast<std::uint32_t>(CellList::once))
        dropDrawnOver(recording, true);

    const auto count = static_cast<std::uint32_t>(recording.count);
    if (used_ == entryCount * 3 / 4 || count > pixelCapacity - pixelCount_) {
        full_ = true;
        return false;
    }
    list = {pixelCount_, count};
    for (std::uint32_t i = 0; i < count; ++i) {
        const DrawnPixel& pixel = recording.pixel[i];
        pixels_[pixelCount_ + i] = {static_cast<std::int16_t>(pixel.row * surfaceWidth_ + pixel.x),
                                    pixel.texel};
        gouraud_[pixelCount_ + i] = pixel.gouraud;
    }
    entries_[at] = {key, layout_, static_cast<std::uint16_t>(count), pixelCount_};
    ++used_;
    --newLeft_;
    pixelCount_ += count;
    return true;
}

} // namespace facetor
