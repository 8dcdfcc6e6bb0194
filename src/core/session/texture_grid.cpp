#include "session/texture_grid.h"

#include <algorithm>

namespace facetor {

namespace {

/// A length of whole cells nearest to `length`: from a little more than half a cell on, one more.
int snapped(int length, int cell)
{
    if (length <= cell) return cell;
    const int rest = length % cell;
    return rest > cell / 2 ? length - rest + cell : length - rest;
}

} // namespace

int columnsShown(const GridArea& area)
{
    return std::max(1, (area.width + cellWidth - 1) / cellWidth);
}

std::optional<PixelRectangle> cellOf(const GridArea& area, std::int32_t topSlot, std::int32_t slot)
{
    if (slot < topSlot || slot >= std::int32_t{textureSlotCount}) return std::nullopt;
    const int columns = columnsShown(area), cell = slot - topSlot;
    const int x = cell % columns * cellWidth, y = area.top + cell / columns * cellHeight;
    if (y >= area.bottom) return std::nullopt;
    return PixelRectangle{x, y, x + cellWidth, y + cellHeight};
}

std::optional<std::uint32_t> slotAt(const GridArea& area, std::int32_t topSlot, int x, int y)
{
    if (x < 0 || x >= area.width || y < area.top || y >= area.bottom) return std::nullopt;
    const std::int32_t slot =
        topSlot + (y - area.top) / cellHeight * columnsShown(area) + x / cellWidth;
    if (slot >= std::int32_t{textureSlotCount}) return std::nullopt;
    return static_cast<std::uint32_t>(slot);
}

GridSize snappedSize(GridSize wanted, int toolBarHeight)
{
    return {snapped(wanted.width, cellWidth),
            toolBarHeight + snapped(wanted.height - toolBarHeight, cellHeight)};
}

std::int32_t scrolled(std::int32_t topSlot, GridScroll step, int clientWidth)
{
    const int page = clientWidth / cellWidth;
    const int by = step == GridScroll::lineDown   ? 1
                   : step == GridScroll::lineUp   ? -1
                   : step == GridScroll::pageDown ? page
                                                  : -page;
    return std::clamp(topSlot + by, 0, std::int32_t{textureSlotCount});
}

std::uint32_t neighbourSlot(std::uint32_t slot, GridMove move, int columns, std::uint32_t usedCount)
{
    const auto present = static_cast<std::int32_t>(slot);
    const std::int32_t wanted = move == GridMove::left    ? present - 1
                                : move == GridMove::right ? present + 1
                                : move == GridMove::up    ? present - columns
                                : move == GridMove::down  ? present + columns
                                : move == GridMove::first ? 0
                                : usedCount > 0           ? static_cast<std::int32_t>(usedCount) - 1
                                                          : 0;
    return wanted < 0 || wanted >= std::int32_t{textureSlotCount}
               ? slot
               : static_cast<std::uint32_t>(wanted);
}

std::int32_t topSlotShowing(const GridArea& area, std::int32_t topSlot, std::uint32_t slot)
{
    const int columns = columnsShown(area);
    const int rows = std::max(1, (area.bottom - area.top) / cellHeight);
    const std::int32_t wanted = static_cast<std::int32_t>(slot);
    if (wanted < topSlot) {
        const std::int32_t up = (topSlot - wanted + columns - 1) / columns;
        return std::max(0, topSlot - up * columns);
    }
    const std::int32_t down = (wanted - topSlot) / columns - rows + 1;
    return topSlot + std::max(0, down) * columns;
}

PixelRectangle fittedInto(const PixelRectangle& picture, int width, int height)
{
    const int areaWidth = picture.right - picture.left, areaHeight = picture.bottom - picture.top;
    const auto share = [](int length, int longer, int shorter) {
        return static_cast<int>(static_cast<float>(length) /
                                (static_cast<float>(longer) / static_cast<float>(shorter)));
    };
    if (height > width) {
        const int shown = share(areaWidth, height, width);
        const int left = picture.left + (areaWidth - shown) / 2;
        return {left, picture.top, left + shown, picture.bottom};
    }
    const int shown = share(areaHeight, width, height);
    const int top = picture.top + (areaHeight - shown) / 2;
    return {picture.left, top, picture.right, top + shown};
}

} // namespace facetor
