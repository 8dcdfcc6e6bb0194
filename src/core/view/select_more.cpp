#include "view/select_more.h"

#include <algorithm>
#include <array>
#include <bit>
#include <bitset>
#include <compare>
#include <numeric>
#include <optional>

namespace facetor {

namespace {

/// The corners of polygons, those in one place of an object taken as one: a pool index of a vertex
/// that stands for all of them.
struct Joints {
    std::array<std::uint16_t, vertexCapacity> joint;

    /// The one that stands for a vertex after joints were joined.
    std::uint16_t root(std::uint32_t vertex)
    {
        while (joint[vertex] != vertex) {
            joint[vertex] = joint[joint[vertex]]; // halves the way for the next time
            vertex = joint[vertex];
        }
        return static_cast<std::uint16_t>(vertex);
    }

    void join(std::uint32_t a, std::uint32_t b) { joint[root(a)] = root(b); }
};

/// Calls `visit(polygon, vertices)` for every polygon: its pool index, and those of its corners.
template <typename Visit> void visitCorners(const Model& model, Visit visit)
{
    for (std::uint32_t k = 0; k < model.objectCount; ++k) {
        const Mesh& mesh = model.meshes[k];
        for (std::uint32_t i = 0; i < mesh.polygonCount; ++i) {
            std::array<std::uint32_t, 4> vertices{};
            const Polygon& polygon = model.polygons[mesh.polygonTable + i];
            for (std::size_t c = 0; c < 4; ++c) vertices[c] = mesh.vertexTable + polygon.corner[c];
            visit(mesh.attributeTable + i, vertices);
        }
    }
}

/// A place as bits, which have an order also where a coordinate is no number; -0 is 0.
std::array<std::uint32_t, 3> bitsOf(const Vertex& v)
{
    return {std::bit_cast<std::uint32_t>(v.x + 0.0f), std::bit_cast<std::uint32_t>(v.y + 0.0f),
            std::bit_cast<std::uint32_t>(v.z + 0.0f)};
}

Joints jointsOf(const Model& model)
{
    Joints joints;
    std::iota(joints.joint.begin(), joints.joint.end(), std::uint16_t{0});
    std::array<std::uint16_t, vertexCapacity> order;
    for (std::uint32_t k = 0; k < model.objectCount; ++k) {
        const Mesh& mesh = model.meshes[k];
        const auto end = order.begin() + mesh.vertexCount;
        std::iota(order.begin(), end, static_cast<std::uint16_t>(mesh.vertexTable));
        std::sort(order.begin(), end, [&](std::uint16_t a, std::uint16_t b) {
            return bitsOf(model.vertices[a]) < bitsOf(model.vertices[b]);
        });
        for (auto i = order.begin(); i != end; ++i)
            if (i != order.begin() && bitsOf(model.vertices[i[-1]]) == bitsOf(model.vertices[*i]))
                joints.join(*i, i[-1]);
    }
    return joints;
}

void set(PolygonAttribute& attribute, Mark mark)
{
    attribute.flags =
        mark == Mark::set ? attribute.flags | picked : attribute.flags & ~std::uint32_t{picked};
}

/// Marks or unmarks every polygon that is in sight and touches one of which `isStart` holds.
template <typename IsStart>
void markTouching(Model& model, const HiddenPolygons& hidden, Joints& joints, Mark mark,
                  IsStart isStart)
{
    std::bitset<vertexCapacity> touched;
    visitCorners(model, [&](std::uint32_t polygon, const auto& vertices) {
        if (hidden[polygon] || !isStart(polygon)) return;
        for (const std::uint32_t vertex : vertices) touched.set(joints.root(vertex));
    });
    visitCorners(model, [&](std::uint32_t polygon, const auto& vertices) {
        if (!hidden[polygon] && std::ranges::any_of(vertices, [&](std::uint32_t vertex) {
                return touched[joints.root(vertex)];
            }))
            set(model.attributes[polygon], mark);
    });
}

/// The same of every polygon that is joined to such a one.
template <typename IsStart>
void markConnected(Model& model, const HiddenPolygons& hidden, Mark mark, IsStart isStart)
{
    Joints joints = jointsOf(model);
    visitCorners(model, [&](std::uint32_t polygon, const auto& vertices) {
        if (hidden[polygon]) return;
        for (const std::uint32_t vertex : vertices) joints.join(vertex, vertices[0]);
    });
    markTouching(model, hidden, joints, mark, isStart);
}

/// What polygons are compared by.
struct Look {
    std::array<std::uint16_t, 10> values{};

