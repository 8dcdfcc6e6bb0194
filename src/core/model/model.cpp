#include "model/model.h"

#include <algorithm>

namespace facetor {

namespace {

constexpr std::array<Vertex, 8> cubeVertices{{{-50, -50, -50},
                                              {50, -50, -50},
                                              {50, 50, -50},
                                              {-50, 50, -50},
                                              {-50, -50, 50},
                                              {50, -50, 50},
                                              {50, 50, 50},
                                              {-50, 50, 50}}};

constexpr std::array<Polygon, 6> cubePolygons{{{{0, 0, -1}, {0, 1, 2, 3}},
                                               {{1, 0, 0}, {1, 5, 6, 2}},
                                               {{0, 0, 1}, {5, 4, 7, 6}},
                                               {{-1, 0, 0}, {4, 0, 3, 7}},
                                               {{0, -1, 0}, {0, 4, 5, 1}},
                                               {{0, 1, 0}, {2, 6, 7, 3}}}};

/// White, red, green, blue, yellow, cyan.
constexpr std::array<Rgb555, 6> cubeColours{0xFFFF, 0xFC00, 0x83E0, 0x801F, 0xFFE0, 0x83FF};

void fillWithCube(Model& model)
{
    std::copy(cubeVertices.begin(), cubeVertices.end(), model.vertices.begin());
    std::transform(cubeVertices.begin(), cubeVertices.end(), model.vertexNormals.begin(),
                   normalised);
    std::copy(cubePolygons.begin(), cubePolygons.end(), model.polygons.begin());
    for (std::size_t i = 0; i < cubeColours.size(); ++i) {
        model.attributes[i] = {0, sortCentre, 0, cubeColours[i], polygonFace | useLight, 0};
        model.gouraud[i].color.fill(neutralGouraud);
    }
    for (std::uint32_t i = 0; i < polygonCapacity; ++i) model.attributes[i].gouraud = i;
    model.meshes[0] = {0, cubeVertices.size(), 0, cubePolygons.size(), 0, 0};
    model.objects[0] = {0,         noObject,       noObject,    {0, 0, 0}, {0, 0, 0},
                        {1, 1, 1}, identityMatrix, objectShown, 0};
    model.objectCount = 1;
    model.totalVertexCount = cubeVertices.size();
    model.totalPolygonCount = cubePolygons.size();
    for (std::string& name : model.names) name.clear();
    model.names[0] = defaultObjectName(0);
}

bool isUsableSlice(std::uint32_t first, std::uint32_t count, std::uint32_t capacity)
{
    return first <= capacity && count <= capacity - first;
}

} // namespace

Message createModelStore(Model& model)
{
    if (!model.vertices.allocate(vertexCapacity) || !model.vertexNormals.allocate(vertexCapacity) ||
        !model.polygons.allocate(polygonCapacity) || !model.attributes.allocate(polygonCapacity) ||
        !model.gouraud.allocate(polygonCapacity) || !model.meshes.allocate(objectCapacity) ||
        !model.objects.allocate(objectCapacity)) {
        releaseModelStore(model);
        return Message::outOfMemory;
    }
    fillWithCube(model);
    return Message::none;
}

void copyModel(Model& to, const Model& from)
{
    const auto copy = [](auto& pool, const auto& source) {
        std::copy_n(source.data(), source.size(), pool.data());
    };
    copy(to.vertices, from.vertices);
    copy(to.vertexNormals, from.vertexNormals);
    copy(to.polygons, from.polygons);
    copy(to.attributes, from.attributes);
    copy(to.gouraud, from.gouraud);
    copy(to.meshes, from.meshes);
    copy(to.objects, from.objects);
    to.names = from.names;
    to.objectCount = from.objectCount;
    to.totalVertexCount = from.totalVertexCount;
    to.totalPolygonCount = from.totalPolygonCount;
}

void releaseModelStore(Model& model)
{
    model = Model{};
}

std::string defaultObjectName(std::uint32_t index)
{
    std::string digits = std::to_string(index);
    if (digits.size() < 2) digits.insert(0, 1, '0');
    return "Model" + digits;
}

void assignDepths(Model& model, std::uint32_t first, std::uint32_t depth)
{
    for (std::uint32_t i = first; i != noObject; i = model.objects[i].next) {
        model.objects[i].depth = depth;
        if (model.objects[i].child != noObject)
            assignDepths(model, model.objects[i].child, depth + 1);
    }
}

Vector3 computeFaceNormal(const Polygon& polygon, const Vertex* vertices)
{
    const Vertex& origin = vertices[polygon.corner[0]];
    const auto edgeTo = [&](int corner) {
        const Vertex& end = vertices[polygon.corner[static_cast<std::size_t>(corner)]];
        return Vector3{end.x - origin.x, end.y - origin.y, end.z - origin.z};
    };
    Vector3 a = edgeTo(1);
    if (isZero(a)) a = edgeTo(2);
    Vector3 b = edgeTo(3);
    if (isZero(b)) b = edgeTo(2);
    return normalised(crossProduct(normalised(b), normalised(a)));
}

void computeVertexNormals(Model& model, const Mesh& mesh)
{
    VertexNormal* normals = model.vertexNormals.data() + mesh.vertexNormalTable;
    std::fill_n(normals, mesh.vertexCount, VertexNormal{0, 0, 0});
    for (std::uint32_t p = 0; p < mesh.polygonCount; ++p) {
        const Polygon& polygon = model.polygons[mesh.polygonTable + p];
        for (auto corner = polygon.corner.begin(); corner != polygon.corner.end(); ++corner) {
            if (std::find(polygon.corner.begin(), corner, *corner) != corner) continue;
            VertexNormal& sum = normals[*corner];
            sum = {sum.x + polygon.normal.x, sum.y + polygon.normal.y, sum.z + polygon.normal.z};
        }
    }
    std::transform(normals, normals + mesh.vertexCount, normals, normalised);
}

bool linksFormForest(const Model& model, std::uint32_t& culprit)
{
    std::array<bool, objectCapacity> linked{};
    for (std::uint32_t i = 0; i < model.objectCount; ++i)
        for (const std::uint32_t target : {model.objects[i].child, model.objects[i].next}) {
            if (target == noObject) continue;
            culprit = target;
            if (linked[target]) return false;
            linked[target] = true;
        }
    // Nothing is reached twice now. What no walk from an unlinked object reaches lies on a circle.
    std::array<bool, objectCapacity> reached{};
    std::array<std::uint32_t, objectCapacity> pending;
    std::size_t pendingCount = 0;
    for (std::uint32_t i = 0; i < model.objectCount; ++i)
        if (!linked[i]) pending[pendingCount++] = i;
    while (pendingCount > 0) {
        const std::uint32_t i = pending[--pendingCount];
        reached[i] = true;
        for (const std::uint32_t target : {model.objects[i].child, model.objects[i].next})
            if (target != noObject) pending[pendingCount++] = target;
    }
    for (std::uint32_t i = 0; i < model.objectCount; ++i)
        if (!reached[i]) {
            culprit = i;
            return false;
        }
    return true;
}

bool isSafeToDraw(const Model& model)
{
    if (model.objectCount > objectCapacity || model.totalVertexCount > vertexCapacity ||
        model.totalPolygonCount > polygonCapacity)
        return false;
    std::uint32_t vertexSum = 0, polygonSum = 0;
    for (std::uint32_t i = 0; i < model.objectCount; ++i) {
        const Object& object = model.objects[i];
        for (const std::uint32_t target : {object.child, object.next})
            if (target != noObject && target >= model.objectCount) return false;
        if (object.mesh >= model.objectCount) return false;
        const Mesh& mesh = model.meshes[i];
        if (!isUsableSlice(mesh.vertexTable, mesh.vertexCount, vertexCapacity) ||
            !isUsableSlice(mesh.vertexNormalTable, mesh.vertexCount, vertexCapacity) ||
            !isUsableSlice(mesh.polygonTable, mesh.polygonCount, polygonCapacity) ||
            !isUsableSlice(mesh.attributeTable, mesh.polygonCount, polygonCapacity))
            return false;
        vertexSum += mesh.vertexCount;
        polygonSum += mesh.polygonCount;
        for (std::uint32_t p = 0; p < mesh.polygonCount; ++p) {
            for (const std::uint16_t corner : model.polygons[mesh.polygonTable + p].corner)
                if (corner >= mesh.vertexCount) return false;
            if (model.attributes[mesh.attributeTable + p].gouraud >= polygonCapacity) return false;
        }
    }
    std::uint32_t culprit = 0;
    return vertexSum == model.totalVertexCount && polygonSum == model.totalPolygonCount &&
           linksFormForest(model, culprit);
}

} // namespace facetor
