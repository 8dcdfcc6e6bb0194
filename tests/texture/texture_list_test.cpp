#include "texture/texture_list.h"

#include <gtest/gtest.h>

#include <utility>

namespace facetor {
namespace {

PageArray<Rgb555> texels(std::size_t count, Rgb555 colour)
{
    PageArray<Rgb555> pixels;
    EXPECT_TRUE(pixels.allocate(count));
    for (Rgb555& texel : pixels) texel = colour;
    return pixels;
}

TEST(TextureList, EverySlotStartsOutEmptyWithTheBlankTexture)
{
    TextureList list;
    ASSERT_EQ(list.create(), Message::none);
    ASSERT_EQ(list.slots().size(), 4096u);
    for (const TextureSlot& slot : list.slots()) {
        ASSERT_EQ(slot.width, 8);
        ASSERT_EQ(slot.height, 8);
        ASSERT_EQ(slot.pixels, blankTexture());
    }
    EXPECT_EQ(list.usedCount(), 0u);
    EXPECT_EQ(list.current, 0u);
}

TEST(TextureList, TheBlankTextureIsACheckerboardOfTwoByTwoCells)
{
    for (int y = 0; y < 8; ++y)
        for (int x = 0; x < 8; ++x)
            EXPECT_EQ(blankTexture()[y * 8 + x], (x / 2 + y / 2) % 2 == 0 ? 0xFDE0 : 0x83E0)
                << x << ", " << y;
}

TEST(TextureList, UsedCountReachesToTheHighestFilledSlot)
{
    TextureList list;
    ASSERT_EQ(list.create(), Message::none);
    list.set(100, 8, 1, texels(8, 0x8001));
    EXPECT_EQ(list.usedCount(), 101u);
    list.set(4095, 8, 1, texels(8, 0x8002));
    EXPECT_EQ(list.usedCount(), 4096u);
    list.clear(4095);
    EXPECT_EQ(list.usedCount(), 101u);
    list.clear(100);
    EXPECT_EQ(list.usedCount(), 0u);
}

TEST(TextureList, ClearingAnEmptySlotLeavesTheSharedImageAlone)
{
    TextureList list;
    ASSERT_EQ(list.create(), Message::none);
    list.clear(5);
    list.clear(5);
    EXPECT_EQ(list.releasePixels(5), nullptr);
    EXPECT_TRUE(list.isEmpty(5));
    EXPECT_EQ(blankTexture()[0], 0xFDE0);
}

TEST(TextureList, ReleasedPixelsOutliveTheirSlot)
{
    TextureList list;
    ASSERT_EQ(list.create(), Message::none);
    list.set(7, 16, 2, texels(32, 0x9234));
    EXPECT_EQ(list.pixels(7).size(), 32u);
    Rgb555* const pixels = list.releasePixels(7);
    EXPECT_TRUE(list.isEmpty(7));
    EXPECT_EQ(list.slot(7).width, 8);
    EXPECT_EQ(list.slot(7).height, 8);
    list.clearAll();
    ASSERT_NE(pixels, nullptr);
    EXPECT_EQ(pixels[31], 0x9234);
    freePages(pixels);
}

} // namespace
} // namespace facetor
