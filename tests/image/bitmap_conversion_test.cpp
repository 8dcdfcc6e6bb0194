#include "image/bitmap_conversion.h"

#include "base/bytes.h"

#include <gtest/gtest.h>

#include <vector>

namespace facetor {
namespace {

constexpr Rgb555 noTransparency = rgb555(1, 2, 3);

ByteWriter header(std::int32_t width, std::int32_t height, std::uint16_t bitCount,
                  std::uint32_t compression = 0)
{
    ByteWriter out;
    out.u32(40);
    out.u32(static_cast<std::uint32_t>(width));
    out.u32(static_cast<std::uint32_t>(height));
    out.u16(1);
    out.u16(bitCount);
    out.u32(compression);
    out.zeros(20);
    return out;
}

void add(ByteWriter& out, std::initializer_list<int> values)
{
    for (const int value : values) out.u8(static_cast<std::uint8_t>(value));
}

/// Blue, green, red, reserved: entry i is red 8 i.
void addRedTable(ByteWriter& out, int count)
{
    for (int i = 0; i < count; ++i) add(out, {0, 0, i % 32 * 8, 0xFF});
}

std::vector<Rgb555> convert(const Bytes& bitmap, Rgb555 transparent = noTransparency)
{
    const BitmapSize size = packedBitmapSize(bitmap);
    std::vector<Rgb555> texels(static_cast<std::size_t>(size.width) *
                               static_cast<std::size_t>(size.height));
    EXPECT_TRUE(convertBitmap(bitmap, transparent, texels));
    return texels;
}

constexpr Rgb555 opaque(int red, int green, int blue)
{
    return opaqueBit | rgb555(red, green, blue);
}

// Each bitmap is 3 x 2: rows that need filling up, and a top row that stands last in memory.

TEST(BitmapConversion, TakesSixteenBitPixelsAsTheyStandAndComparesTheirTopBitToo)
{
    ByteWriter out = header(3, 2, 16);
    for (const std::uint16_t pixel : {0x0001, 0x8002, 0x7FFF, 0xEEEE}) out.u16(pixel);
    for (const std::uint16_t pixel : {0x1234, 0x9234, 0x1235, 0xEEEE}) out.u16(pixel);
    // Bit 15 of the transparent colour does not count, that of the pixel does.
    EXPECT_EQ(convert(out.release(), 0x9234),
              (std::vector<Rgb555>{0x1234, 0x9234, 0x9235, 0x8001, 0x8002, 0xFFFF}));
}

TEST(BitmapConversion, RefusesWhatItCannotConvertAndWritesNothing)
{
    const struct {
        const char* why;
        std::int32_t width, height;
        std::uint16_t bitCount;
        std::uint32_t compression;
    } rows[] = {
        {"run lengths", 3, 2, 8, 1},           {"bit fields", 3, 2, 32, 3},
        {"two colours", 3, 2, 1, 0},           {"no depth", 3, 2, 0, 0},
        {"a depth of no bitmap", 3, 2, 25, 0}, {"no width", 0, 2, 24, 0},
        {"rows from the top", 3, -2, 24, 0},   {"more than a slot has", 65536, 2, 24, 0},
        {"bits that are cut", 3, 200, 24, 0},  {"bits far beyond", 65535, 65535, 32, 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        ByteWriter out = header(row.width, row.height, row.bitCount, row.compression);
        out.zeros(1200);
        std::vector<Rgb555> texels(6, 0x1111);
        EXPECT_FALSE(convertBitmap(out.release(), noTransparency, texels));
        EXPECT_EQ(texels, std::vector<Rgb555>(6, 0x1111));
    }
}

TEST(BitmapConversion, EveryCutOfAGoodBitmapIsRefused)
{
    for (const std::uint16_t bitCount : {4, 8, 16, 24, 32}) {
        ByteWriter out = header(3, 2, bitCount);
        if (bitCount <= 8) addRedTable(out, 1 << bitCount);
        out.zeros(2 * ((3u * bitCount + 31) / 32 * 4));
        const Bytes whole = out.release();
        std::vector<Rgb555> texels(6);
        EXPECT_TRUE(convertBitmap(whole, noTransparency, texels));
        for (std::size_t size = 0; size < whole.size(); ++size) {
            SCOPED_TRACE(testing::Message() << bitCount << " bits, " << size << " bytes");
            const Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
            EXPECT_FALSE(convertBitmap(cut, noTransparency, texels));
            EXPECT_EQ(packedBitmapSize(cut).width, size < 40 ? 0 : 3);
        }
    }
}

TEST(BitmapConversion, PacksATextureSoThatItComesBackAndMarksTransparentTexels)
{
    Rgb555 texels[] = {0x7FFF, 0xFFFF, opaque(1, 2, 4), rgb555(30, 20, 10), 0x8000, 0x0000};
    const TextureSlot texture{3, 2, texels};
    Bytes bitmap(packedTextureSize(texture));
    packTexture(texture, bitmap);
    ByteWriter expected = header(3, 2, 24);
    Bytes bytes = expected.release();
    for (const auto& [offset, value] : {std::pair{20u, 24},
                                        {24u, 2835 & 255},
                                        {25u, 2835 >> 8},
                                        {28u, 2835 & 255},
                                        {29u, 2835 >> 8}})
        bytes[offset] = static_cast<std::byte>(value);
    for (const int value : {81,   161,  241,  0,    0,    0,    1,  1,  1, 0, 0, 0, // the lower row
                            0xF9, 0xF9, 0xF9, 0xF8, 0xF8, 0xF8, 32, 16, 8, 0, 0, 0})
        bytes.push_back(static_cast<std::byte>(value));
    EXPECT_EQ(bitmap, bytes);
    for (Rgb555& texel : texels) texel |= opaqueBit; // which is not what the channels tell
    EXPECT_EQ(convert(bitmap), std::vector<Rgb555>(std::begin(texels), std::end(texels)));
}

} // namespace
} // namespace facetor
