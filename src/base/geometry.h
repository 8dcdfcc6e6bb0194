#pragma once

#include <array>
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

inline constexpr Matrix identityMatrix{
    {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}
};

// The operations below carry their intermediate results in double precision and store singles.

/// True when all components are zero of either sign.
bool isZero(const Vector3& v);
/// True when all components are finite numbers.
bool isFinite(const Vector3& v);

/// v scaled to unit length, or v itself when its squared length is exactly 1. The squared length
/// is rounded to a single before the root is taken. A zero vector is not guarded against: it gives
/// components that are not numbers.
Vector3 normalised(const Vector3& v);

float dotProduct(const Vector3& a, const Vector3& b);

/// (a.y b.z - b.y a.z, a.z b.x - b.z a.x, a.x b.y - b.x a.y)
Vector3 crossProduct(const Vector3& a, const Vector3& b);

/// x row 0 + y row 1 + z row 2 + row 3
Vector3 transformPoint(const Vector3& point, const Matrix& matrix);

/// transformPoint() without the translation: for directions and normals.
Vector3 rotateVector(const Vector3& vector, const Matrix& matrix);

} // namespace facetor
