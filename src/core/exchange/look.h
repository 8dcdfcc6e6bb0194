#pragma once

#include "base/bytes.h"
#include "base/colour.h"
#include "model/polygon_attribute.h"
#include "texture/texture_list.h"

#include <compare>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace facetor {

// What exports say of polygons in materials, pictures and texture coordinates.

/// What a material says of a polygon. By their slots first, those without one before all others.
struct Look {
    std::optional<std::uint16_t> slot;
    Rgb555 colour; ///< bit 15 clear; white with a slot, whose picture it multiplies
    bool isLit, isTranslucent;
    bool isDoubleSided = false;
    bool hasColours = false; ///< at its corners

    auto operator<=>(const Look&) const = default;

    /// The material's name: "colour31-0-4-unlit", "texture0012-translucent".
    std::string name() const;
};

inline constexpr Rgb555 whiteOfLook = rgb555(31, 31, 31);

/// The filled slot that a polygon shows of `textures`, which may be null; none when it shows none.
std::optional<std::uint16_t> shownSlot(const PolygonAttribute& attribute,
                                       const TextureList* textures);

/// A polygon's look with that slot: colour, light and translucency.
Look lookOf(const PolygonAttribute& attribute, std::optional<std::uint16_t> slot);

/// A corner of a picture.
struct PictureCorner {
    bool isRight, isLow;
};

/// Where a polygon's corner 0 to 3 lies on its picture, with the flips of its attribute.
PictureCorner pictureCorner(const PolygonAttribute& attribute, std::size_t corner);

/// A number of at least four digits: 0007.
std::string slotNumber(std::uint32_t slot);

/// A texture as PNG with alpha; empty when memory is short.
Bytes encodeTexture(const TextureList& textures, std::uint32_t slot);

} // namespace facetor
