#include "base/geometry.h"

#include <cmath>

namespace facetor {

Vector3 normalised(const Vector3& v)
{
    const double x = v.x, y = v.y, z = v.z;
    const double squared = x * x + y * y + z * z;
    if (squared == 1.0) return v;
    const double factor = 1.0 / std::sqrt(static_cast<double>(static_cast<float>(squared)));
    return {static_cast<float>(x * factor), static_cast<float>(y * factor),
            static_cast<float>(z * factor)};
}

Vector3 crossProduct(const Vector3& a, const Vector3& b)
{
    const double ax = a.x, ay = a.y, az = a.z, bx = b.x, by = b.y, bz = b.z;
    return {static_cast<float>(ay * bz - by * az), static_cast<float>(az * bx - bz * ax),
            static_cast<float>(ax * by - bx * ay)};
}

} // namespace facetor
