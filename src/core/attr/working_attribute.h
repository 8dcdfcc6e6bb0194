#pragma once

#include "model/model.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace facetor {

/// The pages of the attribute window, in the order of its tabs. Each shows a part of an attribute.
enum class AttributePage {
    material, ///< kind of polygon, light, colour, texture and its flips
    mode,     ///< mesh, and how the colour meets what lies below
    zSort,    ///< the point by which the polygon is sorted
    gouraud,  ///< Gouraud shading, light, the four colours
    option,   ///< one or two sides, near clip
};

inline constexpr int attributePageCount = 5;

/// Flags of which one counts: the kind of polygon, and how its colour meets what lies below.
inline constexpr std::uint32_t materialBits = polygonFace | polyLine | textureMap;
inline constexpr std::uint32_t modeBits = shadowMode | halfMode | translucentMode;

/// `before` with its bits under `mask` taken from `bits`.
constexpr std::uint32_t replaceBits(std::uint32_t before, std::uint32_t mask, std::uint32_t bits)
{
    return (before & ~mask) | (bits & mask);
}

/// What the attribute window edits, before it is applied to any polygon. One of it in the program;
/// it lives on while the window is closed.
struct WorkingAttribute {
    std::uint16_t plane = 0;
    std::uint16_t sort = sortCentre;
    std::uint16_t texture = 0;
    Rgb555 color = 0xFFFF;
    std::uint32_t flags = polygonFace | useLight;
    std::array<Rgb555, 4> gouraud = {neutralGouraud, neutralGouraud, neutralGouraud,
                                     neutralGouraud};

    bool operator==(const WorkingAttribute&) const = default;
};

/// Takes attribute and Gouraud colours of a polygon. Needs polygonIndex < model.totalPolygonCount.
void loadWorkingAttribute(WorkingAttribute& working, const Model& model,
                          std::uint32_t polygonIndex);

/// Gives every picked polygon what `page` shows of the working attribute, and nothing else of it.
void applyAttributePage(Model& model, const WorkingAttribute& working, AttributePage page,
                        PickedAfter after);

/// The number in the field of the texture: decimal, perhaps with a sign and with blanks around it,
/// as the 16 bits that a polygon keeps of it. Beyond the texture list (0-4095) it names a slot that
/// is always empty. None for any other text, and for a number that 16 bits do not hold, be they
/// signed or not (-32768 to 65535).
std::optional<std::uint16_t> parseTextureNumber(std::string_view text);

} // namespace facetor
