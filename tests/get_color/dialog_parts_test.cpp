#include "get_color/dialog_parts.h"

#include <gtest/gtest.h>

namespace facetor {

namespace {

TEST(DialogParts, EveryPixelOfAStripBelongsToTheCellThatCoversIt)
{
    for (const int length : {1, 31, 32, 33, 200, 431}) {
        SCOPED_TRACE(length);
        EXPECT_EQ(cellRun(0, 32, length).begin, 0);
        EXPECT_EQ(cellRun(31, 32, length).end, length);
        for (int at = 0; at < length; ++at) {
            const PixelRun run = cellRun(cellAt(at, 32, length), 32, length);
            EXPECT_TRUE(run.begin <= at && at < run.end) << at;
        }
        EXPECT_EQ(cellAt(-1000, 32, length), cellAt(0, 32, length));
        EXPECT_EQ(cellAt(30000, 32, length), 31);
    }
}

TEST(DialogParts, TheFieldsPointShowsWhatAClickThereChooses)
{
    const PartSize size{190, 130};
    for (int y = 0; y < size.height; y += 3)
        for (int x = 0; x < size.width; ++x) {
            const PartPoint point = fieldPoint(fieldHsv({x, y}, size, 0.5f), size);
            ASSERT_TRUE(point.x == x && point.y == y) << x << ',' << y;
        }
    EXPECT_EQ(fieldHsv({-5, -5}, size, 1).saturation, 1);
    EXPECT_EQ(fieldHsv({5, 5000}, size, 1).saturation, 0);
    const auto pixels = drawField(size);
    ASSERT_EQ(pixels.size(), 190u * 130);
    EXPECT_EQ(pixels.front(), 0xF80000u) << "red, top left";
    EXPECT_EQ(pixels[95], 0x00F8F8u) << "cyan, half way";
    EXPECT_EQ(pixels.back(), 0xF8F8F8u) << "white below";
}

} // namespace

} // namespace facetor
