#include "base/geometry.h"

#include <cmath>

namespace facetor {

bool isZero(const Vector3& v)
{
    return v.x == 0.0f && v.y == 0.0f && v.z == 0.0f;
}

bool isFinite(const Vector3& v)
{
    return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z);
}

Vector3 normalised(const Vector3& v)
{
    const double x = v.x, y = v.y, z = v.z;
    const double squared = x * x + y * y + z * z;
    if (squared == 1.0) return v;
    const double factor = 1.0 / std::sqrt(static_cast<double>(static_cast<float>(squared)));
    return {static_cast<float>(x * factor), static_cast<float>(y * factor),
            static_cast<float>(z * factor)};
}

float dotProduct(const Vector3& a, const Vector3& b)
{
    return static_cast<float>(double{a.x} * double{b.x} + double{a.y} * double{b.y} +
                              double{a.z} * double{b.z});
}

Vector3 crossProduct(const Vector3& a, const Vector3& b)
{
    const double ax = a.x, ay = a.y, az = a.z, bx = b.x, by = b.y, bz = b.z;
    return {static_cast<float>(ay * bz - by * az), static_cast<float>(az * bx - bz * ax),
            static_cast<float>(ax * by - bx * ay)};
}

Vector3 transformPoint(const Vector3& point, const Matrix& matrix)
{
    const double x = point.x, y = point.y, z = point.z;
    const auto& m = matrix.element;
    return {
        static_cast<float>(x * double{m[0]} + y * double{m[4]} + z * double{m[8]} + double{m[12]}),
        static_cast<float>(x * double{m[1]} + y * double{m[5]} + z * double{m[9]} + double{m[13]}),
        static_cast<float>(x * double{m[2]} + y * double{m[6]} + z * double{m[10]} +
                           double{m[14]})};
}

Vector3 rotateVector(const Vector3& vector, const Matrix& matrix)
{
    const double x = vector.x, y = vector.y, z = vector.z;
    const auto& m = matrix.element;
    return {static_cast<float>(x * double{m[0]} + y * double{m[4]} + z * double{m[8]}),
            static_cast<float>(x * double{m[1]} + y * double{m[5]} + z * double{m[9]}),
            static_cast<float>(x * double{m[2]} + y * double{m[6]} + z * double{m[10]})};
}

} // namespace facetor
