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
    all,      ///< every pixel of both triangles, in drawing order
    evenMesh, ///< the mesh pixels of a cell whose corner 0 has an even column + row
    oddMesh,  ///< those of one with an odd sum
    once,     ///< as all, without what is drawn again with the same texel
    last,     ///< what is left of a cell without transparent texels once it is drawn
};

/// Added to CellList::last: the next cell across, or down, will be drawn and has no transparent
/// texels either, so that the pixels of the common edge are left to it.
inline constexpr std::uint32_t cellOnTheRight = 1, cellBelow = 2;

/// The corners' positions less that of corner 0, in surface columns and rows, are -8 to 7; cells
/// that are larger have no lists.
inline constexpr std::int32_t leastCorner = -8, mostCorner = 7;

/// A cell is looked up by a number: in bits 0-11 the columns of its corners 1, 2, 3 from corner 0,
/// plus 8, four bits each; in bits 16-27 their rows; in bits 12-14 the list; in bits 28-31 its
/// place in the grid of the polygon, across + 4 down, each 0-3.
inline constexpr int cellRowShift = 16, cellListShift = 12, cellPlaceShift = 28;

/// The lists of the cells that were drawn lately, kept from frame to frame, in 1.7 MB. What is new
/// in a frame is listed up to a limit, and what finds no room is not listed: a frame that shows
/// ever new cells costs little more than without lists. Once it is full all are forgotten.
class CellShapes {
public:
    /// Up to so many texels on a side, a cell's texels are the same however its coordinates are
    /// rounded: with corners within 8 pixels and steps of 64 texels from one to the next that adds
    /// up to 1/8192 of a texel, and the bias of each coordinate is 1/1024.
    static constexpr std::uint16_t largestSide = 256;
    /// Pixels in the longest list: two triangles, each less than 2 / 3 of a square of 15 x 15.
    static constexpr std::size_t longestList = 300;
    /// Pixels behind the end of a list that may be read, whatever they are.
    static constexpr std::size_t readBeyond = 16;

    /// False when memory is short.
    [[nodiscard]] bool allocate();

    /// Makes room for new lists, once a frame: those that were found before are gone when none was
    /// left.
    void beginFrame();

    /// Chooses what the next lookups are for: a surface this wide, and a texture with this many
    /// texels on each side, flipped as textureFlip() has it. False when a side is longer than
    /// largestSide, and when the frame has more kinds of textures than there is room for.
    bool select(std::int32_t surfaceWidth, const TextureSlot& texture, int flip);

    const CellPixel* pixels() const { return pixels_.data(); }
    const CellGouraud* gouraud() const { return gouraud_.data(); }

    /// The pixels of a cell by its key, valid until the next frame begins. False when they are not
    /// listed, and not to be.
    bool find(CellPixels& list, std::uint32_t key)
    {
        for (std::uint32_t at = hashOf(key);; at = (at + 1) % entryCount) {
            const Entry& entry = entries_[at];
            if (entry.key == key && entry.layout == layout_) {
                list = {entry.first, entry.count};
                return true;
            }
            if (entry.layout == 0) return add(list, key, at);
        }
    }

private:
    static constexpr std::uint32_t hashShift = 18;
    static constexpr std::uint32_t entryCount = 1u << (32 - hashShift);
    static constexpr std::uint32_t pixelCapacity = 1u << 18;
    /// New lists in a frame: each takes about a microsecond.
    static constexpr std::uint32_t newInFrame = 1024;

    std::uint32_t hashOf(std::uint32_t key) const
    {
        return (key ^ layout_ * 0x85EBCA6Bu) * 0x9E3779B1u >> hashShift;
    }

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
    bool add(CellPixels& list, std::uint32_t key, std::uint32_t at);

    PageArray<Entry> entries_;
    PageArray<CellPixel> pixels_;
    PageArray<CellGouraud> gouraud_; ///< parallel to pixels_
    std::uint32_t used_ = 0, pixelCount_ = 0;
    std::uint32_t newLeft_ = newInFrame;
    bool full_ = false; ///< until the next frame
    std::array<Layout, 64> layouts_{};
    std::uint16_t layoutCount_ = 0, layout_ = 0; ///< numbers from 1 on
    std::int32_t surfaceWidth_ = 0;
};

} // namespace facetor
