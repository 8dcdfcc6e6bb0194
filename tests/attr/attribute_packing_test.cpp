#include "attr/attribute_packing.h"

#include <gtest/gtest.h>

namespace facetor {
namespace {

std::array<int, packedAttributeSize> values(const PackedAttribute& packed)
{
    std::array<int, packedAttributeSize> result{};
    for (std::size_t i = 0; i < packed.size(); ++i) result[i] = std::to_integer<int>(packed[i]);
    return result;
}

TEST(AttributePacking, LaysTheConsolesRecordOut)
{
    const struct {
        const char* why;
        PolygonAttribute attribute;
        std::array<int, packedAttributeSize>
            bytes; // plane, sort, texture, mode, colour, table, kind
    } rows[] = {
        {"the cube's second polygon",
         {0, 0, 0, 0xFC00, polygonFace | useLight, 0},
         {0, 0x0B, 0, 0, 0x00, 0xE8, 0x80, 0x1F, 0, 0, 0, 0x04}},
        {"any plane but 0, red and blue exchanged, top bit set",
         {2, 1, 0, 3 << 10 | 20 << 5 | 9, polygonFace, 0},
         {1, 0x01, 0, 0, 0x00, 0xE8, 0xA6, 0x83, 0, 0, 0, 0x04}},
        {"farthest point, polyline",
         {0, 2, 0, 0, polyLine, 0},
         {0, 0x02, 0, 0, 0x00, 0xE8, 0x80, 0x00, 0, 0, 0, 0x05}},
        {"a sort that is none of the three, near clip",
         {0, 3, 0, 0, polygonFace | nearClip, 0},
         {0, 0x40, 0, 0, 0x00, 0xE8, 0x80, 0x00, 0, 0, 0, 0x04}},
        {"texture and flips without texture map",
         {0, 0, 77, 0, polygonFace | flipHorizontal | flipVertical, 0},
         {0, 0x03, 0, 0, 0x00, 0xE8, 0x80, 0x00, 0, 0, 0, 0x04}},
        {"texture, no flip",
         {0, 0, 0x0FFE, 0, textureMap, 0},
         {0, 0x07, 0x0F, 0xFE, 0x00, 0x28, 0x80, 0x00, 0, 0, 0, 0x02}},
        {"texture, horizontal flip, on a mesh",
         {0, 0, 1, 0, textureMap | flipHorizontal | meshMode, 0},
         {0, 0x07, 0, 1, 0x01, 0x28, 0x80, 0x00, 0, 0, 0, 0x12}},
        {"texture, vertical flip, shadow",
         {0, 0, 1, 0, textureMap | flipVertical | shadowMode, 0},
         {0, 0x07, 0, 1, 0x00, 0x29, 0x80, 0x00, 0, 0, 0, 0x22}},
        {"texture, both flips, half, lit",
         {0, 2, 1, 0, textureMap | flipHorizontal | flipVertical | halfMode | useLight, 0},
         {0, 0x0E, 0, 1, 0x00, 0x2A, 0x80, 0x00, 0, 0, 0, 0x32}},
        {"Gouraud by light, near clip",
         {0, 0, 0, 0, polygonFace | gouraudShading | useLight | nearClip, 0},
         {0, 0xC3, 0, 0, 0x00, 0xEC, 0x80, 0x00, 0x1C, 0x3A, 0, 0x04}},
        {"Gouraud by table, translucent",
         {0, 0, 0, 0, polygonFace | gouraudShading | translucentMode, 0},
         {0, 0x03, 0, 0, 0x00, 0xEF, 0x80, 0x00, 0x1C, 0xFF, 0, 0x04}},
        {"the selection mark is the editor's own",
         {0, 0, 0, 0, polygonFace | picked, 0},
         {0, 0x03, 0, 0, 0x00, 0xE8, 0x80, 0x00, 0, 0, 0, 0x04}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        std::uint16_t light = 0x1C3A, table = 0x1CFF;
        EXPECT_EQ(values(packAttribute(row.attribute, light, table)), row.bytes);
        EXPECT_EQ(light, isLightGouraud(row.attribute) ? 0x1C3B : 0x1C3A);
        EXPECT_EQ(table, isTableGouraud(row.attribute) ? 0x1D00 : 0x1CFF);
    }
}

} // namespace
} // namespace facetor
