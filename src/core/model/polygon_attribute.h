#pragma once

#include <cstdint>

namespace facetor {

/// How the console draws one polygon. The first 12 bytes, little-endian, are what a model file
/// holds.
struct PolygonAttribute {
    std::uint16_t plane;   ///< bit 0: double-sided (`Dual_Plane`)
    std::uint16_t sort;    ///< Z-sort point: sortCentre, sortNearest, sortFarthest
    std::uint16_t texture; ///< slot in the texture list; counts only with textureMap
    std::uint16_t color;   ///< 15-bit RGB; bit 15 is carried and ignored
    std::uint32_t flags;   ///< bits of AttributeFlag; bits that it does not name are carried
    std::uint32_t gouraud; ///< the polygon's Gouraud entry: always the record's own pool index
};
static_assert(sizeof(PolygonAttribute) == 16);

inline constexpr std::uint16_t dualPlaneBit = 1;

/// Slots of the texture list. A polygon may name one beyond: it shows what empty slots show.
inline constexpr std::uint16_t textureSlots = 4096;

inline constexpr std::uint16_t sortCentre = 0;
inline constexpr std::uint16_t sortNearest = 1;
inline constexpr std::uint16_t sortFarthest = 2;

/// Bits of PolygonAttribute::flags. The editor sets exactly one of the three materials and at most
/// one of shadow, half and translucent, none of which means that the colour replaces the pixel. A
/// file may hold any combination.
enum AttributeFlag : std::uint32_t {
    flipHorizontal = 0x00000001,
    flipVertical = 0x00000002,
    textureMap = 0x00000008,  ///< material: texture map
    polygonFace = 0x00000010, ///< material: polygon
    polyLine = 0x00000020,    ///< material: polyline
    picked = 0x00000080,      ///< selection mark of the editor; not drawing state of the console
    meshMode = 0x00000100,    ///< every other pixel, as on a checkerboard
    shadowMode = 0x00000200,
    halfMode = 0x00000400,
    translucentMode = 0x00000800,
    gouraudShading = 0x00001000,
    useLight = 0x01000000,
    nearClip = 0x08000000,
};

/// What an edit leaves of the selection mark of the polygons that it changed.
enum class PickedAfter { keep, clear };

/// Whether the polygon is marked.
constexpr bool isPicked(const PolygonAttribute& attribute)
{
    return (attribute.flags & picked) != 0;
}

/// Gouraud colours computed from the light at run time: Gouraud shading with light.
constexpr bool isLightGouraud(const PolygonAttribute& attribute)
{
    return (attribute.flags & gouraudShading) != 0 && (attribute.flags & useLight) != 0;
}

/// Gouraud colours taken from the polygon's own entry: Gouraud shading without light.
constexpr bool isTableGouraud(const PolygonAttribute& attribute)
{
    return (attribute.flags & gouraudShading) != 0 && (attribute.flags & useLight) == 0;
}

} // namespace facetor
