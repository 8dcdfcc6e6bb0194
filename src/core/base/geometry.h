#pragma once

#include <array>
#include <cmath>
#include <cstddef>

namespace facetor {

/// A point or direction: IEEE singles, as every coordinate in the model and the engine.
struct Vector3 {
    float x, y, z;
};

/// Four rows of four in row order, for row vectors (a point is multiplied on the left). Rows 0 to 2
/// (elements 0-2, 4-6, 8-10) are the images of the axes, row 3 (elements 12-14) the translation.
/// The fourth column stays as it was made: no operation reads or writes it.
struct Matrix {
    std::array<float, 16> element;

    float* row(std::size_t i) { return element.data() + 4 * i; }
    const float* row(std::size_t i) const { return element.data() + 4 * i; }
};

inline constexpr Matrix identityMatrix{{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}};

// The operations below carry their intermediate results in double precision and store singles.

/// True when all components are zero of either sign.
inline bool isZero(const Vector3& v)
{
    return v.x == 0.0f && v.y == 0.0f && v.z == 0.0f;
}

/// True when all components are finite numbers.
inline bool isFinite(const Vector3& v)
{
    return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z);
}

/// v scaled to unit length, or v itself when its squared length is exactly 1. The squared length
/// is rounded to a single before the root is taken. A zero vector is not guarded against: it gives
/// components that are not numbers.
/// Not inline, nor is the next: where GCC 12 vectorises one after the other it leaves out the
/// rounding to singles between them.
Vector3 normalised(const Vector3& v);

inline float dotProduct(const Vector3& a, const Vector3& b)
{
    return static_cast<float>(double{a.x} * double{b.x} + double{a.y} * double{b.y} +
                              double{a.z} * double{b.z});
}

/// (a.y b.z - b.y a.z, a.z b.x - b.z a.x, a.x b.y - b.x a.y)
Vector3 crossProduct(const Vector3& a, const Vector3& b);

/// x row 0 + y row 1 + z row 2 + row 3
inline Vector3 transformPoint(const Vector3& point, const Matrix& matrix)
{
    const double x = point.x, y = point.y, z = point.z;
    const auto& m = matrix.element;
    return {
        static_cast<float>(x * double{m[0]} + y * double{m[4]} + z * double{m[8]} + double{m[12]}),
        static_cast<float>(x * double{m[1]} + y * double{m[5]} + z * double{m[9]} + double{m[13]}),
        static_cast<float>(x * double{m[2]} + y * double{m[6]} + z * double{m[10]} +
                           double{m[14]})};
}

/// transformPoint() without the translation: for directions and normals.
inline Vector3 rotateVector(const Vector3& vector, const Matrix& matrix)
{
    const double x = vector.x, y = vector.y, z = vector.z;
    const auto& m = matrix.element;
    return {static_cast<float>(x * double{m[0]} + y * double{m[4]} + z * double{m[8]}),
            static_cast<float>(x * double{m[1]} + y * double{m[5]} + z * double{m[9]}),
            static_cast<float>(x * double{m[2]} + y * double{m[6]} + z * double{m[10]})};
}

} // namespace facetor
