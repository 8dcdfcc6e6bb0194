#include "base/angle.h"

namespace facetor {

bool isConvertibleDegrees(float degrees)
{
    constexpr float limit = 2147483648.0f;
    const float angle = degrees * unitsPerDegree;
    return angle >= -limit && angle < limit; // false for a value that is not a number
}

Angle degreesToAngle(float degrees)
{
    return static_cast<Angle>(degrees * unitsPerDegree);
}

float angleToDegrees(Angle angle)
{
    return static_cast<float>(static_cast<double>(angle) * static_cast<double>(degreesPerUnit));
}

} // namespace facetor