    auto operator<=>(const Look&) const = default;
};

std::optional<Look> lookOf(const Model& model, std::uint32_t polygon, Likeness likeness)
{
    constexpr std::uint16_t colourBits = 0x7FFF;
    const PolygonAttribute& attribute = model.attributes[polygon];
    const bool textured = (attribute.flags & textureMap) != 0;
    const auto colour = static_cast<std::uint16_t>(attribute.color & colourBits);
    if (likeness == Likeness::colour) return Look{{colour}};
    if (likeness == Likeness::texture)
        return textured ? std::optional(Look{{attribute.texture}}) : std::nullopt;
    const std::uint32_t flags = attribute.flags & ~std::uint32_t{picked};
    Look look{{colour, attribute.plane, attribute.sort, static_cast<std::uint16_t>(flags),
               static_cast<std::uint16_t>(flags >> 16),
               textured ? attribute.texture : std::uint16_t{0}}};
    if (isTableGouraud(attribute))
        std::ranges::transform(model.gouraud[polygon].color, look.values.begin() + 6,
                               [](Rgb555 c) { return static_cast<std::uint16_t>(c & colourBits); });
    return look;
}

} // namespace

void invertSelection(Model& model, const HiddenPolygons& hidden)
{
    for (std::uint32_t i = 0; i < model.totalPolygonCount; ++i)
        if (!hidden[i]) model.attributes[i].flags ^= picked;
}

void growSelection(Model& model, const HiddenPolygons& hidden)
{
    Joints joints = jointsOf(model);
    markTouching(model, hidden, joints, Mark::set,
                 [&](std::uint32_t polygon) { return isPicked(model.attributes[polygon]); });
}

void shrinkSelection(Model& model, const HiddenPolygons& hidden)
{
    Joints joints = jointsOf(model);
    markTouching(model, hidden, joints, Mark::clear,
                 [&](std::uint32_t polygon) { return !isPicked(model.attributes[polygon]); });
}

void selectConnected(Model& model, const HiddenPolygons& hidden, Mark mark)
{
    markConnected(model, hidden, mark,
                  [&](std::uint32_t polygon) { return isPicked(model.attributes[polygon]); });
}

void selectConnectedTo(Model& model, const HiddenPolygons& hidden, std::uint32_t polygon, Mark mark)
{
    markConnected(model, hidden, mark, [&](std::uint32_t other) { return other == polygon; });
}

void selectLike(Model& model, const HiddenPolygons& hidden, Likeness likeness, Mark mark)
{
    std::array<Look, polygonCapacity> samples;
    auto end = samples.begin();
    for (std::uint32_t i = 0; i < model.totalPolygonCount; ++i)
        if (!hidden[i] && isPicked(model.attributes[i]))
            if (const auto look = lookOf(model, i, likeness)) *end++ = *look;
    std::sort(samples.begin(), end);
    for (std::uint32_t i = 0; i < model.totalPolygonCount; ++i) {
        const std::optional<Look> look = hidden[i] ? std::nullopt : lookOf(model, i, likeness);
        if (look && std::binary_search(samples.begin(), end, *look)) set(model.attributes[i], mark);
    }
}

void selectObjects(Model& model, const HiddenPolygons& hidden, std::uint32_t first,
                   std::uint32_t end, Mark mark)
{
    for (std::uint32_t k = first; k < end; ++k) {
        const Mesh& mesh = model.meshes[model.objects[k].mesh];
        for (std::uint32_t i = mesh.attributeTable; i < mesh.attributeTable + mesh.polygonCount;
             ++i)
            if (!hidden[i]) set(model.attributes[i], mark);
    }
}

std::uint32_t objectOf(const Model& model, std::uint32_t polygon)
{
    for (std::uint32_t k = 0; k < model.objectCount; ++k) {
        const Mesh& mesh = model.meshes[model.objects[k].mesh];
        if (polygon - mesh.attributeTable < mesh.polygonCount) return k; // unsigned: not before it
    }
    return 0;
}

void hidePicked(Model& model, HiddenPolygons& hidden)
{
    for (std::uint32_t i = 0; i < model.totalPolygonCount; ++i)
        if (isPicked(model.attributes[i])) {
            hidden.set(i);
            set(model.attributes[i], Mark::clear);
        }
}

void dropHidden(Model& model, const HiddenPolygons& hidden)
{
    if (hidden.none()) return;
    for (std::uint32_t i = 0; i < model.totalPolygonCount; ++i)
        if (hidden[i]) set(model.attributes[i], Mark::clear);
}

void showHidden(Model& model, HiddenPolygons& hidden)
{
    for (std::uint32_t i = 0; i < model.totalPolygonCount; ++i)
        if (hidden[i]) set(model.attributes[i], Mark::set);
    hidden.reset();
}

} // namespace facetor
