#pragma once

#include "engine/light.h"
#include "engine/matrix_stack.h"
#include "model/model.h"

namespace facetor {

// Edits of polygons. They change the model and nothing else: whoever calls keeps what undo needs
// first (attr/model_snapshot.h). Each needs a model that isSafeToDraw().

/// How a polygon's corners (a, b, c, d) are renumbered, which turns its texture on the face.
enum class CornerTurn {
    clockwise,        ///< (b, c, d, a)
    counterClockwise, ///< (d, a, b, c)
    halfTurn,         ///< (c, d, a, b)
};

/// Renumbers the corners of every picked polygon. Normals stay as they are.
void rotateVertices(Model& model, CornerTurn turn, PickedAfter after);

/// Turns every picked polygon to face the other way: its corners in reverse order (b, a, d, c), its
/// face normal negated, its horizontal flip toggled, so that a texture keeps its look. The normals
/// of its vertices are negated too, once each, also of those that it shares with other polygons.
void invertSurface(Model& model, PickedAfter after);

/// Computes a Gouraud table from the light for every polygon whose Gouraud colours come from the
/// light at run time, picked or not, and makes it one with a table (its useLight bit is cleared).
///
/// `stack` holds the camera's matrix as its current one, and does so afterwards. Objects are placed
/// in it by translation, rotation and scaling; their matrices do not count. A corner's grey is its
/// light level (-16 to 16, of the other side for a polygon with a horizontal flip) plus 20, at most
/// 31, and then passes the light's colours; bit 15 is set.
void buildGouraudTable(Model& model, MatrixStack& stack, const Light& light);

} // namespace facetor
