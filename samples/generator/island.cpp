#include "samples.h"

#include "island_ground.h"
#include "island_textures.h"
#include "numbers.h"
#include "shapes.h"

#include <algorithm>
#include <array>

namespace facetor::samples {

namespace {

constexpr Rgb555 grass = rgb555(8, 16, 5);
constexpr Rgb555 lowRock = rgb555(11, 12, 8);
constexpr Rgb555 darkRock = rgb555(10, 8, 7);
constexpr Rgb555 water = rgb555(4, 14, 22);
constexpr Rgb555 gold = rgb555(23, 17, 4);

void addWater(ModelBuilder& builder)
{
    Part& lake = builder.add("Lake", 0, {lakeCentre.x, 1.5, lakeCentre.z});
    std::vector<Ring> rings;
    for (const double radius : {6.0, 18.0, 31.0})
        rings.push_back(levelRing({0, 0, 0}, radius, radius, 16));
    const Material surface = smooth(water);
    std::vector<std::vector<std::uint16_t>> index;
    for (const Ring& ring : rings) {
        index.emplace_back();
        for (const Point& point : ring) index.back().push_back(lake.add(point));
    }
    for (std::size_t r = 0; r + 1 < rings.size(); ++r)
        for (std::size_t c = 0; c < 16; ++c) {
            const std::size_t next = (c + 1) % 16;
            lake.joinTowards({index[r][c], index[r][next], index[r + 1][next], index[r + 1][c]},
                             {0, -1, 0}, surface);
        }
    addCap(lake, rings.front(), {0, -1, 0}, everywhere(surface));

    // Over the rim and down, fading.
    Part& fall = builder.add("Waterfall", builder.last(), {-lakeCentre.x, 0, -lakeCentre.z});
    constexpr double away = 0.725, ahead = -0.688; // the lake's direction from the middle
    std::vector<Ring> rows;
    const struct {
        double out, y;
    } steps[] = {
        {139, -0.5}, {152, -0.5}, {163, 2}, {167, 14}, {169, 34}, {170, 60}, {171, 92},
    };
    for (const auto& step : steps) {
        Ring row;
        for (const double aside : {-13.0, -4.5, 4.5, 13.0})
            row.push_back(
                {step.out * away - aside * ahead, step.y, step.out * ahead + aside * away});
        rows.push_back(row);
    }
    addPatch(fall, rows, {away, -0.5, ahead}, [](int row, int) {
        const auto fade = [](int at) {
            const int value = 20 - 2 * at;
            return static_cast<Rgb555>(opaqueBit | rgb555(value, value, value));
        };
        return textured(fallingWater, water)
            .with(row > 3 ? translucentMode : 0u)
            .shaded({fade(row), fade(row), fade(row + 1), fade(row + 1)})
            .sorted(sortNearest)
            .dualSided();
    });
}

/// Walls in storeys, so that each face's distance is close to that of all its points, and a roof.
void addHouse(Part& house, double halfWidth, double halfDepth, double height, IslandTexture wall,
              bool pointedRoof)
{
    const int storeys = std::max(1, static_cast<int>(height / 17 + 0.5));
    std::vector<Ring> rings;
    for (int i = 0; i <= storeys; ++i) {
        const double y = -height * i / storeys;
        rings.push_back({{-halfWidth, y, -halfDepth},
                         {halfWidth, y, -halfDepth},
                         {halfWidth, y, halfDepth},
                         {-halfWidth, y, halfDepth}});
    }
    std::reverse(rings.begin(), rings.end()); // from the top, so that windows stand upright
    addLoft(house, rings, everywhere(textured(wall, rgb555(16, 14, 11)).with(useLight)));
    if (pointedRoof) {
        Ring eaves = rings.front();
        for (Point& point : eaves) point = {point.x * 1.15, point.y, point.z * 1.15};
        addFan(house, eaves, {0, -height - halfWidth, 0}, {0, -1, 0}, lit(rgb555(20, 8, 5)));
    } else {
        house.joinTowards({0, 1, 2, 3}, {0, -1, 0}, lit(rgb555(12, 12, 13)));
        if (height > 45)
            addBox(house, {-3, -height - 5, -2}, {2, -height, 3}, lit(rgb555(14, 13, 12)),
                   noBottom);
    }
}

void addTower(Part& tower, const std::vector<Point>& profile, int sides, const MaterialAt& material)
{
    std::vector<Ring> rings;
    for (const Point& point : profile) // x is the radius
        rings.push_back(levelRing({0, point.y, 0}, point.x, point.x, sides));
    addLoft(tower, rings, material);
}

void addPalace(ModelBuilder& builder)
{
    Part& palace = builder.add("Palace", 0);
    const std::uint32_t palaceIndex = builder.last();
    addTower(palace, {{19, -24, 0}, {20, -12, 0}, {21, 0, 0}}, 12,
             everywhere(smoothTextured(towerShaft, rgb555(21, 20, 18))));
    addCap(palace, levelRing({0, -24, 0}, 19, 19, 12), {0, -1, 0},
           everywhere(lit(rgb555(16, 14, 10)).sorted(sortFarthest)));

    Part& spire = builder.add("Spire", palaceIndex, {0, -24, 0});
    addTower(spire,
             {{6, -114, 0},
              {7, -96, 0},
              {11, -92, 0},
              {11, -86, 0},
              {8, -82, 0},
              {9, -62, 0},
              {10, -42, 0},
              {11, -21, 0},
              {12, 0, 0}},
             12, [](int row, int) {
                 return row == 1 || row == 3 ? smooth(gold)
                                             : smoothTextured(towerShaft, rgb555(21, 20, 18));
             });
    addFan(spire, levelRing({0, -113, 0}, 8, 8, 12), {0, -148, 0}, {0, -1, 0},
           smooth(rgb555(5, 13, 19)));
    for (int i = 0; i < 4; ++i) {
        const double turns = i / 4.0 + 0.125;
        Part& turret = builder.add("Turret", palaceIndex,
                                   {23 * sineOfTurns(turns), 0, -23 * cosineOfTurns(turns)});
        turret.name += static_cast<char>('1' + i);
        addTower(turret, {{4.5, -46, 0}, {5, -30, 0}, {5, -15, 0}, {5.5, 0, 0}}, 8,
                 everywhere(smoothTextured(towerShaft, rgb555(21, 20, 18))));
        addFan(turret, levelRing({0, -45, 0}, 6.5, 6.5, 8), {0, -64, 0}, {0, -1, 0},
               smooth(rgb555(20, 6, 5)));
    }
}

void addCity(ModelBuilder& builder)
{
    Part& city = builder.add("City", 0);
    const std::uint32_t cityIndex = builder.last();
    // The wall around it, open towards the front.
    std::vector<Ring> rows(2);
    for (int i = 2; i <= 30; ++i) {
        const double turns = i / 32.0;
        const Point foot{cityRadius * sineOfTurns(turns), 1, -cityRadius * cosineOfTurns(turns)};
        rows[0].push_back(foot - Point{0, 8, 0});
        rows[1].push_back(foot);
    }
    addPatch(city, rows, {0, 0, -1}, everywhere(lit(rgb555(17, 15, 12)).dualSided()));
    constexpr double block = 14.5;
    int number = 0;
    for (int row = -3; row <= 3; ++row)
        for (int column = -3; column <= 3; ++column) {
            const double x = column * block, z = row * block;
            const double fromMiddle = squaredDistance(x, z, {0, 0, 0});
            if (fromMiddle < 27 * 27 || fromMiddle > 50 * 50) continue;
            if (column == 0 && row < 0) continue; // the avenue to the palace
            const auto seed = static_cast<std::uint32_t>(100 + ++number);
            const double share = 1 - fromMiddle / (62.0 * 62);
            const double height = 11 + 62 * share * scatteredUnit(seed, 1) + 10 * share;
            const bool tall = height > 34;
            const IslandTexture wall = tall ? (scattered(seed, 2) % 2 ? glassTower : whiteTower)
                                            : (scattered(seed, 2) % 2 ? stoneHouse : brickHouse);
            Part& house = builder.add("House", cityIndex, {x, 0, z});
            house.name += std::to_string(number);
            addHouse(house, 4.4 + scatteredUnit(seed, 3), 4.4 + scatteredUnit(seed, 4), height,
                     wall, !tall);
        }
}

void addLighthouse(ModelBuilder& builder)
{
    const Point place = onGround(136, 40);
    Part& tower = builder.add("Lighthouse", 0, place);
    addTower(tower, {{4, -54, 0}, {4.6, -36, 0}, {5.3, -18, 0}, {6, 2, 0}}, 10,
             everywhere(smoothTextured(lighthouseBands, rgb555(22, 22, 22))));
    const std::uint32_t index = builder.last();
    Part& lamp = builder.add("Lamp", index, {0, -54, 0});
    addTower(lamp, {{3, -8, 0}, {3, 0, 0}}, 8, everywhere(plain(rgb555(31, 29, 14))));
    addFan(lamp, levelRing({0, -8, 0}, 5, 5, 8), {0, -14, 0}, {0, -1, 0}, smooth(rgb555(22, 5, 4)));
    addCap(lamp, levelRing({0, 0, 0}, 6, 6, 8), {0, -1, 0},
           everywhere(lit(rgb555(16, 16, 16)).sorted(sortFarthest)));
    Part& beam = builder.add("Beam", builder.last(), {0, -4, 0});
    const std::vector<Ring> cone{uprightRing({0, 0, -4}, 2, 2, 8),
                                 uprightRing({0, 0, -34}, 6, 6, 8),
                                 uprightRing({0, 0, -74}, 11, 11, 8)};
    addLoft(beam, cone, [](int row, int) {
        return plain(rgb555(31, 29, 16))
            .with(translucentMode | (row == 0 ? 0u : std::uint32_t{meshMode}))
            .sorted(sortNearest);
    });
    beam.rotation = {0, 5000, 0};
}

void addAirship(ModelBuilder& builder)
{
    Part& balloon = builder.add("Airship", 0, {-92, -118, -96});
    const std::uint32_t index = builder.last();
    const struct {
        double z, radius;
    } rings[] = {
        {-44, 3}, {-38, 9}, {-26, 15}, {-10, 18}, {8, 18}, {26, 14}, {40, 8}, {48, 2},
    };
    std::vector<Ring> skin;
    for (const auto& ring : rings)
        skin.push_back(uprightRing({0, 0, ring.z}, ring.radius, ring.radius, 12));
    addGlobe(balloon, {0, 0, -46}, skin, {0, 0, 50}, [](int row, int column) {
        if (row == -1) return smooth(gold);
        return row == 3 || column % 3 == 1 ? smooth(rgb555(22, 6, 4))
                                           : smoothTextured(airshipSkin, rgb555(23, 19, 12));
    });
    balloon.rotation = {0, 6000, 0};
    for (int i = 0; i < 4; ++i) {
        const double turns = i / 4.0;
        const Point out{sineOfTurns(turns), -cosineOfTurns(turns), 0};
        balloon.quad({out * 8 + Point{0, 0, 30}, out * 22 + Point{0, 0, 40},
                      out * 22 + Point{0, 0, 54}, out * 3 + Point{0, 0, 46}},
                     lit(rgb555(22, 6, 4)).dualSided());
    }
    Part& gondola = builder.add("Gondola", index, {0, 22, -4});
    addHexahedron(
        gondola,
        {{{-4, -4, -14},
          {4, -4, -14},
          {3, 4, -10},
          {-3, 4, -10},
          {-4, -4, 16},
          {4, -4, 16},
          {3, 4, 12},
          {-3, 4, 12}}},
        {textured(timberPlanks, rgb555(15, 10, 6)), textured(timberPlanks, rgb555(15, 10, 6)),
         textured(timberPlanks, rgb555(15, 10, 6)), textured(timberPlanks, rgb555(15, 10, 6)),
         textured(timberPlanks, rgb555(15, 10, 6)), textured(timberPlanks, rgb555(15, 10, 6))});
    Part& propeller = builder.add("Propeller", builder.last(), {0, 0, 18});
    addFan(propeller, uprightRing({0, 0, 0}, 9, 9, 8), {0, 0, 1}, {0, 0, 1},
           plain(rgb555(20, 20, 18)).with(meshMode).dualSided());
}

/// A small rock of its own beside the island, with grass on top.
void addIslet(ModelBuilder& builder, Point place, double radius, std::uint32_t seed)
{
    Part& islet = builder.add("Islet" + std::to_string(seed), 0, place);
    const std::uint32_t index = builder.last();
    std::vector<Ring> rings;
    for (int i = 0; i < 4; ++i) {
        Ring ring = levelRing({0, i * radius * 0.4, 0}, 1, 1, 10);
        for (Point& point : ring) {
            const double share =
                radius * (1 - 0.26 * i) *
                (0.85 + 0.3 * scatteredUnit(seed, static_cast<std::uint32_t>(i),
                                            static_cast<std::uint32_t>(&point - ring.data())));
            point = {point.x * share, point.y, point.z * share};
        }
        rings.push_back(ring);
    }
    addLoft(islet, rings, [](int row, int) { return smooth(row == 0 ? lowRock : darkRock); });
    addFan(islet, rings.front(), {0, -radius * 0.12, 0}, {0, -1, 0},
           smooth(grass).sorted(sortFarthest));
    addFan(islet, rings.back(), {0, radius * 1.8, 0}, {0, 1, 0}, smooth(darkRock));
    Part& hut = builder.add("Hut" + std::to_string(seed), index, {0, -radius * 0.08, 0});
    addHouse(hut, 5, 5, 10, seed % 2 ? stoneHouse : brickHouse, true);
}

void addBridge(ModelBuilder& builder, Point from, Point to)
{
    Part& bridge = builder.add("Bridge", 0, from);
    const Point along = to - from;
    std::vector<Ring> rows;
    for (int i = 0; i <= 8; ++i) {
        const double share = i / 8.0, sag = 4 * share * (1 - share) * 6;
        const Point middle = along * share + Point{0, sag, 0};
        rows.push_back({middle - Point{0, 0, 4}, middle + Point{0, 0, 4}});
    }
    addPatch(bridge, rows, {0, -1, 0},
             everywhere(textured(timberPlanks, rgb555(15, 10, 6)).dualSided()));
    for (std::size_t i = 0; i + 1 < rows.size(); ++i)
        for (std::size_t side = 0; side < 2; ++side) {
            const Point up{0, -5, 0};
            Material rope = plain(rgb555(22, 18, 11)).with(polyLine).dualSided();
            rope.flags &= ~std::uint32_t{polygonFace};
            bridge.quad(
                {rows[i][side] + up, rows[i + 1][side] + up, rows[i + 1][side], rows[i][side]},
                rope);
        }
}

void addClouds(ModelBuilder& builder)
{
    constexpr Point places[] = {
        {110, -130, 60}, {-150, -86, -10}, {40, -150, 110}, {150, -84, -96}, {-60, -160, 60},
    };
    int number = 0;
    for (const Point& place : places) {
        Part& cloud = builder.add("Cloud" + std::to_string(++number), 0, place);
        for (int puff = 0; puff < 3; ++puff) {
            const double radius = puff == 1 ? 15 : 10, aside = (puff - 1) * 15.0;
            std::vector<Ring> rings;
            for (int i = 0; i < 3; ++i) {
                const double turns = (i + 1) / 8.0;
                rings.push_back(levelRing({aside, -radius * 0.6 * cosineOfTurns(turns), 0},
                                          radius * sineOfTurns(turns), radius * sineOfTurns(turns),
                                          8));
            }
            const Material mist = smooth(rgb555(20, 21, 23)).with(meshMode).sorted(sortNearest);
            addGlobe(cloud, {aside, -radius * 0.6, 0}, rings, {aside, radius * 0.6, 0},
                     everywhere(mist));
        }
    }
}

} // namespace

Message makeMax(Model& model, TextureList& textures)
{
    ModelBuilder builder;
    addGround(builder);
    addWater(builder);
    addPalace(builder);
    addCity(builder);
    addLighthouse(builder);
    addAirship(builder);
    addIslet(builder, {206, -14, -8}, 24, 1);
    addIslet(builder, {-190, 26, -70}, 20, 2);
    addIslet(builder, {40, 40, -196}, 17, 3);
    addBridge(builder, {156, -2, -2}, {186, -16, -8});
    addClouds(builder);
    addGroves(builder);
    textures.clearAll();
    if (const Message message = paintIslandTextures(textures); message != Message::none)
        return message;
    return builder.build(model);
}

} // namespace facetor::samples
