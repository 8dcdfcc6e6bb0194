#include "base/angle.h"

#include <cmath>

namespace facetor {

bool isConvertibleDegrees(float degrees)
{
    return std::fabs(degrees) < 11796480.0f; // false for a value that is not a number
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
