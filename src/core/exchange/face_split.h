#pragma once

#include "exchange/scene.h"

#include <array>
#include <cstdint>
#include <span>
#include <vector>

namespace facetor {

/// Corners of a piece of a face, as indices into its corners and in their order; a triangle's
/// fourth is its third again.
using FacePiece = std::array<std::uint32_t, 4>;

constexpr bool isTriangle(const FacePiece& piece)
{
    return piece[2] == piece[3];
}

/// The difference, the dot and the cross product, and the length.
constexpr Real3 minus(const Real3& a, const Real3& b)
{
    return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}
constexpr double dot(const Real3& a, const Real3& b)
{
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}
constexpr Real3 cross(const Real3& a, const Real3& b)
{
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}
double lengthOf(const Real3& a);

/// Whether all corners lie on one line, but for a millionth of its length.
bool hasNoArea(std::span<const Real3> corners);

/// A vector along the normal of a face of any shape, twice its area long: the sum of the cross
/// products of its corners (Newell's way).
Real3 areaVector(std::span<const Real3> corners);

/// Whether a quad seen along `normal` is convex in each of its corners, by more than a ten
/// thousandth of a radian.
bool isConvexQuad(const std::array<Real3, 4>& corners, const Real3& normal);

/// Cuts a face of any number of corners into triangles and convex quads that cover it exactly once.
/// It may be concave and may touch itself, as a face with a hole does. A face that crosses itself
/// cannot be covered so: its pieces have its corners all the same.
std::vector<FacePiece> splitFace(std::span<const Real3> corners);

} // namespace facetor
