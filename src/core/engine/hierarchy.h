#pragma once

#include "engine/matrix_stack.h"
#include "model/model.h"

#include <cstdint>

namespace facetor {

/// What places an object in its parent: its matrix before its translation, rotation and scaling, or
/// these alone.
enum class ObjectPlacement { withMatrix, withoutMatrix };

/// Calls `visit(object)` with the index of object `first`, each of its siblings and all their
/// children, parents first, the current matrix being the one that places it. Needs a model that
/// isSafeToDraw(). A tree deeper than ten levels runs out of stack: objects below are placed on top
/// of the last matrix, and what lies further out is not disturbed by that.
template <typename Visit>
void walkObjects(MatrixStack& stack, const Model& model, std::uint32_t first,
                 ObjectPlacement placement, Visit& visit)
{
    if (model.objectCount == 0) return;
    for (std::uint32_t i = first; i != noObject; i = model.objects[i].next) {
        const Object& object = model.objects[i];
        const bool pushed = pushMatrix(stack);
        if (placement == ObjectPlacement::withMatrix)
            multiplyMatrix(stack, toRotationTranslation(object.matrix));
        translate(stack, object.translation.x, object.translation.y, object.translation.z);
        rotateXYZ(stack, object.rotation[0], object.rotation[1], object.rotation[2]);
        scale(stack, object.scaling.x, object.scaling.y, object.scaling.z);
        visit(i);
        if (object.child != noObject) {
            const bool childPushed = pushMatrix(stack);
            walkObjects(stack, model, object.child, placement, visit);
            if (childPushed) popMatrix(stack);
        }
        if (pushed) popMatrix(stack);
    }
}

/// Whether an object is shown and has vertices or polygons.
inline bool showsMesh(const Model& model, const Object& object)
{
    const Mesh& mesh = model.meshes[object.mesh];
    return (object.flags & objectShown) != 0 && (mesh.vertexCount > 0 || mesh.polygonCount > 0);
}

/// As walkObjects(), but calls `visit(meshIndex)` and only for objects that showsMesh(); children
/// of an object that is not shown are visited all the same.
template <typename Visit>
void visitMeshes(MatrixStack& stack, const Model& model, std::uint32_t first, Visit& visit)
{
    const auto visitShown = [&](std::uint32_t index) {
        const Object& object = model.objects[index];
        if (showsMesh(model, object)) visit(object.mesh);
    };
    walkObjects(stack, model, first, ObjectPlacement::withMatrix, visitShown);
}

} // namespace facetor
