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

} // namespace facetor
