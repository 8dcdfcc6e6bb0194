#pragma once

#include "base/pixel_rectangle.h"
#include "texture/texture_list.h"

#include <cstdint>
#include <optional>

namespace facetor {

// The grid of cells in which the texture list window shows its slots, row by row from the top left.
// All positions are in pixels of the window's client area.

inline constexpr int cellWidth = 52;
inline constexpr int cellHeight = 68;

// Parts of a cell, from its top-left corner.
inline constexpr PixelRectangle cellOutline{1, 1, 51, 67};
inline constexpr PixelRectangle cellPicture{3, 3, 49, 49};
inline constexpr PixelRectangle cellCaption{3, 52, 51, 67};

/// The rectangle, x further right and y further down.
constexpr PixelRectangle movedBy(const PixelRectangle& r, int x, int y)
{
    return {r.left + x, r.top + y, r.right + x, r.bottom + y};
}

/// The area that the grid has: the client area below the tool bar.
struct GridArea {
    int top;    ///< the tool bar's height
    int width;  ///< of the client area
    int bottom; ///< of the client area
};

/// Cells in a row, a partly visible one at the right among them.
int columnsShown(const GridArea& area);

/// The cell of slot `slot` when `topSlot` is in the first cell; none when it is not visible.
std::optional<PixelRectangle> cellOf(const GridArea& area, std::int32_t topSlot, std::int32_t slot);

/// The slot whose cell holds a point; none beside the cells and beyond the last slot.
std::optional<std::uint32_t> slotAt(const GridArea& area, std::int32_t topSlot, int x, int y);

/// The client size, nearest to the wanted one, that shows whole cells: one at least each way.
struct GridSize {
    int width, height; ///< the height with the tool bar's

    bool operator==(const GridSize&) const = default;
};
GridSize snappedSize(GridSize wanted, int toolBarHeight);

enum class GridScroll { lineDown, lineUp, pageDown, pageUp };
/// The slot in the first cell after a step: a line is one slot, a page as many as whole cells fit
/// into a row. 0 to 4096, where the grid is empty.
std::int32_t scrolled(std::int32_t topSlot, GridScroll step, int clientWidth);

enum class GridMove { left, right, up, down, first, last };
/// The slot to which a move leads; `slot` where there is none. The last slot is that of the last
/// texture, `usedCount` being the number of slots up to and with it.
std::uint32_t neighbourSlot(std::uint32_t slot, GridMove move, int columns,
                            std::uint32_t usedCount);

/// The slot to have in the first cell so that `slot` is in one that is wholly visible downwards:
/// as few rows as possible from `topSlot`.
std::int32_t topSlotShowing(const GridArea& area, std::int32_t topSlot, std::uint32_t slot);

/// Where a texture is drawn within its cell's picture area, its proportions kept and centred.
PixelRectangle fittedInto(const PixelRectangle& picture, int width, int height);

} // namespace facetor
