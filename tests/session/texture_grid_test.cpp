#include "session/texture_grid.h"

#include <gtest/gtest.h>

#include <array>
#include <utility>

namespace facetor {

namespace {

TEST(TextureGrid, AWindowTakesTheNearestSizeOfWholeCells)
{
    constexpr int bar = 30;
    const std::pair<GridSize, GridSize> cases[] = {{{1, 1}, {52, bar + 68}},
                                                   {{52, bar + 68}, {52, bar + 68}},
                                                   {{78, bar + 102}, {52, bar + 68}},
                                                   {{79, bar + 103}, {104, bar + 136}},
                                                   {{208, bar + 204}, {208, bar + 204}}};
    for (const auto& [wanted, snapped] : cases)
        EXPECT_EQ(snappedSize(wanted, bar), snapped) << wanted.width;
}

TEST(TextureGrid, PointsAndCellsAreEachOthers)
{
    const GridArea area{30, 200, 30 + 68 + 10}; // four columns, the last cut; two rows, likewise
    EXPECT_EQ(columnsShown(area), 4);
    EXPECT_EQ(cellOf(area, 10, 13), (PixelRectangle{156, 30, 208, 98}));
    EXPECT_EQ(cellOf(area, 10, 14), (PixelRectangle{0, 98, 52, 166}));
    EXPECT_FALSE(cellOf(area, 10, 18)) << "its row begins below the window";
    EXPECT_FALSE(cellOf(area, 10, 9));
    EXPECT_FALSE(cellOf(area, 4095, 4096));
    EXPECT_EQ(slotAt(area, 10, 0, 30), 10u);
    EXPECT_EQ(slotAt(area, 10, 199, 97), 13u);
    EXPECT_EQ(slotAt(area, 10, 52, 98), 15u);
    for (const auto& [x, y] : {std::pair{0, 29}, {200, 40}, {-1, 40}, {0, 108}})
        EXPECT_FALSE(slotAt(area, 10, x, y)) << x << ", " << y;
    EXPECT_FALSE(slotAt(area, 4095, 52, 30));
}

TEST(TextureGrid, KeysMoveWithinTheListAndTheGridFollows)
{
    const std::pair<GridMove, std::uint32_t> moves[] = {
        {GridMove::left, 5},  {GridMove::right, 7}, {GridMove::up, 2},
        {GridMove::down, 10}, {GridMove::first, 0}, {GridMove::last, 29},
    };
    for (const auto& [move, slot] : moves) EXPECT_EQ(neighbourSlot(6, move, 4, 30), slot);
    EXPECT_EQ(neighbourSlot(6, GridMove::last, 4, 0), 0u);
    EXPECT_EQ(neighbourSlot(3, GridMove::up, 4, 30), 3u);
    EXPECT_EQ(neighbourSlot(4092, GridMove::down, 4, 30), 4092u);
    constexpr GridArea area{30, 4 * 52, 30 + 2 * 68 + 40}; // two rows, and a part of a third
    const std::array<std::int32_t, 3> cases[] = {
        // the first slot, the one to see, the first slot then
        {5, 5, 5}, {5, 12, 5}, {5, 13, 9}, {5, 4, 1}, {5, 0, 0}, {0, 4095, 4088}, {4096, 7, 4},
    };
    for (const auto& [top, slot, then] : cases)
        EXPECT_EQ(topSlotShowing(area, top, static_cast<std::uint32_t>(slot)), then)
            << top << " " << slot;
}

} // namespace

} // namespace facetor
