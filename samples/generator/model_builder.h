#pragma once

#include "base/colour.h"
#include "base/message.h"
#include "model/model.h"

#include <array>
#include <cstdint>
#include <deque>
#include <string>
#include <vector>

namespace facetor::samples {

/// A position in model space: x to the right, y down, z away from the viewer.
struct Point {
    double x, y, z;
};

constexpr Point operator+(Point a, Point b)
{
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}

constexpr Point operator-(Point a, Point b)
{
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}

constexpr Point operator*(Point a, double factor)
{
    return {a.x * factor, a.y * factor, a.z * factor};
}

constexpr double dot(Point a, Point b)
{
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

constexpr Point cross(Point a, Point b)
{
    return {a.y * b.z - b.y * a.z, a.z * b.x - b.z * a.x, a.x * b.y - b.x * a.y};
}

/// How a polygon is drawn. Made from one of the functions below, varied by the members.
struct Material {
    std::uint32_t flags = polygonFace;
    Rgb555 color = 0;
    std::uint16_t texture = 0;
    std::uint16_t plane = 0;
    std::uint16_t sort = sortCentre;
    std::array<Rgb555, 4> gouraud{neutralGouraud, neutralGouraud, neutralGouraud, neutralGouraud};

    Material with(std::uint32_t moreFlags) const;
    Material dualSided() const;
    Material sorted(std::uint16_t by) const;
    /// Table Gouraud: the four corners' own colours, 16 being neutral.
    Material shaded(const std::array<Rgb555, 4>& corners) const;
};

/// One colour, as it is.
Material plain(Rgb555 colour);
/// One colour, lit by the face normal.
Material lit(Rgb555 colour);
/// One colour, lit by the vertex normals.
Material smooth(Rgb555 colour);
/// Texels as they are. `colour` is what flat and wireframe drawing show.
Material textured(std::uint16_t slot, Rgb555 colour);
/// Texels lit by the vertex normals.
Material smoothTextured(std::uint16_t slot, Rgb555 colour);

struct Face {
    std::array<std::uint16_t, 4> corner;
    Material material;
};

/// An object with its mesh. Corners appear clockwise from outside; a texture's first texel lies at
/// the first corner, its first row runs to the second.
struct Part {
    std::string name;
    std::uint32_t parent = noObject;
    Point position{0, 0, 0};
    std::array<Angle, 3> rotation{};
    std::vector<Point> vertices;
    std::vector<Face> faces;

    std::uint16_t add(Point vertex);
    /// A face over vertices that were added before.
    void join(const std::array<std::uint16_t, 4>& corners, const Material& material);
    void joinTriangle(const std::array<std::uint16_t, 3>& corners, const Material& material);
    /// With vertices of its own.
    void quad(const std::array<Point, 4>& corners, const Material& material);
    void triangle(const std::array<Point, 3>& corners, const Material& material);
    /// The same, turned so that the face looks towards `outward`; a turned one is mirrored along
    /// its rows.
    void quadTowards(std::array<Point, 4> corners, Point outward, const Material& material);
    void joinTowards(std::array<std::uint16_t, 4> corners, Point outward, const Material& material);
};

/// Collects parts and turns them into a model.
class ModelBuilder {
public:
    /// The reference stays valid. A parent has to be added before its children.
    Part& add(std::string name, std::uint32_t parent = noObject, Point position = {0, 0, 0});
    /// The index of the part added last.
    std::uint32_t last() const { return static_cast<std::uint32_t>(parts_.size()) - 1; }
    Part& part(std::uint32_t index) { return parts_[index]; }

    /// Adds the mirror image of part `index` and all below it, left for right. Names that end in
    /// "Right" end in "Left" then. Needs parts that were added next to each other.
    void mirror(std::uint32_t index);

    std::uint32_t objectCount() const { return static_cast<std::uint32_t>(parts_.size()); }
    std::uint32_t vertexCount() const;
    std::uint32_t polygonCount() const;

    /// Puts everything into a model, normals computed. outOf when a pool is too small for it.
    Message build(Model& model) const;

private:
    std::deque<Part> parts_;
};

} // namespace facetor::samples
