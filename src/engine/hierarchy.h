#pragma once

#include "engine/matrix_stack.h"
#include "model/model.h"

#include <cstdint>

namespace facetor {

/// Calls `visit(meshIndex)` for the mesh of every shown object among object `first`, its siblings
/// and all their children, the current matrix being the one that places it. Meshes without vertices
/// and polygons are passed over; children of an object that is not shown are visited all the same.
/// Needs a model that isSafeToDraw(). A tree deeper than ten levels runs out of stack: objects
/// below are placed on top of the last matrix, and what lies further out is not disturbed by that.
template <typename Visit>
void visitMeshes(MatrixStack& stack, const Model& model, std::uint32_t first, Visit& visit)
{
    if (model.objectCount == 0) return;
    for (std::uint32_t i = first; i != noObject; i = model.objects[i].next) {
        const Object& object = model.objects[i];
        const bool pushed = pushMatrix(stack);
        multiplyMatrix(stack, toRotationTranslation(object.matrix));
        translate(stack, object.translation.x, object.translation.y, object.translation.z);
        rotateXYZ(stack, object.rotation[0], object.rotation[1], object.rotation[2]);
        scale(stack, object.scaling.x, object.scaling.y, object.scaling.z);
        const Mesh& mesh = model.meshes[object.mesh];
        if ((object.flags & objectShown) != 0 && (mesh.vertexCount > 0 || mesh.polygonCount > 0))
            visit(object.mesh);
        if (object.child != noObject) {
            const bool childPushed = pushMatrix(stack);
            visitMeshes(stack, model, object.child, visit);
            if (childPushed) popMatrix(stack);
        }
        if (pushed) popMatrix(stack);
    }
}

} // namespace facetor
