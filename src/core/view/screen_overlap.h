#pragma once

#include "base/geometry.h"
#include "engine/engine.h"

#include <array>

namespace facetor {

/// What two polygons both cover on the screen.
struct ScreenOverlap {
    double area;                  ///< in pixels
    std::array<double, 2> middle; ///< x and y of its centre; counts only with an area
};

/// The common part of two polygons, each taken as its two triangles of corners 0, 1, 2 and 0, 2, 3.
ScreenOverlap overlapOf(const ScreenQuad& a, const ScreenQuad& b);

/// The area of both triangles of a polygon, in pixels.
double areaOf(const ScreenQuad& quad);

/// How view space appears on the screen.
struct Projection {
    ScreenPoint centre;
    float focalLength;
    bool perspective;
};

/// A polygon's corners in view space.
using ViewCorners = std::array<Vector3, 4>;

/// Which of two polygons' planes lies farther where both show the same point of the screen: 1 for
/// `a`, -1 for `b`, 0 when they are about as far or a plane is seen edge-on.
int compareDepth(const ViewCorners& a, const ViewCorners& b, std::array<double, 2> at,
                 const Projection& projection);

} // namespace facetor
