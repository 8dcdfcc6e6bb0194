#include "base/file.h"
#include "image/bitmap_conversion.h"
#include "image/bmp_codec.h"
#include "image/png_codec.h"
#include "image/tga_codec.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace facetor {

namespace {

Bytes pictureFile(const std::string& name)
{
    const auto file = readFile("tests/images/pictures/" + name);
    EXPECT_TRUE(file) << name;
    return file.value_or(Bytes{});
}

using Texels = std::vector<Rgb555>;

/// The texture that an editor whose transparent colour is black makes of a file; empty when the
/// codec refuses it.
Texels texelsOf(const ImageCodec& codec, std::span<const std::byte> file)
{
    const auto info = codec.info(file);
    if (!info) return {};
    // On the heap and of exactly its size, so that an overrun reaches the sanitizer.
    std::vector<std::byte> buffer(imageBufferSize(info->width, info->height, info->depth));
    if (!codec.decode(file, buffer)) return {};
    Texels texels(std::size_t{info->width} * info->height);
    convertImageBuffer(buffer, info->width, info->depth, 0, texels);
    return texels;
}

struct Picture {
    const char* name;
    const ImageCodec& codec;
    int depth;
    std::uint32_t width = 16, height = 8;
};

// Every form that the codecs read, as another program writes it. Beside each stands what that
// program itself reads: red, green, blue and alpha, two bytes each, the high one first.
const Picture pictures[] = {
    {"bmp1.bmp", bmpCodec, 4},          {"rle8.bmp", bmpCodec, 8},
    {"bmp4.bmp", bmpCodec, 4},          {"odd4.bmp", bmpCodec, 4, 15, 7},
    {"bmp8.bmp", bmpCodec, 8},          {"odd8.bmp", bmpCodec, 8, 15, 7},
    {"core8.bmp", bmpCodec, 8},         {"bmp555.bmp", bmpCodec, 16},
    {"bmp565.bmp", bmpCodec, 16},       {"bmp24.bmp", bmpCodec, 24},
    {"odd24.bmp", bmpCodec, 24, 15, 7}, {"core24.bmp", bmpCodec, 24},
    {"bmp32.bmp", bmpCodec, 32},        {"palette.png", pngCodec, 24},
    {"palette-cut.png", pngCodec, 32},  {"rgb.png", pngCodec, 24},
    {"rgba.png", pngCodec, 32},         {"rgb48.png", pngCodec, 24},
    {"rgba64.png", pngCodec, 32},       {"interlaced.png", pngCodec, 24},
    {"grey.png", pngCodec, 24},         {"two.png", pngCodec, 24},
    {"rgb.tga", tgaCodec, 24},          {"rgb-rle.tga", tgaCodec, 24},
    {"rgba.tga", tgaCodec, 32},         {"rgba-rle.tga", tgaCodec, 32},
    {"palette.tga", tgaCodec, 24},      {"palette-rle.tga", tgaCodec, 24},
    {"grey.tga", tgaCodec, 24},
};

/// Whether black arrives apart from transparent in a picture.
bool isSeparated(const Picture& picture)
{
    return &picture.codec == &pngCodec || (&picture.codec == &tgaCodec && picture.depth == 32);
}

/// What a pixel is to become, said the slow way: the opaque texel with the least distance.
Rgb555 expectedTexel(std::span<const std::byte> rgba, bool separated)
{
    const auto byte = [&](std::size_t i) { // the nearest one
        const int high = std::to_integer<int>(rgba[i * 2]);
        return (high * 256 + std::to_integer<int>(rgba[i * 2 + 1]) + 128) / 257;
    };
    const Rgb555 colour = rgb555(byte(0) >> 3, byte(1) >> 3, byte(2) >> 3);
    if (separated && byte(3) < 128) return 0;
    if (!separated || colour != 0) return colour == 0 ? colour : opaqueBit | colour;
    const auto distance = [&](Rgb555 candidate) {
        const int red = byte(0) - 8 * redOf(candidate), green = byte(1) - 8 * greenOf(candidate),
                  blue = byte(2) - 8 * blueOf(candidate);
        return red * red + green * green + blue * blue;
    };
    const auto isNearer = [&](Rgb555 a, Rgb555 b) { return distance(a) < distance(b); };
    return opaqueBit | std::min({rgb555(0, 0, 1), rgb555(1, 0, 0), rgb555(0, 1, 0)}, isNearer);
}

TEST(ImageCodecs, EveryPixelOfAnotherProgramsPicturesArrives)
{
    for (const Picture& picture : pictures) {
        SCOPED_TRACE(picture.name);
        const Bytes file = pictureFile(picture.name),
                    pixels = pictureFile(picture.name + std::string(".rgba"));
        const auto info = picture.codec.info(file);
        ASSERT_TRUE(info);
        EXPECT_EQ(info->width, picture.width);
        EXPECT_EQ(info->height, picture.height);
        EXPECT_EQ(info->depth, picture.depth);
        const Texels texels = texelsOf(picture.codec, file);
        ASSERT_EQ(texels.size() * 8, pixels.size());
        for (std::size_t i = 0; i < texels.size(); ++i)
            ASSERT_EQ(texels[i],
                      expectedTexel(std::span(pixels).subspan(i * 8, 8), isSeparated(picture)))
                << i;
    }
}

TEST(ImageCodecs, EveryCutPictureIsRefused)
{
    for (const Picture& picture : pictures) {
        SCOPED_TRACE(picture.name);
        const Bytes whole = pictureFile(picture.name);
        // A PNG's last chunk is a mark without contents, 12 bytes of which 4 are a checksum.
        const std::size_t needed = whole.size() - (&picture.codec == &pngCodec ? 4 : 0);
        for (std::size_t size = 0; size < needed; ++size)
            ASSERT_TRUE(
                texelsOf(picture.codec,
                         Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)))
                    .empty())
                << size;
    }
}

