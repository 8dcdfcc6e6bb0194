#include "engine/light.h"

#include <algorithm>

namespace facetor {

void setLightColour(Light& light, Rgb555 colour)
{
    light.offset = {static_cast<std::int16_t>(31 - redOf(colour)),
                    static_cast<std::int16_t>(31 - greenOf(colour)),
                    static_cast<std::int16_t>(31 - blueOf(colour))};
}

void setAmbientColour(Light& light, Rgb555 colour)
{
    light.minimum = {static_cast<std::int16_t>(redOf(colour)),
                     static_cast<std::int16_t>(greenOf(colour)),
                     static_cast<std::int16_t>(blueOf(colour))};
}

int lightLevel(const Light& light, const Vector3& normal, Facing facing)
{
    float v = dotProduct(normalised(normal), light.direction);
    if (facing == Facing::back) v = -v;
    v *= -16.0f;
    if (!(v > -maxLightLevel)) return -maxLightLevel; // not a number: as dark as it gets
    return v < maxLightLevel ? static_cast<int>(v) : maxLightLevel;
}

int colouredComponent(const Light& light, std::size_t channel, int component)
{
    return std::max(component - light.offset[channel], int{light.minimum[channel]});
}

Rgb555 litColour(const Light& light, Rgb555 colour, int level, int index)
{
    // The table of 104 entries, entry i = clamp(i - 40, 0, 31), as the formula it holds.
    const auto lit = [&](std::size_t channel, int component) {
        const int entry = colouredComponent(light, channel, component) + level + index;
        return std::clamp(entry - 40, 0, 31);
    };
    return rgb555(lit(0, redOf(colour)), lit(1, greenOf(colour)), lit(2, blueOf(colour)));
}

const TexelLight& texelLight(TexelLightCache& cache, const Light& light, int level)
{
    if (cache.offset != light.offset || cache.minimum != light.minimum) {
        cache.made.fill(false);
        cache.offset = light.offset;
        cache.minimum = light.minimum;
    }
    const auto slot = static_cast<std::size_t>(level + maxLightLevel);
    TexelLight& tables = cache.levels[slot];
    if (!cache.made[slot]) {
        for (int k = 0; k < 32; ++k) {
            const Rgb555 lit = litColour(light, rgb555(k, k, k), level, texelLightIndex);
            const auto component = static_cast<std::size_t>(k);
            tables.table[0][component] = lit & rgb555(31, 0, 0);
            tables.table[1][component] = lit & rgb555(0, 31, 0);
            tables.table[2][component] = lit & rgb555(0, 0, 31);
        }
        cache.made[slot] = true;
    }
    return tables;
}

} // namespace facetor
