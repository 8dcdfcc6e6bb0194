#include "texture/texture_list.h"

#include <gtest/gtest.h>

#include <utility>

namespace facetor {
namespace {

Texels texels(std::size_t count, Rgb555 colour)
{
    Texels pixels;
    EXPECT_TRUE(pixels.allocate(count));
    for (Rgb555& texel : pixels) texel = colour;
    return pixels;
}

TEST(TextureList, ACopySharesPixelsUntilOneOfThemIsEditedAndThenKeepsItsOwn)
{
    TextureList list;
    ASSERT_EQ(list.create(), Message::none);
    list.set(7, 16, 2, texels(32, 0x9234));
    TextureList copy = list;
    EXPECT_EQ(copy.slot(7).pixels, list.slot(7).pixels);
    list.pixels(7)[31] = 1;
    list.clear(5); // empty already: the image that all empty slots share stays
    EXPECT_EQ(blankTexture()[0], 0xFDE0);
    EXPECT_EQ(copy.slot(7).pixels[31], 0x9234);
    EXPECT_FALSE(sameTexture(copy.slot(7), list.slot(7)));
    copy = TextureList{};
    EXPECT_TRUE(copy.slots().empty());
    EXPECT_EQ(list.slot(7).pixels[31], 1);
}

} // namespace
} // namespace facetor
