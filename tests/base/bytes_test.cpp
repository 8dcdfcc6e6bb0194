#include "base/bytes.h"

#include <gtest/gtest.h>

#include <limits>

namespace facetor {
namespace {

Bytes bytesOf(std::initializer_list<int> values)
{
    Bytes bytes;
    for (const int value : values) bytes.push_back(static_cast<std::byte>(value));
    return bytes;
}

TEST(ByteReader, ReadsLittleEndianValuesInTheOrderOfTheFile)
{
    const Bytes bytes = bytesOf({0x01, 0x34, 0x12, 0x78, 0x56, 0x34, 0xF2, 0x00, 0x00, 0x80, 0xBF});
    ByteReader in{bytes};
    EXPECT_EQ(in.u8(), 0x01);
    EXPECT_EQ(in.u16(), 0x1234);
    EXPECT_EQ(in.u32(), 0xF2345678u);
    EXPECT_EQ(in.f32(), -1.0f);
    EXPECT_TRUE(in.ok());
    EXPECT_EQ(in.left(), 0u);
    EXPECT_EQ(in.offset(), bytes.size());
}

TEST(ByteReader, StaysFailedAfterAReadBeyondTheEnd)
{
    const Bytes bytes = bytesOf({1, 2, 3});
    ByteReader in{bytes};
    EXPECT_EQ(in.u32(), 0u);
    EXPECT_FALSE(in.ok());
    EXPECT_EQ(in.u8(), 0) << "a byte is left, but the reader has failed";
    EXPECT_TRUE(in.take(1).empty());
    EXPECT_FALSE(readChunkHeader(in).has_value());
}

TEST(ByteReader, ASizeThatWouldWrapAnOffsetIsRefused)
{
    const Bytes bytes = bytesOf({1, 2, 3, 4});
    ByteReader in{bytes};
    (void)in.u8();
    EXPECT_TRUE(in.take(std::numeric_limits<std::size_t>::max()).empty());
    EXPECT_FALSE(in.ok());
}

TEST(ByteReader, AChunkHeaderNeedsAllEightBytes)
{
    const Bytes whole = bytesOf({'M', 'X', '3', 'D', 0, 1, 0, 0});
    for (std::size_t size = 0; size < whole.size(); ++size) {
        const Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
        ByteReader in{cut};
        EXPECT_FALSE(readChunkHeader(in).has_value()) << size;
        EXPECT_FALSE(in.ok()) << size;
    }
    ByteReader in{whole};
    const auto header = readChunkHeader(in);
    ASSERT_TRUE(header.has_value());
    EXPECT_EQ(header->tag, tag("MX3D"));
    EXPECT_EQ(header->size, 256u);
}

TEST(TagText, ShowsWhatCannotBePrintedAsAQuestionMark)
{
    std::array<char, 4> buffer;
    EXPECT_EQ(tagText(tag("POLY"), buffer), "POLY");
    EXPECT_EQ(tagText(0xFF7F0A41u, buffer), "A???");
}

} // namespace
} // namespace facetor
