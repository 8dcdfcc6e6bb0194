#include "attr/attribute_text.h"

#include <gtest/gtest.h>

namespace facetor {
namespace {

TEST(AttributeText, SpellsTheEightArguments)
{
    const struct {
        const char* why;
        PolygonAttribute attribute;
        const char* text;
    } rows[] = {
        {"the cube's first polygon",
         {0, 0, 0, 0xFFFF, polygonFace | useLight, 0},
         "Single_Plane, SORT_CEN, No_Texture, C_RGB(31,31,31), No_Gouraud, CL32KRGB|MESHoff, "
         "sprPolygon, UseLight"},
        {"components in two columns, red first",
         {1, 1, 0, 0x8000 | 3 << 10 | 20 << 5 | 9, polygonFace, 0},
         "Dual_Plane, SORT_MIN, No_Texture, C_RGB( 3,20, 9), No_Gouraud, CL32KRGB|MESHoff, "
         "sprPolygon, No_Option"},
        {"only bit 0 of the plane counts",
         {2, 2, 0, 0, polygonFace, 0},
         "Single_Plane, SORT_MAX, No_Texture, C_RGB( 0, 0, 0), No_Gouraud, CL32KRGB|MESHoff, "
         "sprPolygon, No_Option"},
        {"a sort that is none of the three",
         {0, 3, 0, 0, polygonFace, 0},
         "Single_Plane, SORT_CEN, No_Texture, C_RGB( 0, 0, 0), No_Gouraud, CL32KRGB|MESHoff, "
         "sprPolygon, No_Option"},
        {"a texture number without texture map",
         {0, 0, 77, 0, polygonFace | flipHorizontal | flipVertical, 0},
         "Single_Plane, SORT_CEN, No_Texture, C_RGB( 0, 0, 0), No_Gouraud, CL32KRGB|MESHoff, "
         "sprPolygon, No_Option"},
        {"both flips, light and near clip",
         {0, 0, 4095, 0, textureMap | flipHorizontal | flipVertical | useLight | nearClip, 0},
         "Single_Plane, SORT_CEN, 4095, C_RGB( 0, 0, 0), No_Gouraud, CL32KRGB|MESHoff, sprHVflip, "
         "UseLight|UseNearClip"},
        {"horizontal flip, near clip alone",
         {0, 0, 0, 0, textureMap | flipHorizontal | nearClip, 0},
         "Single_Plane, SORT_CEN, 0, C_RGB( 0, 0, 0), No_Gouraud, CL32KRGB|MESHoff, sprHflip, "
         "UseNearClip"},
        {"vertical flip, half",
         {0, 0, 8, 0, textureMap | flipVertical | halfMode, 0},
         "Single_Plane, SORT_CEN, 8, C_RGB( 0, 0, 0), No_Gouraud, CL32KRGB|MESHoff|CL_Half, "
         "sprVflip, No_Option"},
        {"texture map wins over polyline",
         {0, 0, 8, 0, textureMap | polyLine, 0},
         "Single_Plane, SORT_CEN, 8, C_RGB( 0, 0, 0), No_Gouraud, CL32KRGB|MESHoff, sprNoflip, "
         "No_Option"},
        {"polyline, shadow on a mesh",
         {0, 0, 0, 0, polyLine | shadowMode | meshMode, 0},
         "Single_Plane, SORT_CEN, No_Texture, C_RGB( 0, 0, 0), No_Gouraud, "
         "CL32KRGB|MESHon|CL_Shadow, sprPolyLine, No_Option"},
        {"Gouraud by light",
         {0, 0, 0, 0, polygonFace | gouraudShading | useLight, 0},
         "Single_Plane, SORT_CEN, No_Texture, C_RGB( 0, 0, 0), GRreal(5), "
         "CL32KRGB|MESHoff|CL_Gouraud, sprPolygon, UseGouraud"},
        {"Gouraud by table, translucent",
         {0, 0, 0, 0, polygonFace | gouraudShading | translucentMode, 0},
         "Single_Plane, SORT_CEN, No_Texture, C_RGB( 0, 0, 0), GRtbl(12), "
         "CL32KRGB|MESHoff|CL_Trans|CL_Gouraud, sprPolygon, No_Option"},
        {"every mode at once, Gouraud by light and near clip",
         {1, 0, 0, 0,
          polygonFace | meshMode | shadowMode | halfMode | translucentMode | gouraudShading |
              useLight | nearClip | picked,
          0},
         "Dual_Plane, SORT_CEN, No_Texture, C_RGB( 0, 0, 0), GRreal(5), "
         "CL32KRGB|MESHon|CL_Shadow|CL_Half|CL_Trans|CL_Gouraud, sprPolygon, "
         "UseGouraud|UseNearClip"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        std::uint32_t light = 5, table = 12;
        EXPECT_EQ(formatAttribute(row.attribute, light, table), row.text);
        EXPECT_EQ(light, isLightGouraud(row.attribute) ? 6u : 5u);
        EXPECT_EQ(table, isTableGouraud(row.attribute) ? 13u : 12u);
    }
}

} // namespace
} // namespace facetor
