#include "attr/polygon_edits.h"

#include "engine/hierarchy.h"

#include <algorithm>
#include <bitset>
#include <span>
#include <utility>

namespace facetor {

namespace {

/// Added to light levels, so that they run from 4 on.
constexpr int greyAtLevel0 = 20;

void markAfter(PolygonAttribute& attribute, PickedAfter after)
{
    if (after == PickedAfter::clear) attribute.flags &= ~std::uint32_t{picked};
}

Vector3 negated(const Vector3& v)
{
    return {-v.x, -v.y, -v.z};
}

void invertMesh(Model& model, const Mesh& mesh, PickedAfter after)
{
    std::bitset<vertexCapacity> used; // by a picked polygon of this mesh
    for (std::uint32_t i = 0; i < mesh.polygonCount; ++i) {
        PolygonAttribute& attribute = model.attributes[mesh.attributeTable + i];
        if (!isPicked(attribute)) continue;
        Polygon& polygon = model.polygons[mesh.polygonTable + i];
        for (const std::uint16_t corner : polygon.corner) used.set(corner);
        std::swap(polygon.corner[0], polygon.corner[1]);
        std::swap(polygon.corner[2], polygon.corner[3]);
        polygon.normal = negated(polygon.normal);
        attribute.flags ^= flipHorizontal;
        markAfter(attribute, after);
    }
    for (std::uint32_t k = 0; k < mesh.vertexCount; ++k) {
        VertexNormal& normal = model.vertexNormals[mesh.vertexNormalTable + k];
        if (used[k]) normal = negated(normal);
    }
}

void buildTablesOfMesh(Model& model, const Mesh& mesh, const Matrix& matrix, const Light& light)
{
    for (std::uint32_t i = 0; i < mesh.polygonCount; ++i) {
        PolygonAttribute& attribute = model.attributes[mesh.attributeTable + i];
        if (!isLightGouraud(attribute)) continue;
        const Polygon& polygon = model.polygons[mesh.polygonTable + i];
        const Facing facing =
            (attribute.flags & flipHorizontal) != 0 ? Facing::back : Facing::front;
        for (std::size_t c = 0; c < 4; ++c) {
            const VertexNormal& normal =
                model.vertexNormals[mesh.vertexNormalTable + polygon.corner[c]];
            const int level = lightLevel(light, rotateVector(normal, matrix), facing);
            const int grey = std::min(level + greyAtLevel0, 31);
            model.gouraud[attribute.gouraud].color[c] =
                opaqueBit | litColour(light, rgb555(grey, grey, grey), 0, colourLightIndex);
        }
        attribute.flags &= ~std::uint32_t{useLight};
    }
}

} // namespace

void rotateVertices(Model& model, CornerTurn turn, PickedAfter after)
{
    const int places = turn == CornerTurn::clockwise ? 1 : turn == CornerTurn::halfTurn ? 2 : 3;
    for (std::uint32_t i = 0; i < model.totalPolygonCount; ++i) {
        if (!isPicked(model.attributes[i])) continue;
        auto& corner = model.polygons[i].corner;
        std::rotate(std::begin(corner), std::begin(corner) + places, std::end(corner));
        markAfter(model.attributes[i], after);
    }
}

void invertSurface(Model& model, PickedAfter after)
{
    for (std::uint32_t i = 0; i < model.objectCount; ++i) invertMesh(model, model.meshes[i], after);
}

void buildGouraudTable(Model& model, MatrixStack& stack, const Light& light)
{
    const bool pushed = pushMatrix(stack);
    const auto visit = [&](std::uint32_t object) {
        buildTablesOfMesh(model, model.meshes[model.objects[object].mesh], stack.current(), light);
    };
    walkObjects(stack, model, 0, ObjectPlacement::withoutMatrix, visit);
    if (pushed) popMatrix(stack);
}

} // namespace facetor
