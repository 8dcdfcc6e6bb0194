#pragma once

#include "base/colour.h"
#include "base/pages.h"
#include "engine/texture_slot.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace facetor {

// A textured polygon is drawn as 4 x 4 cells of two triangles each. A cell of a few pixels has one
// of a few shapes, so which pixels it draws, and with which texel each, is worked out once by the
// triangle filler itself and looked up from then on.

/// A pixel of a cell.
struct CellPixel {
    std::int16_t at;     ///< where it lies on the surface, counted from the cell's corner 0
    std::uint16_t texel; ///< its number in the texture
};

/// Where a pixel of a cell lies in the Gouraud grid that is laid over the polygon, each 0-31.
struct CellGouraud {
    std::uint8_t column, row;
};

/// A list of a cell's pixels, within CellShapes::pixels() and gouraud().
struct CellPixels {
    std::uint32_t first, count;
};

/// Which of a cell's pixels a list holds.
enum class CellList : std::uint32_t {
    all,                   ///< every pixel of both triangles, in drawing order
    evenMesh,              ///< the mesh pixels of a cell whose corner 0 has an even column + row
    oddMesh,               ///< those of one with an odd sum
    once,                  ///< as all, without what is drawn again with the same texel
    last,                  ///< what is left of a cell without transparent texels once it is drawn
    lastInside = last + 3, ///< the largest: last and the sum of cellOnTheRight and cellBelow
};

/// Added to CellList::last: the next cell across, or down, will be drawn and has no transparent
/// texels either, so that the pixels of the common edge are left to it.
inline constexpr std::uint32_t cellOnTheRight = 1, cellBelow = 2;

/// The corners' positions less that of corner 0, in surface columns and rows; cells of textures
/// that are larger on either axis are not listed.
inline constexpr std::int32_t largestCell = 7;

/// A cell: corners 1, 2, 3 from corner 0, and its place in the grid of the polygon, each 0-3.
struct Cell {
    std::array<std::int32_t, 3> x, y;
    std::uint32_t across, down;
    std::uint32_t list; ///< a CellList
};

/// The number that a cell is looked up by: in bits 0-11 the columns of the corners plus 8, four
/// bits each; in bits 16-27 the rows; in bits 12-14 the list, in bits 28-31 across + 4 down.
constexpr std::uint32_t cellKey(const Cell& cell)
{
    std::uint32_t key = cell.list << 12 | (cell.across + 4 * cell.down) << 28;
    for (std::size_t i = 0; i < 3; ++i)
        key |= (static_cast<std::uint32_t>(cell.x[i] + 8) << (4 * i)) |
               (static_cast<std::uint32_t>(cell.y[i] + 8) << (16 + 4 * i));
    return key;
}

/// The lists of the cells that were drawn lately. Kept from frame to frame; 1.75 MB whatever is
/// drawn, since all are forgotten when either table is full.
class CellShapes {
public:
    /// Up to so many texels, a cell's texels are the same however their coordinates are rounded.
    static constexpr std::uint16_t largestSide = 256;
    /// Pixels in the longest list: two triangles, each less than 2 / 3 of a square of 15 x 15.
    static constexpr std::size_t longestList = 300;
    /// Pixels behind the end of a list that may be read, whatever they are.
    static constexpr std::size_t readBeyond = 16;

    /// False when memory is short.
    [[nodiscard]] bool allocate();

    /// Chooses what the next lookups are for: a surface this wide, and a texture with this many
    /// texels on each side, flipped as textureFlip() has it. False when a side is longer than
    /// largestSide: its cells have no lists.
    bool select(std::int32_t surfaceWidth, const TextureSlot& texture, int flip);

    const CellPixel* pixels() const { return pixels_.data(); }
    const CellGouraud* gouraud() const { return gouraud_.data(); }

    /// The pixels of a cell by its key. Valid until the next lookup.
    CellPixels find(std::uint32_t key)
    {
        for (std::uint32_t at = key * 0x9E3779B1u >> hashShift;; at = (at + 1) % entryCount) {
            const Entry& entry = entries_[at];
            if (entry.key == key && entry.layout == layout_) return {entry.first, entry.count};
            if (entry.layout == 0) return add(key, at);
        }
    }

private:
    static constexpr std::uint32_t hashShift = 18;
    static constexpr std::uint32_t entryCount = 1u << (32 - hashShift);
    static constexpr std::uint32_t pixelCapacity = 1u << 18;

    struct Entry {
        std::uint32_t key;
        std::uint16_t layout; ///< 0 for none
        std::uint16_t count;
        std::uint32_t first;
    };
    /// What lists depend on besides the key; the surface's width is common to all.
    struct Layout {
        std::uint16_t width, height;
        int flip;
    };

    void forget();
    CellPixels add(std::uint32_t key, std::uint32_t at);

    PageArray<Entry> entries_;
    PageArray<CellPixel> pixels_;
    PageArray<CellGouraud> gouraud_; ///< parallel to pixels_
    std::uint32_t used_ = 0, pixelCount_ = 0;
    std::array<Layout, 64> layouts_{};
    std::uint16_t layoutCount_ = 0, layout_ = 0; ///< numbers from 1 on
    std::int32_t surfaceWidth_ = 0;
};

} // namespace facetor
