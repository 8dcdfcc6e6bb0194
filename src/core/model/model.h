#pragma once

#include "base/angle.h"
#include "base/colour.h"
#include "base/geometry.h"
#include "base/message.h"
#include "base/pages.h"
#include "model/polygon_attribute.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

namespace facetor {

// Capacities of the pools; nothing grows. Vertices, polygons, attributes and Gouraud entries count
// over all objects together.
inline constexpr std::uint32_t vertexCapacity = 4096;
inline constexpr std::uint32_t polygonCapacity = 4096;
inline constexpr std::uint32_t objectCapacity = 128;

/// A model point in its object's space.
using Vertex = Vector3;
/// A unit vector: the shading normal at the vertex of the same index.
using VertexNormal = Vector3;

/// A quadrilateral; a triangle repeats a corner.
struct Polygon {
    Vector3 normal; ///< unit face normal, recomputed whenever a model is loaded
    std::array<std::uint16_t, 4> corner; ///< vertex indices within the owning object's slice
};

/// Four 15-bit colours, one a corner, in corner order. A component of 16 is neutral.
struct GouraudEntry {
    std::array<Rgb555, 4> color;
};

/// A Gouraud colour that changes nothing: 16 in each component.
inline constexpr Rgb555 neutralGouraud = opaqueBit | rgb555(16, 16, 16);

/// One object's tables, in the order in which the console's library lays such a record out. A table
/// is the pool index of its first element.
struct Mesh {
    std::uint32_t vertexTable;
    std::uint32_t vertexCount;
    std::uint32_t polygonTable;
    std::uint32_t polygonCount;
    std::uint32_t attributeTable;
    std::uint32_t vertexNormalTable;
};

/// "None" among object references.
inline constexpr std::uint32_t noObject = 0xFFFFFFFF;

/// Bit of Object::flags: the object's own mesh is drawn. Its children are drawn regardless.
inline constexpr std::uint32_t objectShown = 1;

/// One node of the first-child, next-sibling tree.
struct Object {
    std::uint32_t mesh;  ///< index of its mesh, normally its own index
    std::uint32_t child; ///< index of the first child, or noObject
    std::uint32_t next;  ///< index of the next sibling, or noObject
    Vector3 translation;
    std::array<Angle, 3> rotation; ///< about x, y, z, in angle units
    Vector3 scaling;
    Matrix matrix; ///< only the first three columns are stored in a file
    std::uint32_t flags;
    std::uint32_t depth; ///< 0 for object 0 and its siblings, the parent's + 1 for a child
};

static_assert(sizeof(Vertex) == 12 && sizeof(Polygon) == 20 && sizeof(GouraudEntry) == 8);
static_assert(sizeof(Mesh) == 24 && sizeof(Object) == 120);

/// The one model of the document. The pools are allocated once by createModelStore() and filled in
/// place from then on. Objects 0 to objectCount - 1 are in use; object 0 is the first top-level
/// one. Object k's slices of the pools follow those of object k - 1 without gaps.
struct Model {
    PageArray<Vertex> vertices;
    PageArray<VertexNormal> vertexNormals; ///< parallel to vertices
    PageArray<Polygon> polygons;
    PageArray<PolygonAttribute> attributes; ///< parallel to polygons
    PageArray<GouraudEntry> gouraud;        ///< parallel to polygons
    PageArray<Mesh> meshes;                 ///< parallel to objects
    PageArray<Object> objects;
    std::array<std::string, objectCapacity> names; ///< parallel to objects; no NUL inside
    std::uint32_t objectCount = 0;
    std::uint32_t totalVertexCount = 0;
    std::uint32_t totalPolygonCount = 0;
};

/// Allocates the pools and fills them with the start-up cube: one object "Model00" of edge 100
/// about the origin, 8 vertices, 6 polygons in six colours. outOfMemory, with nothing held, when an
/// allocation fails.
Message createModelStore(Model& model);

/// Makes `to` hold what `from` holds, in its own pools. Needs pools of both.
void copyModel(Model& to, const Model& from);

/// Frees names and pools; the model holds nothing afterwards.
void releaseModelStore(Model& model);

/// "Model" and the index with at least two digits: Model00, Model12, Model100.
std::string defaultObjectName(std::uint32_t index);

/// Sets the depth of object `first` and its siblings to `depth`, of their children to depth + 1,
/// and so on. Needs links that form a tree.
void assignDepths(Model& model, std::uint32_t first, std::uint32_t depth);

/// The unit normal of a polygon whose corners are indices into `vertices`: the cross product of the
/// unit edges from corner 0 to corner 3 and to corner 1. An edge of length zero is replaced by the
/// one to corner 2, so a triangle with a repeated corner gets its normal too; what has no area gets
/// one that is not finite.
Vector3 computeFaceNormal(const Polygon& polygon, const Vertex* vertices);

/// Sets the vertex normals of one mesh to the normalised sums of the face normals of the polygons
/// that name each vertex, each polygon once. A vertex that no polygon names gets one that is not
/// finite.
void computeVertexNormals(Model& model, const Mesh& mesh);

/// True when the engine, the writers and the exports can take the model: counts within the pools,
/// slices within the counts, corners within their slices, existing meshes and objects, links that
/// form a forest.
bool isSafeToDraw(const Model& model);

/// True when no object in use is reached by two links and no chain of links runs in a circle.
/// Needs links that name objects in use or none. On false, `culprit` names an object that is.
bool linksFormForest(const Model& model, std::uint32_t& culprit);

} // namespace facetor
