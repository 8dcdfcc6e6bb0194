#pragma once

#include "base/colour.h"
#include "base/geometry.h"

#include <array>
#include <cstdint>

namespace facetor {

/// Light levels run from -16, the darkest, to 16; a level is added to each 5-bit component.
inline constexpr int maxLightLevel = 16;

/// What the colour-with-light rule adds to a component before it looks the result up: 40 for the
/// colours of flat fills, 32 for texels, which makes a texel come out 8 steps darker than a flat
/// colour lit at the same level.
inline constexpr int colourLightIndex = 40;
inline constexpr int texelLightIndex = 32;

/// The engine's light: its direction, and how its colour and the ambient colour act on a component.
struct Light {
    Vector3 direction{0.577f, 0.577f, 0.577f};
    std::array<std::int16_t, 3> offset{};  ///< red, green, blue: 31 - the light colour's component
    std::array<std::int16_t, 3> minimum{}; ///< red, green, blue: the ambient colour's component
};

/// Sets the offsets to 31 - the colour's components: white leaves every colour as it is.
void setLightColour(Light& light, Rgb555 colour);
/// Sets the minima to the colour's components.
void setAmbientColour(Light& light, Rgb555 colour);

enum class Facing { front, back };

/// trunc(dot(n, direction) x -16), the dot product negated for a back face, of the normalised n:
/// -16 to 16 for a direction of unit length. The result is kept within -16 to 16, also for a
/// normal that is not finite.
int lightLevel(const Light& light, const Vector3& normal, Facing facing);

/// One component (0-31) less the light colour's offset, raised to the ambient minimum.
/// `channel` is 0 red, 1 green, 2 blue.
int colouredComponent(const Light& light, std::size_t channel, int component);

/// The colour-with-light rule: each component through colouredComponent(), then plus `level` and
/// `index` - 40, clamped to 0-31. `index` is colourLightIndex or texelLightIndex. Bit 15 of the
/// result is clear.
Rgb555 litColour(const Light& light, Rgb555 colour, int level, int index);

/// The colour-with-light rule for texels at one level, as a look-up for each component.
struct TexelLight {
    /// [channel][component]: the lit component in its place within the colour.
    std::array<std::array<Rgb555, 32>, 3> table;

    Rgb555 lit(Rgb555 texel) const
    {
        return static_cast<Rgb555>(table[0][texel >> 10 & 31] | table[1][texel >> 5 & 31] |
                                   table[2][texel & 31]);
    }
};

/// The tables of all levels, each made when it is first asked for and kept while the light's
/// colours stay.
struct TexelLightCache {
    std::array<TexelLight, 2 * maxLightLevel + 1> levels;
    std::array<bool, 2 * maxLightLevel + 1> made{};
    std::array<std::int16_t, 3> offset{};
    std::array<std::int16_t, 3> minimum{};
};

/// The tables of one level, -16 to 16. The reference holds until the light's colours change.
const TexelLight& texelLight(TexelLightCache& cache, const Light& light, int level);

} // namespace facetor