/// The colours of a BMP of 4 x 2 pixels with a palette of grey 0, 8, 16 ... 120, as 5-bit greys.
std::vector<int> greysOfBmp(int bits, std::uint32_t compression, std::string_view pixels)
{
    ByteWriter out;
    out.text("BM");
    for (const std::uint32_t value :
         {0u, 0u, 54u + 64u, 40u, 4u, 2u, 1u | static_cast<std::uint32_t>(bits) << 16, compression})
        out.u32(value);
    out.zeros(12);
    out.u32(16); // colours
    out.u32(0);
    for (std::uint32_t i = 0; i < 16; ++i) out.u32(i * 0x080808);
    for (const char byte : pixels) out.u8(static_cast<std::uint8_t>(byte));
    std::vector<int> greys;
    for (const Rgb555 texel : texelsOf(bmpCodec, out.release())) greys.push_back(redOf(texel));
    return greys;
}

TEST(ImageCodecs, FormsThatFewProgramsWriteArriveAsWell)
{
    using namespace std::string_view_literals;
    using Greys = std::vector<int>;
    const struct {
        int bits;
        std::uint32_t compression;
        std::string_view pixels;
        Greys greys;
    } bitmaps[] = {
        {2, 0, "\x1B\0\0\0\xE4\0\0\0"sv, {3, 2, 1, 0, 0, 1, 2, 3}},
        // A run of alternating indices, a row's end, three as they are with what fills them up.
        {4, 2, "\x04\x12\0\0\0\x03\x45\x60\0\1"sv, {4, 5, 6, 0, 1, 2, 1, 2}},
        // A skip of one to the right and one up, and a run that goes beyond the row.
        {8, 1, "\x01\x07\0\x02\x01\x01\x09\x05\0\1"sv, {0, 0, 5, 5, 7, 0, 0, 0}},
        {8, 1, "\x04\x07\0\0\x04\x07"sv, {}}, // without the end mark
    };
    for (const auto& row : bitmaps)
        EXPECT_EQ(greysOfBmp(row.bits, row.compression, row.pixels), row.greys);

    Bytes file = pictureFile("rgb.tga");
    Texels expected = texelsOf(tgaCodec, file);
    for (auto row = expected.begin(); row != expected.end(); row += 16) std::reverse(row, row + 16);
    file.at(17) |= std::byte{0x10};
    EXPECT_EQ(texelsOf(tgaCodec, file), expected) << "from right to left";

    file = pictureFile("palette.tga");
    expected = texelsOf(tgaCodec, file);
    file.at(3) = std::byte{7}; // the palette's first entry
    const std::size_t start = 18 + std::to_integer<std::size_t>(file.at(0)) +
                              std::to_integer<std::size_t>(file.at(5)) * 3;
    for (std::size_t i = start; i < start + 128; ++i)
        file.at(i) = std::byte(std::to_integer<int>(file.at(i)) + 7);
    EXPECT_EQ(texelsOf(tgaCodec, file), expected) << "a palette from 7 on";
    file.at(0) = std::byte{255}; // bytes of text before the palette
    EXPECT_EQ(texelsOf(tgaCodec, file), Texels{}) << "a palette beyond the end";
}

TEST(ImageCodecs, TexturesComeBackAsTheyWere)
{
    for (const ImageCodec* codec : {&bmpCodec, &pngCodec, &tgaCodec})
        for (const std::uint32_t width : {1u, 8u, 255u}) {
            Texels texels(std::size_t{width} * 5);
            for (std::size_t i = 0; i < texels.size(); ++i)
                texels[i] = i % 3 == 0 ? Rgb555{0} : static_cast<Rgb555>(opaqueBit | i * 7919);
            texels[1] = opaqueBit; // opaque black, which only a BMP can tell
            const Bytes file = codec->encode({width, 5, texels});
            if (codec != &bmpCodec) texels[1] = opaqueBit | rgb555(0, 0, 1);
            EXPECT_EQ(texelsOf(*codec, file), texels);
        }
}

TEST(ImageCodecs, AnImageTooLargeToDecodeStillHasASize)
{
    const struct {
        const char* name;
        const ImageCodec& codec;
        std::size_t low, high; ///< the bytes of the height that are set
    } rows[] = {{"bmp24.bmp", bmpCodec, 22, 23},
                {"rgb.png", pngCodec, 23, 22},
                {"rgb.tga", tgaCodec, 14, 15}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        Bytes file = pictureFile(row.name);
        file[row.low] = std::byte{0x01};
        file[row.high] = std::byte{0x10};
        const auto info = row.codec.info(file);
        ASSERT_TRUE(info);
        EXPECT_EQ(info->height, largestImageSide + 1);
        file.resize(std::size_t{16} * 4 * (largestImageSide + 2)); // what it lacks is there
        EXPECT_TRUE(texelsOf(row.codec, file).empty());
    }
    Bytes wide = pictureFile("rgb.png");
    wide[17] = std::byte{0x10};
    ASSERT_TRUE(pngCodec.info(wide));
    EXPECT_EQ(pngCodec.info(wide)->width, 0x100010u);
    EXPECT_TRUE(texelsOf(pngCodec, wide).empty());
    wide[16] = std::byte{0x80}; // more than the format allows
    EXPECT_FALSE(pngCodec.info(wide));
}

} // namespace

} // namespace facetor
