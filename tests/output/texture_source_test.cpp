#include "output/texture_source.h"

#include "base/file.h"
#include "base/temporary_folder.h"
#include "texture/numbered_texture.h"

#include <gtest/gtest.h>

namespace facetor {

namespace {

TEST(TextureSource, HoldsEverySlotUpToTheLastWithSizesAndOffsets)
{
    TextureList list;
    ASSERT_EQ(list.create(), Message::none);
    const TemporaryFolder folder;
    const std::string path = folder.file("wall.v2.txr");
    EXPECT_EQ(writeTextureSource(list, path), Message::texturesEmpty);
    EXPECT_EQ(folder.entryCount(), 0u);

    putNumbered(list, 1, 16, 1);
    list.pixels(1)[0] = 0x8000 | rgb555(1, 2, 3); // red and blue change places
    list.pixels(1)[1] = rgb555(31, 31, 31);       // transparent
    ASSERT_EQ(writeTextureSource(list, path), Message::none);
    const auto bytes = readFile(path);
    ASSERT_TRUE(bytes);
    const std::string text(reinterpret_cast<const char*>(bytes->data()), bytes->size());
    const std::string blankRow = "0x81ff,0x81ff,0x83e0,0x83e0,0x81ff,0x81ff,0x83e0,0x83e0,\r\n";
    EXPECT_TRUE(text.starts_with("/**********************************************\r\n"
                                 " *\tFACETOR DATA FILE 1995-1996/GRAPHICS TOOLS\r\n"
                                 " *\twall.v2.txr\r\n"
                                 " *\tTEXTURES = 2\r\n"
                                 " **********************************************/\r\n\r\n"
                                 "Uint16\ttexture_wall.v2000[] = {\r\n\t" +
                                 blankRow + "\t" + blankRow))
        << text;
    EXPECT_TRUE(text.ends_with(
        "};\r\n\r\nUint16\ttexture_wall.v2001[] = {\r\n"
        "\t0x8c41,0x0000,0x8800,0x8c00,0x9000,0x9400,0x9800,0x9c00,\r\n"
        "\t0xa000,0xa400,0xa800,0xac00,0xb000,0xb400,0xb800,0xbc00,\r\n};\r\n\r\n"
        "TEXTURE\ttex_wall.v2[] = {\r\n"
        "\tTEXTBL(  8,  8, CGADDRESS+0),\r\n\tTEXTBL( 16,  1, CGADDRESS+128),\r\n};\r\n\r\n"
        "PICTURE\tpic_wall.v2[] = {\r\n"
        "\tPICTBL(  0, COL_32K, texture_wall.v2000),\r\n"
        "\tPICTBL(  1, COL_32K, texture_wall.v2001),\r\n};\r\n\r\n"))
        << text;
}

} // namespace

} // namespace facetor
