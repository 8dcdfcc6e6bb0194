#include "exchange/face_split.h"

#include "exchange/matching.h"

#include <algorithm>
#include <cmath>

namespace facetor {

namespace {

constexpr double straight = 1e-4; ///< sine of an angle that is no corner any more

/// Twice the area of a triangle, positive when it runs counter-clockwise.
double area(const Real2& a, const Real2& b, const Real2& c)
{
    return (b[0] - a[0]) * (c[1] - a[1]) - (b[1] - a[1]) * (c[0] - a[0]);
}

/// Whether a part of the segment p q lies inside the counter-clockwise triangle, not on its edges.
bool passesThrough(const Real2& p, const Real2& q, const std::array<Real2, 3>& triangle,
                   double tolerance)
{
    double from = 0, to = 1;
    for (std::size_t i = 0; i < 3; ++i) {
        const Real2 &a = triangle[i], &b = triangle[(i + 1) % 3];
        const double atP = area(a, b, p) - tolerance, atQ = area(a, b, q) - tolerance;
        if (atP <= 0 && atQ <= 0) return false;
        if (atP <= 0) from = std::max(from, atP / (atP - atQ));
        if (atQ <= 0) to = std::min(to, atP / (atP - atQ));
    }
    return from < to;
}

/// The face's corners in the plane that it mostly lies in, counter-clockwise.
std::vector<Real2> flattened(std::span<const Real3> corners, const Real3& normal)
{
    std::size_t drop = 0; // the axis that the normal follows most
    for (const std::size_t i : {std::size_t{1}, std::size_t{2}})
        if (std::abs(normal[i]) > std::abs(normal[drop])) drop = i;
    const std::size_t u = (drop + 1) % 3, v = (drop + 2) % 3;
    const double side = normal[drop] < 0 ? -1 : 1;
    std::vector<Real2> flat;
    flat.reserve(corners.size());
    for (const Real3& corner : corners) flat.push_back({corner[u], corner[v] * side});
    return flat;
}

/// Cuts triangles off whose third edge lies inside (ears) until three corners are left.
std::vector<std::array<std::uint32_t, 3>> clipEars(std::vector<std::uint32_t> ring,
                                                   const std::vector<Real2>& flat)
{
    double extent = 0;
    for (const std::uint32_t i : ring)
        for (const std::size_t k : {std::size_t{0}, std::size_t{1}})
            extent = std::max(extent, std::abs(flat[i][k] - flat[ring[0]][k]));
    const double tolerance = extent * extent * 1e-12;
    std::vector<std::array<std::uint32_t, 3>> triangles;
    const auto isEar = [&](std::size_t at) {
        const std::size_t count = ring.size();
        const std::array<Real2, 3> ear{flat[ring[(at + count - 1) % count]], flat[ring[at]],
                                       flat[ring[(at + 1) % count]]};
        if (area(ear[0], ear[1], ear[2]) <= tolerance) return false;
        for (std::size_t i = (at + 1) % count; i != (at + count - 1) % count; i = (i + 1) % count)
            if (passesThrough(flat[ring[i]], flat[ring[(i + 1) % count]], ear, tolerance))
                return false;
        return true;
    };
    std::size_t at = 1;
    while (ring.size() > 3) {
        const std::size_t count = ring.size();
        std::size_t tried = 0;
        while (tried < count && !isEar(at % count)) {
            ++at;
            ++tried;
        }
        at %= count; // of a face that crosses itself any corner has to do
        triangles.push_back({ring[(at + count - 1) % count], ring[at], ring[(at + 1) % count]});
        ring.erase(ring.begin() + static_cast<std::ptrdiff_t>(at));
        // Going on one corner further makes fans of two, which quads are made of.
    }
    triangles.push_back({ring[0], ring[1], ring[2]});
    std::erase_if(triangles, [&](const std::array<std::uint32_t, 3>& t) {
        return std::abs(area(flat[t[0]], flat[t[1]], flat[t[2]])) <= tolerance;
    });
    return triangles;
}

/// The corners of an outline but for those of detours: to a place and the same way back again.
/// Fewer than three when it has nothing else.
std::vector<std::uint32_t> withoutDetours(std::span<const Real3> corners)
{
    std::vector<std::uint32_t> way;
    const auto isAt = [&](std::size_t a, std::size_t b) { return corners[way[a]] == corners[b]; };
    for (std::uint32_t i = 0; i < corners.size(); ++i) {
        if (!way.empty() && isAt(way.size() - 1, i)) continue;
        if (way.size() > 1 && isAt(way.size() - 2, i))
            way.pop_back();
        else
            way.push_back(i);
    }
    std::size_t begin = 0; // detours may also lie across the ends
    while (way.size() - begin > 1) {
        if (isAt(begin, way.back()) || isAt(begin, way[way.size() - 2]))
            way.pop_back();
        else if (isAt(begin + 1, way.back()))
            ++begin;
        else
            break;
    }
    way.erase(way.begin(), way.begin() + static_cast<std::ptrdiff_t>(begin));
    return way;
}

} // namespace

double lengthOf(const Real3& a)
{
    return std::sqrt(dot(a, a));
}

bool hasNoArea(std::span<const Real3> corners)
{
    if (corners.size() < 3) return true;
    Real3 longest{};
    for (const Real3& corner : corners)
        if (const Real3 way = minus(corner, corners[0]); dot(way, way) > dot(longest, longest))
            longest = way;
    const double length = lengthOf(longest);
    if (withoutDetours(corners).size() < 3) return true;
    return std::all_of(corners.begin(), corners.end(), [&](const Real3& corner) {
        return lengthOf(cross(longest, minus(corner, corners[0]))) <= 1e-6 * length * length;
    });
}

Real3 areaVector(std::span<const Real3> corners)
{
    Real3 sum{};
    for (std::size_t i = 1; i + 1 < corners.size(); ++i) {
        const Real3 part = cross(minus(corners[i], corners[0]), minus(corners[i + 1], corners[0]));
        for (std::size_t k = 0; k < 3; ++k) sum[k] += part[k];
    }
    return sum;
}

bool isConvexQuad(const std::array<Real3, 4>& corners, const Real3& normal)
{
    const double length = lengthOf(normal);
    for (std::size_t i = 0; i < 4; ++i) {
        const Real3 in = minus(corners[(i + 1) % 4], corners[i]);
        const Real3 out = minus(corners[(i + 2) % 4], corners[(i + 1) % 4]);
        if (!(dot(cross(in, out), normal) > straight * lengthOf(in) * lengthOf(out) * length))
            return false;
    }
    return true;
}

std::vector<FacePiece> splitFace(std::span<const Real3> corners)
{
    const std::vector<std::uint32_t> ring = withoutDetours(corners);
    if (ring.size() < 3) return {};
    const Real3 normal = areaVector(corners);
    const auto triangles = clipEars(ring, flattened(corners, normal));

    std::vector<Pair> pairs;
    std::vector<FacePiece> quads;
    // Neighbours in a face share a diagonal, which at most two triangles have.
    struct Diagonal {
        std::uint32_t from, to, triangle;
    };
    std::vector<Diagonal> diagonals;
    for (std::uint32_t t = 0; t < triangles.size(); ++t)
        for (std::size_t i = 0; i < 3; ++i)
            diagonals.push_back({triangles[t][i], triangles[t][(i + 1) % 3], t});
    const auto before = [](const Diagonal& a, const Diagonal& b) {
        return std::pair(a.from, a.to) < std::pair(b.from, b.to);
    };
    std::sort(diagonals.begin(), diagonals.end(), before);
    for (const Diagonal& d : diagonals) {
        const auto other =
            std::lower_bound(diagonals.begin(), diagonals.end(), Diagonal{d.to, d.from, 0}, before);
        if (other == diagonals.end() || other->from != d.to || other->to != d.from ||
            d.triangle >= other->triangle)
            continue;
        const auto apex = [&](const std::array<std::uint32_t, 3>& t) {
            return *std::find_if(t.begin(), t.end(),
                                 [&](std::uint32_t i) { return i != d.from && i != d.to; });
        };
        const FacePiece quad{apex(triangles[d.triangle]), d.from, apex(triangles[other->triangle]),
                             d.to};
        const std::array<Real3, 4> at{corners[quad[0]], corners[quad[1]], corners[quad[2]],
                                      corners[quad[3]]};
        if (!isConvexQuad(at, normal)) continue;
        pairs.push_back(
            {d.triangle, other->triangle, static_cast<float>(lengthOf(areaVector(at)))});
        quads.push_back(quad);
    }
    const std::vector<std::uint32_t> mates =
        matchPairs(static_cast<std::uint32_t>(triangles.size()), pairs);
    std::vector<FacePiece> pieces;
    for (std::size_t i = 0; i < pairs.size(); ++i)
        if (mates[pairs[i].first] == pairs[i].second) pieces.push_back(quads[i]);
    for (std::size_t t = 0; t < triangles.size(); ++t)
        if (mates[t] == noIndex)
            pieces.push_back({triangles[t][0], triangles[t][1], triangles[t][2], triangles[t][2]});
    return pieces;
}

} // namespace facetor
