#include "output/attribute_packing.h"
#include "output/attribute_text.h"

#include <gtest/gtest.h>

namespace facetor {

/// Both forms of the same attributes: the eight arguments of the C source, of which a row says
/// those that are not the usual ones, and the record of the target image.
TEST(Attribute, IsSpelledAndPackedAsTheConsoleHasIt)
{
    const struct {
        PolygonAttribute attribute;
        /// plane, sort, texture, mode, colour, table, kind
        std::array<int, packedAttributeSize> bytes;
        const char *rest, *start = "Single_Plane, SORT_CEN, No_Texture", *gouraud = "No_Gouraud",
                          *colour = " 0, 0, 0";
    } rows[] = {
        // The cube's second polygon.
        {{0, 0, 0, 0xFC00, polygonFace | useLight, 0},
         {0, 0x0B, 0, 0, 0, 0xE8, 0x80, 0x1F, 0, 0, 0, 4},
         "MESHoff, sprPolygon, UseLight",
         "Single_Plane, SORT_CEN, No_Texture",
         "No_Gouraud",
         "31, 0, 0"},
        {{1, 1, 0, 0x8000 | 3 << 10 | 20 << 5 | 9, polygonFace, 0},
         {1, 0x01, 0, 0, 0, 0xE8, 0xA6, 0x83, 0, 0, 0, 4},
         "MESHoff, sprPolygon, No_Option",
         "Dual_Plane, SORT_MIN, No_Texture",
         "No_Gouraud",
         " 3,20, 9"},
        // The source looks at bit 0 of the plane, the image at all of it.
        {{2, 2, 0, 0, polyLine, 0},
         {1, 0x02, 0, 0, 0, 0xE8, 0x80, 0, 0, 0, 0, 5},
         "MESHoff, sprPolyLine, No_Option",
         "Single_Plane, SORT_MAX, No_Texture"},
        // A sort that is none of the three is the first in the source and nothing in the image.
        {{0, 3, 0, 0, polygonFace | nearClip, 0},
         {0, 0x40, 0, 0, 0, 0xE8, 0x80, 0, 0, 0, 0, 4},
         "MESHoff, sprPolygon, UseNearClip"},
        // Texture and flips count with the texture map alone; the selection mark nowhere.
        {{0, 0, 77, 0, polygonFace | flipHorizontal | flipVertical | picked, 0},
         {0, 0x03, 0, 0, 0, 0xE8, 0x80, 0, 0, 0, 0, 4},
         "MESHoff, sprPolygon, No_Option"},
        {{0, 0, 0x0FFE, 0, textureMap | polyLine, 0},
         {0, 0x07, 0x0F, 0xFE, 0, 0x28, 0x80, 0, 0, 0, 0, 2},
         "MESHoff, sprNoflip, No_Option",
         "Single_Plane, SORT_CEN, 4094"},
        {{0, 0, 1, 0, textureMap | flipHorizontal | meshMode, 0},
         {0, 0x07, 0, 1, 1, 0x28, 0x80, 0, 0, 0, 0, 0x12},
         "MESHon, sprHflip, No_Option",
         "Single_Plane, SORT_CEN, 1"},
        {{0, 0, 1, 0, textureMap | flipVertical | shadowMode, 0},
         {0, 0x07, 0, 1, 0, 0x29, 0x80, 0, 0, 0, 0, 0x22},
         "MESHoff|CL_Shadow, sprVflip, No_Option",
         "Single_Plane, SORT_CEN, 1"},
        {{0, 2, 1, 0, textureMap | flipHorizontal | flipVertical | halfMode | useLight | nearClip,
          0},
         {0, 0x4E, 0, 1, 0, 0x2A, 0x80, 0, 0, 0, 0, 0x32},
         "MESHoff|CL_Half, sprHVflip, UseLight|UseNearClip",
         "Single_Plane, SORT_MAX, 1"},
        {{0, 0, 0, 0, polygonFace | gouraudShading | useLight | nearClip, 0},
         {0, 0xC3, 0, 0, 0, 0xEC, 0x80, 0, 0x1C, 0x3A, 0, 4},
         "MESHoff|CL_Gouraud, sprPolygon, UseGouraud|UseNearClip",
         "Single_Plane, SORT_CEN, No_Texture",
         "GRreal(5)"},
        {{0, 0, 0, 0, polygonFace | gouraudShading | translucentMode, 0},
         {0, 0x03, 0, 0, 0, 0xEF, 0x80, 0, 0x1C, 0xFF, 0, 4},
         "MESHoff|CL_Trans|CL_Gouraud, sprPolygon, No_Option",
         "Single_Plane, SORT_CEN, No_Texture",
         "GRtbl(12)"},
    };
    for (const auto& row : rows) {
        const std::string text = std::string(row.start) + ", C_RGB(" + row.colour + "), " +
                                 row.gouraud + ", CL32KRGB|" + row.rest;
        SCOPED_TRACE(text);
        std::uint32_t lightIndex = 5, tableIndex = 12;
        EXPECT_EQ(formatAttribute(row.attribute, lightIndex, tableIndex), text);
        std::uint16_t light = 0x1C3A, table = 0x1CFF;
        const PackedAttribute packed = packAttribute(row.attribute, light, table);
        for (std::size_t i = 0; i < packed.size(); ++i)
            EXPECT_EQ(std::to_integer<int>(packed[i]), row.bytes[i]) << i;
        const bool byLight = isLightGouraud(row.attribute), byTable = isTableGouraud(row.attribute);
        EXPECT_EQ(lightIndex, byLight ? 6u : 5u);
        EXPECT_EQ(tableIndex, byTable ? 13u : 12u);
        EXPECT_EQ(light, byLight ? 0x1C3B : 0x1C3A);
        EXPECT_EQ(table, byTable ? 0x1D00 : 0x1CFF);
    }
}

} // namespace facetor
