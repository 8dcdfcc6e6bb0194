#include "view/frame_objects.h"

#include "engine/hierarchy.h"

namespace facetor {

FrameObjects::FrameObjects(const Engine& engine, const Model& model) : shown_(engine.vertexCount)
{
    std::uint32_t vertex = 0;
    const auto put = [&](std::uint32_t index) {
        const Object& object = model.objects[index];
        const Mesh& mesh = model.meshes[object.mesh];
        // Left out are those that putMesh() has no room for.
        if (!showsMesh(model, object) || mesh.vertexCount > engine.vertexCount - vertex) return;
        if (mesh.vertexCount > 0) shown_[vertex] = {index, polygonCount_};
        vertex += mesh.vertexCount;
        polygonCount_ += mesh.polygonCount;
    };
    const auto putAll = [&](const auto& self, std::uint32_t first) -> void { // as walkObjects()
        for (std::uint32_t i = first; i != noObject; i = model.objects[i].next) {
            put(i);
            if (model.objects[i].child != noObject) self(self, model.objects[i].child);
        }
    };
    if (model.objectCount > 0) putAll(putAll, 0);
}

} // namespace facetor
