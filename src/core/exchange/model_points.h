#pragma once

#include "base/geometry.h"
#include "engine/hierarchy.h"
#include "exchange/scene.h"
#include "model/model.h"

#include <array>
#include <vector>

namespace facetor {

/// The matrix that places each object as it is drawn; identity for those that no link reaches.
/// Empty when memory is short.
std::vector<Matrix> placementsOf(const Model& model);

/// A point as drawn.
inline Real3 drawnAt(const Vertex& vertex, const Matrix& placement)
{
    const Vector3 point = transformPoint(vertex, placement);
    return {double{point.x}, double{point.y}, double{point.z}};
}

/// Whether what a matrix places is seen as in a mirror: its determinant is negative.
bool isMirroring(const Matrix& matrix);

/// The rotation and scaling of a matrix, inverted; all zero when it has no inverse.
std::array<Real3, 3> invertedAxes(const Matrix& matrix);

/// Corners of a polygon that are different vertices, in order.
std::vector<std::uint16_t> differentCorners(const Polygon& polygon);

/// Links a model's objects by the parent of each (noIndex at the top), which comes before its
/// children, and sets their depths.
void linkObjects(Model& model, const std::vector<std::uint32_t>& parents);

} // namespace facetor
