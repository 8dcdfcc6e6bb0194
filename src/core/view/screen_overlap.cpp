#include "view/screen_overlap.h"

#include <cmath>
#include <optional>
#include <vector>

namespace facetor {

namespace {

struct Point {
    double x, y;
};

using Triangle = std::array<Point, 3>;

/// Twice the area, positive when the corners turn the one way.
double turnOf(const Point& a, const Point& b, const Point& c)
{
    return (b.x - a.x) * (c.y - a.y) - (c.x - a.x) * (b.y - a.y);
}

std::array<Triangle, 2> trianglesOf(const ScreenQuad& quad)
{
    const auto at = [&](std::size_t c) {
        return Point{static_cast<double>(quad[c].x), static_cast<double>(quad[c].y)};
    };
    std::array<Triangle, 2> both{{{at(0), at(1), at(2)}, {at(0), at(2), at(3)}}};
    for (Triangle& t : both)
        if (turnOf(t[0], t[1], t[2]) < 0) std::swap(t[1], t[2]);
    return both;
}

/// The part of an outline on the left of the line from a to b (Sutherland and Hodgman's clipping).
std::vector<Point> clipped(const std::vector<Point>& outline, const Point& a, const Point& b)
{
    std::vector<Point> inside;
    for (std::size_t i = 0; i < outline.size(); ++i) {
        const Point &from = outline[i], &to = outline[(i + 1) % outline.size()];
        const double before = turnOf(a, b, from), behind = turnOf(a, b, to);
        if (before >= 0) inside.push_back(from);
        if ((before < 0) == (behind < 0)) continue;
        const double t = before / (before - behind);
        inside.push_back({from.x + (to.x - from.x) * t, from.y + (to.y - from.y) * t});
    }
    return inside;
}

/// The depth of a polygon's plane behind a point of the screen; none for a plane seen edge-on.
std::optional<double> depthAt(const ViewCorners& corners, std::array<double, 2> at,
                              const Projection& projection)
{
    // The normal by the diagonals, which a triangle with a repeated corner has, too.
    const auto between = [&](std::size_t from, std::size_t to) {
        return std::array<double, 3>{double{corners[to].x} - corners[from].x,
                                     double{corners[to].y} - corners[from].y,
                                     double{corners[to].z} - corners[from].z};
    };
    const auto u = between(0, 2), v = between(1, 3);
    const std::array<double, 3> n{u[1] * v[2] - u[2] * v[1], u[2] * v[0] - u[0] * v[2],
                                  u[0] * v[1] - u[1] * v[0]};
    const double x = at[0] - projection.centre.x, y = at[1] - projection.centre.y;
    double height = 0; // of the plane over the eye, by the middle of the corners
    for (const Vector3& c : corners) height += (n[0] * c.x + n[1] * c.y + n[2] * c.z) / 4;
    const double size = std::sqrt(n[0] * n[0] + n[1] * n[1] + n[2] * n[2]);
    constexpr double edgeOn = 1e-4;
    if (!projection.perspective)
        return std::abs(n[2]) > edgeOn * size ? std::optional((height - n[0] * x - n[1] * y) / n[2])
                                              : std::nullopt;
    const double f = projection.focalLength;
    const double along = n[0] * x / f + n[1] * y / f + n[2];
    return std::abs(along) > edgeOn * size ? std::optional(height / along) : std::nullopt;
}

} // namespace

ScreenOverlap overlapOf(const ScreenQuad& a, const ScreenQuad& b)
{
    ScreenOverlap sum{0, {0, 0}};
    for (const Triangle& first : trianglesOf(a))
        for (const Triangle& second : trianglesOf(b)) {
            std::vector<Point> outline(first.begin(), first.end());
            for (std::size_t i = 0; i < 3 && !outline.empty(); ++i)
                outline = clipped(outline, second[i], second[(i + 1) % 3]);
            for (std::size_t i = 2; i < outline.size(); ++i) {
                const double area = turnOf(outline[0], outline[i - 1], outline[i]) / 2;
                sum.area += area;
                sum.middle[0] += area * (outline[0].x + outline[i - 1].x + outline[i].x) / 3;
                sum.middle[1] += area * (outline[0].y + outline[i - 1].y + outline[i].y) / 3;
            }
        }
    if (sum.area > 0)
        for (double& value : sum.middle) value /= sum.area;
    return sum;
}

double areaOf(const ScreenQuad& quad)
{
    double area = 0;
    for (const Triangle& t : trianglesOf(quad)) area += turnOf(t[0], t[1], t[2]) / 2;
    return area;
}

int compareDepth(const ViewCorners& a, const ViewCorners& b, std::array<double, 2> at,
                 const Projection& projection)
{
    const auto first = depthAt(a, at, projection), second = depthAt(b, at, projection);
    if (!first || !second) return 0;
    constexpr double asFar = 1e-4; // of the depth
    const double difference = *first - *second;
    if (!(std::abs(difference) > asFar * (std::abs(*first) + std::abs(*second)))) return 0;
    return difference > 0 ? 1 : -1;
}

} // namespace facetor
