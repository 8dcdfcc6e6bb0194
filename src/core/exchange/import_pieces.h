#pragma once

#include "base/geometry.h"
#include "exchange/model_import.h"
#include "exchange/scene.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace facetor {

// The first half of an import: faces become polygons and their positions vertices.

/// A polygon to be: corners of the scene in the file's order, a triangle's last one twice.
struct Piece {
    std::array<std::uint32_t, 4> corner;
    std::uint32_t face;
    bool smooth;
    bool isTriangle;
};

/// One object on its way into the model.
struct Part {
    std::vector<Vector3> vertices; ///< in the model's axes and units
    std::vector<Piece> pieces;
};

struct ImportPieces {
    std::vector<Part> parts;             ///< parallel to the scene's objects
    std::vector<std::uint32_t> vertexOf; ///< in its part, of each corner of the scene
    std::string beyondSingles;           ///< the first position that singles cannot hold
};

/// A point of a scene in the model's axes and units, and a direction in its axes.
Real3 placed(const Real3& point, const ImportOptions& options);
Real3 turned(const Real3& direction, const ImportOptions& options);

/// Equal numbers become equal bits: there is no negative zero.
Vector3 toVector(const Real3& point);
Real3 toReal(const Vector3& vector);

/// What is too much whatever triangles are joined, so that a huge file is refused at once; empty
/// when nothing is.
std::string tooLarge(const Scene& scene, const ImportOptions& options);

/// Drops faces without area, splits those of many corners, joins triangles and counts it all in
/// the report: vertices, polygons, quads, triangles, rejoined, split and dropped.
ImportPieces makePieces(const Scene& scene, const ImportOptions& options, ImportReport& report);

} // namespace facetor
