#include "shapes.h"

#include "numbers.h"

#include <utility>

namespace facetor::samples {

namespace {

using Row = std::vector<std::uint16_t>;

Row addVertices(Part& part, const Ring& ring)
{
    Row row;
    for (const Point& point : ring) row.push_back(part.add(point));
    return row;
}

Point centreOf(const Ring& ring)
{
    Point sum{0, 0, 0};
    for (const Point& point : ring) sum = sum + point;
    return sum * (1.0 / static_cast<double>(ring.size()));
}

void joinLoft(Part& part, const std::vector<Ring>& rings, const std::vector<Row>& index,
              const MaterialAt& material)
{
    for (std::size_t r = 0; r + 1 < rings.size(); ++r) {
        const Point axis = (centreOf(rings[r]) + centreOf(rings[r + 1])) * 0.5;
        const std::size_t count = rings[r].size();
        for (std::size_t c = 0; c < count; ++c) {
            const std::size_t next = (c + 1) % count;
            const Point middle =
                (rings[r][c] + rings[r][next] + rings[r + 1][c] + rings[r + 1][next]) * 0.25;
            part.joinTowards({index[r][c], index[r][next], index[r + 1][next], index[r + 1][c]},
                             middle - axis, material(static_cast<int>(r), static_cast<int>(c)));
        }
    }
}

} // namespace

MaterialAt everywhere(const Material& material)
{
    return [material](int, int) { return material; };
}

void addPatch(Part& part, const std::vector<Ring>& rows, Point outward, const MaterialAt& material)
{
    std::vector<Row> index;
    for (const Ring& row : rows) index.push_back(addVertices(part, row));
    for (std::size_t r = 0; r + 1 < index.size(); ++r)
        for (std::size_t c = 0; c + 1 < index[r].size(); ++c)
            part.joinTowards({index[r][c], index[r][c + 1], index[r + 1][c + 1], index[r + 1][c]},
                             outward, material(static_cast<int>(r), static_cast<int>(c)));
}

void addLoft(Part& part, const std::vector<Ring>& rings, const MaterialAt& material)
{
    std::vector<Row> index;
    for (const Ring& ring : rings) index.push_back(addVertices(part, ring));
    joinLoft(part, rings, index, material);
}

void addGlobe(Part& part, Point first, const std::vector<Ring>& rings, Point last,
              const MaterialAt& material)
{
    std::vector<Row> index;
    for (const Ring& ring : rings) index.push_back(addVertices(part, ring));
    joinLoft(part, rings, index, material);
    const auto close = [&](std::size_t end, Point apex, int row) {
        const std::uint16_t top = part.add(apex);
        const Point middle = centreOf(rings[end]);
        const std::size_t count = rings[end].size();
        for (std::size_t c = 0; c < count; ++c) {
            std::size_t next = (c + 1) % count;
            std::size_t here = c;
            const Point outward = (rings[end][c] + rings[end][next]) * 0.5 - middle + apex - middle;
            const Point normal = cross(rings[end][next] - rings[end][c], apex - rings[end][c]) * -1;
            if (dot(normal, outward) < 0) std::swap(here, next);
            part.joinTriangle({index[end][here], index[end][next], top},
                              material(row, static_cast<int>(c)));
        }
    };
    close(0, first, -1);
    close(rings.size() - 1, last, static_cast<int>(rings.size()) - 1);
}

void addCap(Part& part, const Ring& ring, Point outward, const MaterialAt& material)
{
    const Row index = addVertices(part, ring);
    const std::size_t last = ring.size() - 1;
    for (std::size_t i = 0; i + 1 < ring.size() / 2; ++i)
        part.joinTowards({index[last - i], index[i], index[i + 1], index[last - i - 1]}, outward,
                         material(static_cast<int>(i), 0));
}

void addFan(Part& part, const Ring& ring, Point apex, Point outward, const Material& material)
{
    const Row index = addVertices(part, ring);
    const std::uint16_t top = part.add(apex);
    for (std::size_t c = 0; c < ring.size(); ++c) {
        const std::size_t next = (c + 1) % ring.size();
        const Point normal = cross(ring[next] - ring[c], apex - ring[c]) * -1;
        // A cone's sides look outward from its axis too, not only along it.
        const Point aside = (ring[c] + ring[next]) * 0.5 - centreOf(ring);
        if (dot(normal, outward) + dot(normal, aside) < 0)
            part.joinTriangle({index[next], index[c], top}, material);
        else
            part.joinTriangle({index[c], index[next], top}, material);
    }
}

Ring uprightRing(Point centre, double radiusX, double radiusY, int count)
{
    Ring ring;
    for (int i = 0; i < count; ++i) {
        const double turns = (i + 0.5) / count;
        ring.push_back(centre +
                       Point{radiusX * sineOfTurns(turns), -radiusY * cosineOfTurns(turns), 0});
    }
    return ring;
}

Ring levelRing(Point centre, double radiusX, double radiusZ, int count)
{
    Ring ring;
    for (int i = 0; i < count; ++i) {
        const double turns = (i + 0.5) / count;
        ring.push_back(centre +
                       Point{radiusX * sineOfTurns(turns), 0, -radiusZ * cosineOfTurns(turns)});
    }
    return ring;
}

void addHexahedron(Part& part, const std::array<Point, 8>& corners,
                   const std::array<Material, 6>& materials, unsigned faces)
{
    // The right face's first corner is its near one, as seen on the screen; so a picture on any of
    // the four sides stands upright.
    constexpr std::array<std::array<std::size_t, 4>, 6> faceCorners{
        {{0, 1, 2, 3}, {1, 5, 6, 2}, {5, 4, 7, 6}, {4, 0, 3, 7}, {4, 5, 1, 0}, {3, 2, 6, 7}}};
    std::array<std::uint16_t, 8> index;
    for (std::size_t i = 0; i < 8; ++i) index[i] = part.add(corners[i]);
    for (std::size_t f = 0; f < 6; ++f) {
        if (!(faces >> f & 1)) continue;
        const auto& c = faceCorners[f];
        part.join({index[c[0]], index[c[1]], index[c[2]], index[c[3]]}, materials[f]);
    }
}

void addBox(Part& part, Point least, Point most, const std::array<Material, 6>& materials,
            unsigned faces)
{
    addHexahedron(part,
                  {{{least.x, least.y, least.z},
                    {most.x, least.y, least.z},
                    {most.x, most.y, least.z},
                    {least.x, most.y, least.z},
                    {least.x, least.y, most.z},
                    {most.x, least.y, most.z},
                    {most.x, most.y, most.z},
                    {least.x, most.y, most.z}}},
                  materials, faces);
}

void addBox(Part& part, Point least, Point most, const Material& material, unsigned faces)
{
    addBox(part, least, most,
           std::array<Material, 6>{material, material, material, material, material, material},
           faces);
}

void addCrystal(Part& part, Point middle, double radius, double above, double below,
                const Material& material)
{
    const Row ring = addVertices(part, levelRing(middle, radius, radius, 4));
    const std::uint16_t top = part.add(middle - Point{0, above, 0});
    const std::uint16_t bottom = part.add(middle + Point{0, below, 0});
    for (std::size_t c = 0; c < 4; ++c) {
        const std::size_t next = (c + 1) % 4;
        part.joinTriangle({ring[c], top, ring[next]}, material);
        part.joinTriangle({ring[next], bottom, ring[c]}, material);
    }
}

} // namespace facetor::samples
