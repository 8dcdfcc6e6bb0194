#include "island_ground.h"

#include "island_textures.h"
#include "numbers.h"
#include "shapes.h"

#include <algorithm>

namespace facetor::samples {

namespace {

constexpr int sectors = 40;

constexpr Rgb555 grass = rgb555(8, 16, 5);
constexpr Rgb555 meadow = rgb555(12, 18, 6);
constexpr Rgb555 sand = rgb555(21, 18, 11);
constexpr Rgb555 rock = rgb555(13, 11, 10);
constexpr Rgb555 lowRock = rgb555(11, 12, 8);
constexpr Rgb555 darkRock = rgb555(10, 8, 7);
constexpr Rgb555 lowStone = rgb555(11, 9, 8);
constexpr Rgb555 earth = rgb555(14, 10, 6);
constexpr Rgb555 snow = rgb555(23, 24, 26);

/// A smooth hill of height 1 at the centre that ends at distance 1.
double hill(double distanceSquared)
{
    const double rest = std::max(0.0, 1 - distanceSquared);
    return rest * rest;
}

Material groundMaterial(Point middle)
{
    const double height = -middle.y;
    const double uneven = 4 * roughness(middle.x, middle.z, 11, 3);
    const double fromCity = squaredDistance(middle.x, middle.z, {0, 0, 0});
    const double shore = squaredDistance(middle.x, middle.z, lakeCentre);
    Material material = smooth(grass);
    if (fromCity < (cityRadius - 6) * (cityRadius - 6))
        material = smoothTextured(pavement, rgb555(15, 15, 15));
    else if (shore < 1.35 * lakeRadius * lakeRadius)
        material = smooth(sand);
    else if (height + uneven > 64)
        material = smooth(snow);
    else if (height + uneven > 22)
        material = smooth(height + uneven > 40 ? rock : lowRock);
    else if (uneven > 0.8)
        material = smooth(meadow);
    // What stands on the ground comes after it. Its faces are not flat: one whose normal looks away
    // may still show half of itself.
    return material.sorted(sortFarthest).dualSided();
}

/// A ring of `sectors` points about the island's axis, at a height that is y. Its points lie
/// nearer or farther by up to half of `unevenness`, a share of the radius.
Ring ringOf(double radius, double y, double unevenness, std::uint32_t seed)
{
    Ring ring;
    for (int i = 0; i < sectors; ++i) {
        const double turns = static_cast<double>(i) / sectors;
        const auto point = static_cast<std::uint32_t>(i);
        const double r = radius * (1 + unevenness * (scatteredUnit(point, seed) - 0.5));
        ring.push_back({r * sineOfTurns(turns), y, -r * cosineOfTurns(turns)});
    }
    return ring;
}

} // namespace

double squaredDistance(double x, double z, Point centre)
{
    return (x - centre.x) * (x - centre.x) + (z - centre.z) * (z - centre.z);
}

double roughness(double x, double z, double square, std::uint32_t seed)
{
    const double u = x / square + 100, v = z / square + 100;
    const double column = floorOf(u), row = floorOf(v);
    const auto corner = [&](int right, int back) {
        return 2 * scatteredUnit(static_cast<std::uint32_t>(column) + static_cast<unsigned>(right),
                                 static_cast<std::uint32_t>(row) + static_cast<unsigned>(back),
                                 seed) -
               1;
    };
    const auto eased = [](double t) { return t * t * (3 - 2 * t); };
    const double s = eased(u - column), t = eased(v - row);
    return (corner(0, 0) * (1 - s) + corner(1, 0) * s) * (1 - t) +
           (corner(0, 1) * (1 - s) + corner(1, 1) * s) * t;
}

double groundHeight(double x, double z)
{
    const double fromCity = squaredDistance(x, z, {0, 0, 0}) / (cityRadius * cityRadius);
    const double outside = std::clamp((fromCity - 1) * 1.5, 0.0, 1.0);
    const double ridge = 1 + 0.35 * roughness(x, z, 19, 1);
    double height = 118 * hill(squaredDistance(x, z, {-84, 0, 84}) / (80.0 * 80)) * ridge +
                    84 * hill(squaredDistance(x, z, {-14, 0, 122}) / (60.0 * 60)) * ridge +
                    60 * hill(squaredDistance(x, z, {-134, 0, 20}) / (50.0 * 50)) * ridge +
                    20 * hill(squaredDistance(x, z, {104, 0, 66}) / (62.0 * 62)) +
                    2.5 * roughness(x, z, 24, 2) + 1;
    const double shore = squaredDistance(x, z, lakeCentre) / (lakeRadius * lakeRadius);
    height -= 9 * hill(shore / 1.6);
    return height * outside;
}

Point onGround(double x, double z)
{
    return {x, -groundHeight(x, z), z};
}

void addGround(ModelBuilder& builder)
{
    Part& ground = builder.add("Island");
    constexpr double radii[] = {5,  12, 20,  28,  36,  44,  52,  60,  68,  76,
                                85, 94, 103, 112, 121, 130, 139, 147, 154, islandRadius};
    std::vector<Ring> rings;
    for (const double radius : radii) {
        rings.push_back(ringOf(radius, 0, 0, 0));
        for (Point& point : rings.back()) point = onGround(point.x, point.z);
    }
    std::vector<std::vector<std::uint16_t>> index;
    for (const Ring& ring : rings) {
        index.emplace_back();
        for (const Point& point : ring) index.back().push_back(ground.add(point));
    }
    for (std::size_t r = 0; r + 1 < rings.size(); ++r)
        for (std::size_t c = 0; c < sectors; ++c) {
            const std::size_t next = (c + 1) % sectors;
            const Point middle = (rings[r][c] + rings[r + 1][next]) * 0.5;
            ground.joinTowards({index[r][c], index[r][next], index[r + 1][next], index[r + 1][c]},
                               {0, -1, 0}, groundMaterial(middle));
        }
    const std::uint16_t middle = ground.add(onGround(0, 0));
    for (std::size_t c = 0; c < sectors; ++c)
        ground.joinTriangle({index[0][(c + 1) % sectors], index[0][c], middle},
                            groundMaterial(rings[0][c]));

    Part& underside = builder.add("Underside", 0);
    const struct {
        double y, radius, unevenness;
    } levels[] = {
        {12, 155, 0.03}, {26, 146, 0.06}, {44, 126, 0.12}, {62, 106, 0.14},
        {82, 84, 0.18},  {102, 60, 0.22}, {122, 38, 0.24}, {142, 18, 0.20},
    };
    std::vector<Ring> skirt{rings.back()};
    for (const auto& level : levels)
        skirt.push_back(
            ringOf(level.radius, level.y, level.unevenness, static_cast<std::uint32_t>(level.y)));
    const auto stone = [](int row, int column) {
        if (row == 0) return smooth(grass).dualSided();
        if (row == 1) return smooth(earth).dualSided();
        const auto random =
            scattered(static_cast<std::uint32_t>(row), static_cast<std::uint32_t>(column), 5);
        return smooth(random % 4 == 0 ? lowStone : darkRock).dualSided();
    };
    addLoft(underside, skirt, stone);
    addFan(underside, skirt.back(), {2, 168, -2}, {0, 1, 0}, smooth(darkRock));
    for (std::uint32_t i = 0; i < 9; ++i) {
        const double turns = i / 9.0, radius = 30 + 60 * scatteredUnit(i, 21);
        Part& crystal = builder.add(
            "Crystal", builder.last() - i,
            {radius * sineOfTurns(turns), 142 - radius * 0.72, -radius * cosineOfTurns(turns)});
        crystal.name += static_cast<char>('1' + i);
        addCrystal(crystal, {0, 0, 0}, 6, 14, 26,
                   smooth(rgb555(5, 17, 24)).with(translucentMode).sorted(sortNearest));
    }
}

} // namespace facetor::samples
