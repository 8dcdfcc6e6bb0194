#include "engine/engine.h"

#include "engine/hierarchy.h"

#include <algorithm>
#include <bit>
#include <utility>

namespace facetor {

namespace {

/// Screen positions are kept within this, so that differences of two fit 32 bits.
constexpr float farthestScreenPosition = 268435456.0f;

std::int32_t toScreen(float value, std::int32_t centre)
{
    // Written so that what is no number takes the first way out.
    if (!(value > -farthestScreenPosition)) value = -farthestScreenPosition;
    if (value > farthestScreenPosition) value = farthestScreenPosition;
    return centre + static_cast<std::int32_t>(value);
}

bool isOutside(const InclusiveRectangle& window, const ScreenPoint& point)
{
    return point.x < window.left || point.x > window.right || point.y < window.top ||
           point.y > window.bottom;
}

/// The point that decides where a polygon stands in the drawing order. For the farthest, each
/// later vertex wins over an equal earlier one; for the nearest, vertex 1 does not, 2 and 3 do.
Vector3 sortPoint(std::uint16_t sort, const std::array<const Vertex*, 4>& corner)
{
    if (sort == sortNearest) {
        const Vertex* nearest = corner[1]->z < corner[0]->z ? corner[1] : corner[0];
        if (corner[2]->z <= nearest->z) nearest = corner[2];
        if (corner[3]->z <= nearest->z) nearest = corner[3];
        return *nearest;
    }
    if (sort == sortFarthest) {
        const Vertex* farthest = corner[0];
        for (std::size_t i = 1; i < 4; ++i)
            if (corner[i]->z >= farthest->z) farthest = corner[i];
        return *farthest;
    }
    return {(corner[0]->x + corner[1]->x + corner[2]->x + corner[3]->x) * 0.25f,
            (corner[0]->y + corner[1]->y + corner[2]->y + corner[3]->y) * 0.25f,
            (corner[0]->z + corner[1]->z + corner[2]->z + corner[3]->z) * 0.25f};
}

void transformVertices(Engine& engine, const Model& model, const Mesh& mesh)
{
    const Matrix matrix = engine.stack.current();
    const Vertex* from = model.vertices.data() + mesh.vertexTable;
    Vertex* to = engine.viewVertices.data() + engine.vertexCount;
    ScreenPoint* screen = engine.screenPoints.data() + engine.vertexCount;
    for (std::uint32_t i = 0; i < mesh.vertexCount; ++i) {
        to[i] = transformPoint(from[i], matrix);
        screen[i] = projectPoint(engine.settings, to[i]);
    }
}

/// Depths as integers that ascend from far to near. A float's bits order like an integer once
/// negative ones are turned about; all of them turned about once more puts the larger first.
std::uint32_t sortKey(float depth)
{
    const auto bits = std::bit_cast<std::uint32_t>(depth);
    const std::uint32_t ascending = (bits & 0x80000000u) != 0 ? ~bits : bits | 0x80000000u;
    return ~ascending;
}

/// Below this many entries, comparing beats four passes over the buckets.
constexpr std::uint32_t radixSortFrom = 128;

/// Sorts pairs of key (upper half) and index by the key in four stable passes of eight bits.
/// Returns the half of the scratch space that holds the result.
const std::uint64_t* radixSort(std::uint64_t* pairs, std::uint64_t* other, std::uint32_t count)
{
    std::array<std::array<std::uint32_t, 256>, 4> buckets{};
    for (std::uint32_t i = 0; i < count; ++i)
        for (std::size_t pass = 0; pass < 4; ++pass)
            ++buckets[pass][pairs[i] >> (32 + 8 * pass) & 255];
    for (std::size_t pass = 0; pass < 4; ++pass) {
        const std::size_t shift = 32 + 8 * pass;
        std::array<std::uint32_t, 256>& bucket = buckets[pass];
        if (bucket[pairs[0] >> shift & 255] == count) continue; // all in one bucket
        std::uint32_t start = 0;
        for (std::uint32_t& entry : bucket) start += std::exchange(entry, start);
        for (std::uint32_t i = 0; i < count; ++i)
            other[bucket[pairs[i] >> shift & 255]++] = pairs[i];
        std::swap(pairs, other);
    }
    return pairs;
}

} // namespace

ScreenPoint projectPoint(const EngineSettings& settings, const Vector3& point)
{
    if ((settings.drawFlags & drawParallel) != 0)
        return {toScreen(point.x, settings.centre.x), toScreen(point.y, settings.centre.y)};
    const float f = settings.focalLength / (point.z > nearClampZ ? point.z : nearClampZ);
    return {toScreen(point.x * f, settings.centre.x), toScreen(point.y * f, settings.centre.y)};
}

void putMesh(Engine& engine, const Model& model, std::uint32_t meshIndex)
{
    const Mesh& mesh = model.meshes[meshIndex];
    if (mesh.vertexCount > vertexCapacity - engine.vertexCount) return;
    transformVertices(engine, model, mesh);

    const EngineSettings& settings = engine.settings;
    const Matrix matrix = engine.stack.current();
    const bool parallel = (settings.drawFlags & drawParallel) != 0;
    const Vertex* vertices = engine.viewVertices.data() + engine.vertexCount;
    const ScreenPoint* screen = engine.screenPoints.data() + engine.vertexCount;
    for (std::uint32_t i = 0; i < mesh.polygonCount; ++i) {
        const Polygon& polygon = model.polygons[mesh.polygonTable + i];
        const PolygonAttribute& attribute = model.attributes[mesh.attributeTable + i];
        if (settings.hidden[mesh.attributeTable + i]) continue;
        const auto& corner = polygon.corner;
        const Vector3 normal = rotateVector(polygon.normal, matrix);
        const Vector3 sort =
            sortPoint(attribute.sort, {&vertices[corner[0]], &vertices[corner[1]],
                                       &vertices[corner[2]], &vertices[corner[3]]});
        const bool facesAway =
            parallel ? normal.z >= backFaceEpsilon : dotProduct(normal, sort) >= backFaceEpsilon;
        if (facesAway && (attribute.plane & dualPlaneBit) == 0) continue;

        const float depth = sort.z - settings.focalLength;
        if (depth > farLimit) continue;
        if (depth < 0.0f && (attribute.flags & nearClip) == 0) continue;

        const ScreenQuad point{screen[corner[0]], screen[corner[1]], screen[corner[2]],
                               screen[corner[3]]};
        if (isOutside(settings.window, point[0]) && isOutside(settings.window, point[1]) &&
            isOutside(settings.window, point[2]) && isOutside(settings.window, point[3]))
            continue;
        if (engine.entryCount == polygonCapacity) break;

        PolygonEntry& entry = engine.entries[engine.entryCount];
        entry.depth = depth;
        entry.point = point;
        entry.normal = normal;
        constexpr std::uint32_t litGouraud = gouraudShading | useLight;
        if ((attribute.flags & litGouraud) == litGouraud)
            for (std::size_t c = 0; c < 4; ++c)
                entry.vertexNormal[c] =
                    rotateVector(model.vertexNormals[mesh.vertexNormalTable + corner[c]], matrix);
        entry.firstVertex = engine.vertexCount;
        entry.attribute = mesh.attributeTable + i;
        entry.mesh = meshIndex;
        entry.polygon = i;
        ++engine.entryCount;
    }
    engine.vertexCount += mesh.vertexCount;
    engine.polygonCount += mesh.polygonCount;
}

void walkHierarchy(Engine& engine, const Model& model, std::uint32_t first)
{
    const auto put = [&](std::uint32_t mesh) { putMesh(engine, model, mesh); };
    visitMeshes(engine.stack, model, first, put);
}

void sortPolygons(Engine& engine)
{
    const std::uint32_t count = engine.entryCount;
    std::uint64_t* pairs = engine.sortScratch.data();
    for (std::uint32_t i = 0; i < count; ++i)
        pairs[i] = std::uint64_t{sortKey(engine.entries[i].depth)} << 32 | i;
    const std::uint64_t* sorted = pairs;
    if (count >= radixSortFrom)
        sorted = radixSort(pairs, pairs + polygonCapacity, count);
    else
        std::sort(pairs, pairs + count);
    for (std::uint32_t i = 0; i < count; ++i)
        engine.sortList[i] = static_cast<std::uint32_t>(sorted[i]);
}

} // namespace facetor
