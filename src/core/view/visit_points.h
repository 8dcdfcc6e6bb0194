#pragma once

#include "base/geometry.h"
#include "engine/engine.h"
#include "engine/hierarchy.h"

#include <algorithm>

namespace facetor {

/// A box around points; empty, with least > most, before the first one.
struct Extents {
    Vector3 least{1e8f, 1e8f, 1e8f};
    Vector3 most{-1e8f, -1e8f, -1e8f};

    bool isEmpty() const { return least.x > most.x; }

    void widen(const Vector3& point)
    {
        least = {std::min(least.x, point.x), std::min(least.y, point.y),
                 std::min(least.z, point.z)};
        most = {std::max(most.x, point.x), std::max(most.y, point.y), std::max(most.z, point.z)};
    }

    Vector3 middle() const
    {
        return {(least.x + most.x) * 0.5f, (least.y + most.y) * 0.5f, (least.z + most.z) * 0.5f};
    }
};

/// Calls `visit` with every finite point of the model's shown objects, placed by the current
/// matrix.
template <typename Visit> void visitPoints(Engine& engine, const Model& model, Visit visit)
{
    const auto visitMesh = [&](std::uint32_t index) {
        const Mesh& mesh = model.meshes[index];
        for (std::uint32_t i = 0; i < mesh.vertexCount; ++i) {
            const Vector3 point =
                transformPoint(model.vertices[mesh.vertexTable + i], engine.stack.current());
            if (isFinite(point)) visit(point);
        }
    };
    visitMeshes(engine.stack, model, 0, visitMesh);
}

/// The same of the corners of picked polygons.
template <typename Visit> void visitPickedPoints(Engine& engine, const Model& model, Visit visit)
{
    const auto visitMesh = [&](std::uint32_t index) {
        const Mesh& mesh = model.meshes[index];
        for (std::uint32_t i = 0; i < mesh.polygonCount; ++i) {
            if (!isPicked(model.attributes[mesh.attributeTable + i])) continue;
            for (const std::uint16_t corner : model.polygons[mesh.polygonTable + i].corner) {
                const Vector3 point = transformPoint(model.vertices[mesh.vertexTable + corner],
                                                     engine.stack.current());
                if (isFinite(point)) visit(point);
            }
        }
    };
    visitMeshes(engine.stack, model, 0, visitMesh);
}

} // namespace facetor
