#include "texture/texture_file.h"

#include "base/file.h"
#include "base/temporary_folder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <utility>

namespace facetor {
namespace {

void fill(TextureList& list, std::uint32_t number, std::uint16_t width, std::uint16_t height,
          Rgb555 first)
{
    Texels pixels;
    ASSERT_TRUE(pixels.allocate(std::size_t{width} * height));
    for (Rgb555& texel : pixels) texel = first++;
    list.set(number, width, height, std::move(pixels));
}

/// Slots 1 and 100, of 8 x 2 and 3 x 3 texels.
class TextureFile : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_EQ(list.create(), Message::none);
        ASSERT_EQ(other.create(), Message::none);
        fill(list, 1, 8, 2, 0x8100);
        fill(list, 100, 3, 3, 0x0200);
    }

    TextureList list, other;
    TemporaryFolder folder;
    std::string path = folder.file("list.mxt");
};

constexpr std::size_t firstChunk = 264;
constexpr std::size_t secondChunk = firstChunk + 16 + 8 * 2 * 2;

void patch(Bytes& bytes, std::size_t offset, const std::vector<int>& values)
{
    for (const int value : values) bytes[offset++] = static_cast<std::byte>(value);
}

TEST_F(TextureFile, ReadingKeepsTheTexturesOfSlotsThatTheFileDoesNotName)
{
    fill(other, 2, 8, 8, 0x8800);
    fill(other, 100, 8, 8, 0x8900);
    ASSERT_EQ(readTextures(other, writeTextures(list)), Message::none);
    EXPECT_EQ(other.slot(2).width, 8);
    EXPECT_EQ(other.pixels(2)[63], 0x8800 + 63);
    EXPECT_EQ(other.slot(100).height, 3);
    EXPECT_EQ(other.pixels(100)[8], 0x0208);
}

TEST_F(TextureFile, WhatTheReaderDoesNotLookAtMayHoldAnything)
{
    Bytes bytes = writeTextures(list);
    patch(bytes, 4, {1, 2, 3, 4, 5, 6, 7, 8});                 // header size and version
    patch(bytes, 16, {'?', 0, '?'});                           // banner
    patch(bytes, firstChunk + 4, {0xFF, 0xFF, 0xFF, 0xFF});    // chunk size
    bytes.insert(bytes.end(), {std::byte{'x'}, std::byte{0}}); // after the last chunk
    ASSERT_EQ(readTextures(other, bytes), Message::none);
    EXPECT_EQ(writeTextures(other), writeTextures(list));
}

TEST_F(TextureFile, ReaderNamesTheChunkThatItRefuses)
{
    const struct {
        std::size_t offset;
        std::vector<int> bytes;
        const char* reason;
        std::uint32_t used; ///< afterwards
    } rows[] = {
        {0, {'M', 'X', '3', 'D'}, "MXTX at offset 0: \"MX3D\" stands in its place", 0},
        {0, {'T', 'E', 'X', 'R'}, "MXTX at offset 0: \"TEXR\" stands in its place", 0},
        {secondChunk + 3, {1}, "TQTx at offset 312: \"TQT?\" stands in its place", 2},
        {12, {3}, "TQTx at offset 346: the file ends before it", 101},
        {secondChunk + 8, {0, 16}, "TQTx at offset 312: slot 4096 does not exist", 2},
        {secondChunk + 11, {1}, "TQTx at offset 312: slot 16777316 does not exist", 2},
        {secondChunk + 12, {0, 0}, "TQTx at offset 312: a texture of 0 x 3 texels", 2},
        {secondChunk + 14, {0, 0}, "TQTx at offset 312: a texture of 3 x 0 texels", 2},
        {secondChunk + 14, {4}, "TQTx at offset 312: the file ends inside its 3 x 4 texels", 2},
        {firstChunk + 12,
         {255, 255, 255, 255},
         "TQTx at offset 264: the file ends inside its 65535 x 65535 texels",
         0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.reason);
        Bytes bytes = writeTextures(list);
        patch(bytes, row.offset, row.bytes);
        other.clearAll();
        Reason reason;
        EXPECT_EQ(readTextures(other, bytes, &reason), Message::formatNotSupported);
        EXPECT_EQ(reason.text, "chunk " + std::string(row.reason));
        EXPECT_EQ(other.usedCount(), row.used);
    }
}

TEST_F(TextureFile, EveryCutIsRefusedAndKeepsTheTexturesBeforeIt)
{
    const Bytes whole = writeTextures(list);
    for (std::size_t size = 0; size < whole.size(); ++size) {
        SCOPED_TRACE(size);
        const Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
        other.clearAll();
        fill(other, 100, 8, 8, 0x8900);
        EXPECT_EQ(readTextures(other, cut), Message::formatNotSupported);
        EXPECT_EQ(other.isEmpty(1), size < secondChunk);
        EXPECT_EQ(other.slot(100).width, 8) << "a texture that is cut must not replace another";
    }
}

TEST_F(TextureFile, TheFileTestLooksAtTheFirstTagOnly)
{
    const struct {
        std::string_view contents;
        bool expected;
    } rows[] = {
        {"MXTX", true}, {"TEXR....more", true}, {"MX3D........", false}, {"MXT", false},
        {"", false},    {" MXTX...", false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.contents);
        ASSERT_EQ(writeFile(path, std::as_bytes(std::span(row.contents))), Message::none);
        EXPECT_EQ(isTextureFile(path), row.expected);
    }
    EXPECT_FALSE(isTextureFile(path + ".absent"));
}

} // namespace
} // namespace facetor
