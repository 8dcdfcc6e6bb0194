#include "texture/texture_text.h"

#include <gtest/gtest.h>

namespace facetor {

namespace {

TEST(TextureText, TellsNumberAndSizeInLines)
{
    EXPECT_EQ(textureInformation(4095, {16, 8, nullptr}, "Width", "Height"),
              "ID\t= 4095\nWidth\t= 16\nHeight\t= 8");
}

TEST(TextureText, TipsAreMenuItemsWithTheirKeysInParentheses)
{
    EXPECT_EQ(tipOfMenuItem("&Open...\tCtrl+Shift+O"), "Open(Ctrl+Shift+O)");
    EXPECT_EQ(tipOfMenuItem("Li&ne Up"), "Line Up");
    EXPECT_EQ(tipOfMenuItem(""), "");
}

} // namespace

} // namespace facetor
