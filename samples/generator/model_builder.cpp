#include "model_builder.h"

#include "numbers.h"

#include <utility>

namespace facetor::samples {

namespace {

Vector3 toVector(Point point)
{
    return {static_cast<float>(toSixteenth(point.x)), static_cast<float>(toSixteenth(point.y)),
            static_cast<float>(toSixteenth(point.z))};
}

/// The face normal's direction, of any length.
Point facing(const std::array<Point, 4>& corner)
{
    return cross(corner[2] - corner[0], corner[3] - corner[1]) * -1;
}

/// The corners of the mirrored face, or of one that looks the other way.
template <typename T> std::array<T, 4> turned(const std::array<T, 4>& corner)
{
    return {corner[1], corner[0], corner[3], corner[2]};
}

Part mirrored(const Part& part)
{
    Part other = part;
    constexpr std::string_view right = "Right";
    if (other.name.ends_with(right))
        other.name.replace(other.name.size() - right.size(), right.size(), "Left");
    other.position.x = -part.position.x;
    other.rotation[1] = -part.rotation[1];
    other.rotation[2] = -part.rotation[2];
    for (Point& vertex : other.vertices) vertex.x = -vertex.x;
    for (Face& face : other.faces) {
        face.corner = turned(face.corner);
        face.material.gouraud = turned(face.material.gouraud);
    }
    return other;
}

} // namespace

Material Material::with(std::uint32_t moreFlags) const
{
    Material other = *this;
    other.flags |= moreFlags;
    return other;
}

Material Material::dualSided() const
{
    Material other = *this;
    other.plane = dualPlaneBit;
    return other;
}

Material Material::sorted(std::uint16_t by) const
{
    Material other = *this;
    other.sort = by;
    return other;
}

Material Material::shaded(const std::array<Rgb555, 4>& corners) const
{
    Material other = with(gouraudShading);
    other.flags &= ~std::uint32_t{useLight};
    other.gouraud = corners;
    return other;
}

Material plain(Rgb555 colour)
{
    Material material;
    material.color = colour | opaqueBit;
    return material;
}

Material lit(Rgb555 colour)
{
    return plain(colour).with(useLight);
}

Material smooth(Rgb555 colour)
{
    return plain(colour).with(useLight | gouraudShading);
}

Material textured(std::uint16_t slot, Rgb555 colour)
{
    Material material = plain(colour);
    material.flags = textureMap;
    material.texture = slot;
    return material;
}

Material smoothTextured(std::uint16_t slot, Rgb555 colour)
{
    return textured(slot, colour).with(useLight | gouraudShading);
}

std::uint16_t Part::add(Point vertex)
{
    vertices.push_back(vertex);
    return static_cast<std::uint16_t>(vertices.size() - 1);
}

void Part::join(const std::array<std::uint16_t, 4>& corners, const Material& material)
{
    faces.push_back({corners, material});
}

void Part::joinTriangle(const std::array<std::uint16_t, 3>& corners, const Material& material)
{
    faces.push_back({{corners[0], corners[1], corners[2], corners[2]}, material});
}

void Part::quad(const std::array<Point, 4>& corners, const Material& material)
{
    std::array<std::uint16_t, 4> index;
    for (std::size_t i = 0; i < 4; ++i) index[i] = add(corners[i]);
    join(index, material);
}

void Part::triangle(const std::array<Point, 3>& corners, const Material& material)
{
    std::array<std::uint16_t, 3> index;
    for (std::size_t i = 0; i < 3; ++i) index[i] = add(corners[i]);
    joinTriangle(index, material);
}

void Part::quadTowards(std::array<Point, 4> corners, Point outward, const Material& material)
{
    if (dot(facing(corners), outward) < 0) corners = turned(corners);
    quad(corners, material);
}

void Part::joinTowards(std::array<std::uint16_t, 4> corners, Point outward,
                       const Material& material)
{
    const std::array<Point, 4> points{vertices[corners[0]], vertices[corners[1]],
                                      vertices[corners[2]], vertices[corners[3]]};
    join(dot(facing(points), outward) < 0 ? turned(corners) : corners, material);
}

Part& ModelBuilder::add(std::string name, std::uint32_t parent, Point position)
{
    Part& part = parts_.emplace_back();
    part.name = std::move(name);
    part.parent = parent;
    part.position = position;
    return part;
}

void ModelBuilder::mirror(std::uint32_t index)
{
    const std::uint32_t end = objectCount();
    const std::uint32_t shift = end - index;
    for (std::uint32_t i = index; i < end; ++i) {
        Part other = mirrored(parts_[i]);
        if (i != index) other.parent += shift;
        parts_.push_back(std::move(other));
    }
}

std::uint32_t ModelBuilder::vertexCount() const
{
    std::size_t count = 0;
    for (const Part& part : parts_) count += part.vertices.size();
    return static_cast<std::uint32_t>(count);
}

std::uint32_t ModelBuilder::polygonCount() const
{
    std::size_t count = 0;
    for (const Part& part : parts_) count += part.faces.size();
    return static_cast<std::uint32_t>(count);
}

Message ModelBuilder::build(Model& model) const
{
    if (objectCount() > objectCapacity || vertexCount() > vertexCapacity ||
        polygonCount() > polygonCapacity)
        return Message::outOf;
    model.objectCount = objectCount();
    model.totalVertexCount = 0;
    model.totalPolygonCount = 0;
    for (std::uint32_t k = 0; k < model.objectCount; ++k) {
        const Part& part = parts_[k];
        model.names[k] = part.name;
        model.objects[k] = {k,
                            noObject,
                            noObject,
                            toVector(part.position),
                            part.rotation,
                            {1, 1, 1},
                            identityMatrix,
                            objectShown,
                            0};
        Mesh& mesh = model.meshes[k];
        mesh = {model.totalVertexCount,  static_cast<std::uint32_t>(part.vertices.size()),
                model.totalPolygonCount, static_cast<std::uint32_t>(part.faces.size()),
                model.totalPolygonCount, model.totalVertexCount};
        Vertex* const vertices = model.vertices.data() + mesh.vertexTable;
        for (std::uint32_t i = 0; i < mesh.vertexCount; ++i)
            vertices[i] = toVector(part.vertices[i]);
        for (std::uint32_t i = 0; i < mesh.polygonCount; ++i) {
            const Face& face = part.faces[i];
            const std::uint32_t p = mesh.polygonTable + i;
            model.polygons[p].corner = face.corner;
            model.polygons[p].normal = computeFaceNormal(model.polygons[p], vertices);
            const Material& material = face.material;
            model.attributes[p] = {material.plane, material.sort,  material.texture,
                                   material.color, material.flags, p};
            model.gouraud[p].color = material.gouraud;
        }
        computeVertexNormals(model, mesh);
        model.totalVertexCount += mesh.vertexCount;
        model.totalPolygonCount += mesh.polygonCount;
    }

    // Each part becomes the last child of its parent, or the last part of the top level.
    std::vector<std::uint32_t> lastChild(model.objectCount, noObject);
    std::uint32_t lastTop = 0;
    for (std::uint32_t k = 1; k < model.objectCount; ++k) {
        const std::uint32_t parent = parts_[k].parent;
        std::uint32_t& before = parent == noObject ? lastTop : lastChild[parent];
        (before == noObject ? model.objects[parent].child : model.objects[before].next) = k;
        before = k;
    }
    assignDepths(model, 0, 0);
    return Message::none;
}

} // namespace facetor::samples
