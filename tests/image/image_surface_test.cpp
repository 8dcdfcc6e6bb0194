#include "image/image_surface.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

namespace facetor {

namespace {

constexpr std::uint16_t depths[] = {1, 4, 8, 16, 24, 32};

/// Bytes that differ from each other and from zero.
std::vector<std::byte> pattern(std::size_t size)
{
    std::vector<std::byte> bytes(size);
    for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<std::byte>(i * 37 + 11);
    return bytes;
}

TEST(ImageSurface, LoadedPixelsAreReadBackAtEveryDepth)
{
    for (const std::uint16_t depth : depths) {
        SCOPED_TRACE(depth);
        ImageSurface surface;
        ASSERT_EQ(createSurface(surface, 8, 3, depth), Message::none);
        const auto loaded = pattern(std::size_t{depth} * 3);
        EXPECT_FALSE(loadPixels(surface, std::span(loaded).first(loaded.size() - 1)));
        ASSERT_TRUE(loadPixels(surface, loaded));
        EXPECT_EQ(std::memcmp(surfaceBits(surface), &loaded[std::size_t{depth} * 2], depth), 0)
            << "the last row stands first";
        std::vector<std::byte> read(depth == 24 ? 96 : loaded.size(), std::byte{1});
        ASSERT_TRUE(readPixels(surface, read));
        if (depth != 24) {
            EXPECT_EQ(read, loaded);
            continue;
        }
        for (std::size_t i = 0; i < 24; ++i) {
            EXPECT_EQ(std::memcmp(&read[i * 4], &loaded[i * 3], 3), 0) << i;
            EXPECT_EQ(read[i * 4 + 3], std::byte{0});
        }
    }
}

/// Every pixel's bits, the top row first.
std::vector<unsigned> pixelsOf(const ImageSurface& surface)
{
    const unsigned depth = surface.depth;
    std::vector<unsigned> pixels;
    for (std::size_t y = 0; y < surface.height; ++y)
        for (std::size_t bit = 0; bit < surface.width * depth; bit += depth) {
            const std::byte* at =
                surfaceBits(surface) + (surface.height - 1 - y) * surface.rowStride + bit / 8;
            unsigned value = 0;
            if (depth < 8)
                value =
                    std::to_integer<unsigned>(*at) >> (8 - depth - bit % 8) & ((1u << depth) - 1);
            else
                std::memcpy(&value, at, depth / 8);
            pixels.push_back(value);
        }
    return pixels;
}

TEST(ImageSurface, CopiesWhatLiesInBothSurfaces)
{
    constexpr int side = 8;
    struct Case {
        PixelRectangle from, to;
    };
    const Case cases[] = {{{2, 1, 6, 5}, {3, 2, 7, 6}},         {{5, 3, 13, 7}, {-4, -1, 4, 3}},
                          {{0, 0, 8, 8}, {6, 7, 14, 15}},       {{-3, -2, 5, 6}, {0, 0, 8, 8}},
                          {{-90, 50, 90, 80}, {0, 0, 180, 30}}, {{0, 0, 8, 8}, {20, 0, 28, 8}}};
    for (const std::uint16_t depth : depths)
        for (const auto& [from, to] : cases) {
            SCOPED_TRACE(testing::Message() << depth << " bits to " << to.left);
            ImageSurface source, target;
            ASSERT_EQ(createSurface(source, side, side, depth), Message::none);
            ASSERT_EQ(createSurface(target, side, side, depth), Message::none);
            ASSERT_TRUE(loadPixels(source, pattern(std::size_t{depth} * side)));
            const auto original = pixelsOf(source);
            std::vector<unsigned> expected(side * side);
            // Beyond its left or top edge the source begins at -left or -top, whatever its own
            // says.
            const int dx = to.left < 0 ? -to.left : from.left - to.left;
            const int dy = to.top < 0 ? -to.top : from.top - to.top;
            for (int y = std::max(to.top, 0); y < std::min(to.bottom, side); ++y)
                for (int x = std::max(to.left, 0); x < std::min(to.right, side); ++x)
                    if (x + dx >= 0 && x + dx < side && y + dy >= 0 && y + dy < side)
                        expected[static_cast<std::size_t>(y * side + x)] =
                            original[static_cast<std::size_t>((y + dy) * side + x + dx)];
            ASSERT_TRUE(copySurface(source, target, from, to));
            EXPECT_EQ(pixelsOf(target), expected);
        }
    ImageSurface bytes, words;
    ASSERT_EQ(createSurface(bytes, 4, 4, 8), Message::none);
    ASSERT_EQ(createSurface(words, 4, 4, 16), Message::none);
    EXPECT_FALSE(copySurface(bytes, words, {0, 0, 4, 4}, {0, 0, 4, 4}));
    EXPECT_FALSE(copySurface(bytes, bytes, {0, 0, 4, 4}, {0, 0, 4, 5}));
}

TEST(ImageSurface, ATextureIsShownInTheTopLeftCornerClippedWithItsHolesFilled)
{
    ImageSurface surface;
    ASSERT_EQ(createSurface(surface, 2, 2, 16), Message::none);
    const Rgb555 texels[] = {0x8001, 0x0002, 0x8003, 0x8004, 0x8005, 0x8006};
    showTexture(surface, texels, 3, 2, 0x7777);
    std::array<std::byte, 8> read;
    ASSERT_TRUE(readPixels(surface, read));
    constexpr std::uint8_t expected[] = {0x01, 0x80, 0x77, 0x77, 0x04, 0x80, 0x05, 0x80};
    EXPECT_EQ(std::memcmp(read.data(), expected, 8), 0);
}

TEST(ImageSurface, FillsAreClipped)
{
    for (const std::uint16_t depth : depths) {
        SCOPED_TRACE(depth);
        ImageSurface surface;
        ASSERT_EQ(createSurface(surface, 32, 16, depth), Message::none);
        fillSurface(surface, {-5, -5, 300, 300}, 0xFFFFFFFF);
        for (std::uint32_t i = 0; i < surface.rowStride * 16; ++i)
            ASSERT_EQ(surfaceBits(surface)[i], std::byte{0xFF}) << i;
        fillSurface(surface, {8, 2, 16, 3}, 0);
        std::uint32_t cleared = 0;
        for (std::uint32_t i = 0; i < surface.rowStride * 16; ++i)
            cleared += surfaceBits(surface)[i] == std::byte{0};
        EXPECT_EQ(cleared, depth);
        fillSurface(surface, {20, 2, 10, 3}, 0);
    }
}

TEST(ImageSurface, AMirroredBlitBeginsAtTheOtherEdge)
{
    ImageSurface surface;
    ASSERT_EQ(createSurface(surface, 256, 256, 16), Message::none);
    const PixelRectangle source{0, 0, 8, 8}, target{10, 10, 20, 20};
    EXPECT_EQ(blitGeometry(surface, source, target, Mirror::none),
              (BlitGeometry{10, 10, 10, 10, 0, 248, 8, 8}));
    EXPECT_EQ(blitGeometry(surface, source, target, Mirror::leftRight),
              (BlitGeometry{19, 10, -10, 10, 0, 248, 8, 8}));
    EXPECT_EQ(blitGeometry(surface, source, target, Mirror::both),
              (BlitGeometry{19, 19, -10, -10, 0, 248, 8, 8}));
}

} // namespace

} // namespace facetor
