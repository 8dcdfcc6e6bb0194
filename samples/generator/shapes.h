#pragma once

#include "model_builder.h"

#include <functional>
#include <span>
#include <vector>

namespace facetor::samples {

using Ring = std::vector<Point>;
/// The material of the face in a row and column of a grid.
using MaterialAt = std::function<Material(int row, int column)>;

/// The same material everywhere.
MaterialAt everywhere(const Material& material);

/// A grid of points and the faces between them, with shared vertices, looking towards `outward`.
/// Texture rows run along the rows of the grid.
void addPatch(Part& part, const std::vector<Ring>& rows, Point outward, const MaterialAt& material);

/// A skin over closed rings of equally many points, looking away from the line through their
/// centres. Rows of the grid are the rings.
void addLoft(Part& part, const std::vector<Ring>& rings, const MaterialAt& material);

/// addLoft() closed at both ends by triangles to a point, all with shared vertices. The triangles
/// at `first` are row -1 of the material, those at `last` follow the last row.
void addGlobe(Part& part, Point first, const std::vector<Ring>& rings, Point last,
              const MaterialAt& material);

/// Closes a convex ring of an even number of points with quads, with vertices of its own.
void addCap(Part& part, const Ring& ring, Point outward, const MaterialAt& material);
/// Triangles from a ring to a point.
void addFan(Part& part, const Ring& ring, Point apex, Point outward, const Material& material);

/// `count` points on an ellipse around `centre` in the plane of x and y, or of x and z. The first
/// lies half a step from the top, or from the front.
Ring uprightRing(Point centre, double radiusX, double radiusY, int count);
Ring levelRing(Point centre, double radiusX, double radiusZ, int count);

/// Faces of a hexahedron, in the order of the start-up cube.
enum BoxFace { frontFace, rightFace, backFace, leftFace, topFace, bottomFace };
/// Which of them are there.
inline constexpr unsigned allFaces = 63, noBottom = 31;

/// Eight corners in the order of the start-up cube: the front rectangle clockwise from its top left
/// corner, then the back one in the same order.
void addHexahedron(Part& part, const std::array<Point, 8>& corners,
                   const std::array<Material, 6>& materials, unsigned faces = allFaces);
void addBox(Part& part, Point least, Point most, const std::array<Material, 6>& materials,
            unsigned faces = allFaces);
void addBox(Part& part, Point least, Point most, const Material& material,
            unsigned faces = allFaces);

/// An octahedron, its tips `above` and `below` the middle: 6 vertices, 8 triangles.
void addCrystal(Part& part, Point middle, double radius, double above, double below,
                const Material& material);

} // namespace facetor::samples
