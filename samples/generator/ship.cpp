#include "samples.h"

#include "numbers.h"
#include "shapes.h"
#include "ship_textures.h"

namespace facetor::samples {

namespace {

constexpr Rgb555 ivory = rgb555(19, 18, 15);
constexpr Rgb555 orange = rgb555(27, 11, 2);
constexpr Rgb555 slate = rgb555(9, 10, 13);
constexpr Rgb555 steel = rgb555(14, 14, 15);
constexpr Rgb555 glass = rgb555(6, 17, 24);
constexpr Rgb555 flameBlue = rgb555(12, 22, 30);

constexpr Rgb555 grey(int value)
{
    return opaqueBit | rgb555(value, value, value);
}

Material plated(ShipTexture slot)
{
    const bool dark = slot == bellyPlates || slot == hullVents;
    return smoothTextured(slot, dark ? slate : ivory);
}

/// Decals lie on other faces: by their nearest point they come after these.
Material decal(ShipTexture slot, Rgb555 colour)
{
    return textured(slot, colour).sorted(sortNearest);
}

/// A cross-section of the hull at `z`: half width, height above and below the middle line at `y`,
/// and how square it is, 0 to 1. The first face is the one right of the top.
struct Section {
    double z, halfWidth, above, below, y, square;
};

constexpr int hullSides = 12;
constexpr int topSide = 11, rightSide = 2, bottomSide = 5, leftSide = 8;

Ring hullRing(const Section& section)
{
    Ring ring;
    for (int i = 0; i < hullSides; ++i) {
        const double turns = (i + 0.5) / hullSides;
        const double s = sineOfTurns(turns), c = cosineOfTurns(turns);
        const double larger =
            (s < 0 ? -s : s) > (c < 0 ? -c : c) ? (s < 0 ? -s : s) : (c < 0 ? -c : c);
        const double out = 1 + (1 / larger - 1) * section.square;
        ring.push_back({section.halfWidth * s * out,
                        section.y - (c > 0 ? section.above : section.below) * c * out, section.z});
    }
    return ring;
}

const Section hullSections[] = {
    {-160, 4, 3, 3, 6, 0.0},    {-150, 8, 6, 6, 5, 0.1},   {-128, 14, 10, 9, 4, 0.2},
    {-102, 20, 14, 12, 2, 0.3}, {-76, 26, 18, 15, 1, 0.4}, {-48, 31, 22, 18, 0, 0.4},
    {-18, 34, 25, 20, 0, 0.5},  {14, 36, 26, 21, 0, 0.5},  {46, 36, 26, 21, 0, 0.5},
    {76, 33, 24, 19, 0, 0.4},   {100, 26, 20, 16, 0, 0.3}, {114, 20, 16, 13, 0, 0.2},
};

Material hullMaterial(int row, int column)
{
    if (column >= 4 && column <= 6) // the belly, with its vents
        return plated(column == bottomSide && (row == 6 || row == 8) ? hullVents : bellyPlates)
            .with(column == 4 ? std::uint32_t{flipHorizontal} : 0u);
    const bool upper = column == topSide || column == 0 || column == 10;
    // The nose is what comes nearest to the camera.
    if (row == 0) return smooth(slate).with(nearClip);
    if (upper && row >= 2 && row <= 4) return smoothTextured(cockpitInside, slate);
    if (row == 1) return plated(hullPlates).with(nearClip);
    if ((column == rightSide || column == leftSide) && row >= 5 && row <= 8)
        return plated(hullWindows);
    if (row == 9) return plated(hullStripe);
    if (row == 10) return plated(sternPlates).with(flipVertical);
    return plated(hullPlates);
}

void addHull(ModelBuilder& builder)
{
    Part& hull = builder.add("Hull");
    std::vector<Ring> rings;
    for (const Section& section : hullSections) rings.push_back(hullRing(section));
    addLoft(hull, rings, hullMaterial);
    addCap(hull, rings.front(), {0, 0, -1}, everywhere(lit(slate)));
    addCap(hull, rings.back(), {0, 0, 1}, everywhere(textured(sternPlates, steel).with(useLight)));
    hull.quad({{{13, -13, 114.5}, {-13, -13, 114.5}, {-13, 13, 114.5}, {13, 13, 114.5}}},
              decal(engineGlow, flameBlue));

    // The spine behind the cockpit.
    const struct {
        double z, halfWidth, base, height;
    } spine[] = {
        {-44, 12, -20, 16}, {-14, 11, -24, 13}, {20, 9, -25, 10}, {56, 7, -25, 6}, {88, 3, -22, 1},
    };
    std::vector<Ring> rows;
    for (const auto& station : spine) {
        Ring row;
        for (int i = 0; i < 5; ++i) {
            const double turns = (i - 2) * 0.125;
            row.push_back({station.halfWidth * sineOfTurns(turns),
                           station.base - station.height * cosineOfTurns(turns), station.z});
        }
        rows.push_back(row);
    }
    addPatch(hull, rows, {0, -1, 0}, [](int row, int column) {
        return plated(column == 1 || column == 2 ? hullStripe : row == 1 ? hullVents : hullPlates);
    });

    // Canards: sheets without thickness, seen from both sides.
    for (const double side : {-1.0, 1.0}) {
        const auto at = [side](double x, double y, double z) { return Point{side * x, y, z}; };
        hull.quadTowards({{at(13, 3, -134), at(40, 0, -112), at(40, 0, -104), at(15, 3, -112)}},
                         {0, -1, 0}, textured(wingTip, orange).with(useLight).dualSided());
        hull.quadTowards(
            {{at(-34.6, -9, 4), at(-34.6, -9, 4 + 22), at(-34.6, 9, 4 + 22), at(-34.6, 9, 4)}},
            {-side, 0, 0}, plain(0).with(shadowMode).sorted(sortNearest));
    }
}

void addCockpit(ModelBuilder& builder)
{
    Part& seat = builder.add("Cockpit", 0, {0, -20, -66});
    addBox(seat, {-6, -6, 4}, {6, 6, 8}, lit(rgb555(9, 5, 3)), noBottom);
    addBox(seat, {-8, -1, -20}, {8, 4, -14}, textured(cockpitInside, slate), noBottom);
    std::vector<Ring> helmet;
    for (const double height : {-11.0, -8.5, -4.5, -1.5}) {
        const double radius = height == -11 ? 1.5 : height == -1.5 ? 3 : 4.5;
        helmet.push_back(levelRing({0, height, 0}, radius, radius, 6));
    }
    addLoft(seat, helmet, [](int row, int column) {
        return row == 1 && (column == 5 || column == 0) ? lit(rgb555(4, 5, 9))
                                                        : smooth(rgb555(22, 9, 4));
    });
    addCap(seat, helmet.front(), {0, -1, 0}, everywhere(lit(rgb555(22, 9, 4))));

    Part& canopy = builder.add("Canopy", builder.last(), {0, 0, 0});
    const struct {
        double z, halfWidth, base, height;
    } stations[] = {
        {-40, 2, 7, 1}, {-24, 9, 4, 9}, {-6, 12, 2, 15}, {10, 13, 1, 18}, {24, 12, -1, 15},
    };
    std::vector<Ring> rows;
    for (const auto& station : stations) {
        Ring row;
        for (int i = 0; i < 7; ++i) {
            const double turns = (i - 3) / 12.0;
            row.push_back({station.halfWidth * sineOfTurns(turns),
                           station.base - station.height * cosineOfTurns(turns), station.z});
        }
        rows.push_back(row);
    }
    addPatch(canopy, rows, {0, -1, 0},
             [](int, int) { return smooth(glass).with(translucentMode).sorted(sortNearest); });
    // Its frame: outlines in between.
    for (std::size_t r = 1; r < 4; ++r)
        for (std::size_t c = 0; c < 6; c += 3) {
            std::array<Point, 4> strip{rows[r][c], rows[r][c + 1], rows[r][c + 2], rows[r][c + 3]};
            for (Point& point : strip) point = point * 1.01;
            canopy.quadTowards(strip, {c < 3 ? -1.0 : 1.0, -1, 0},
                               plain(ivory).with(polyLine).sorted(sortNearest).dualSided());
            canopy.faces.back().material.flags &= ~std::uint32_t{polygonFace};
        }
}

void addTurret(ModelBuilder& builder)
{
    Part& turret = builder.add("Turret", 0, {0, 14, -64});
    std::vector<Ring> dome;
    for (int i = 0; i < 4; ++i) {
        const double turns = i / 16.0;
        dome.push_back(levelRing({0, 11 * sineOfTurns(turns), 0}, 12 * cosineOfTurns(turns),
                                 12 * cosineOfTurns(turns), 8));
    }
    addLoft(turret, dome,
            [](int row, int) { return row == 0 ? plated(hullPlates) : smooth(steel); });
    addCap(turret, dome.back(), {0, 1, 0}, everywhere(lit(orange)));

    Part& gun = builder.add("TurretGun", builder.last(), {0, 6, -8});
    for (const double x : {-4.0, 4.0}) {
        addBox(gun, {x - 1.5, -1.5, -30}, {x + 1.5, 1.5, 0}, lit(slate), 63 & ~4u);
        addBox(gun, {x - 2, -2, -36}, {x + 2, 2, -30}, lit(orange));
    }
}

void addAntenna(ModelBuilder& builder)
{
    Part& mast = builder.add("Antenna", 0, {0, -26, 66});
    mast.quad({{{-1, -16, 0}, {1, -16, 0}, {2, 0, 0}, {-2, 0, 0}}}, lit(steel).dualSided());
    mast.quad({{{0, -16, 1}, {0, -16, -1}, {0, 0, -2}, {0, 0, 2}}}, lit(steel).dualSided());
    Part& dish = builder.add("Dish", builder.last(), {0, -18, 0});
    dish.rotation = {-4096, 0, 0};
    addFan(dish, uprightRing({0, 0, -5}, 11, 11, 8), {0, 0, 2}, {0, 0, -1},
           plain(rgb555(26, 26, 22)).with(useLight | meshMode).dualSided());
}

constexpr int wingStations = 6, wingChord = 5;

/// A point of the wing, from its root at x = 0: station 0 to 5 outward, chord 0 to 4 from the
/// leading to the trailing edge, side -1 above and 1 below.
Point wingPoint(int station, int chord, double side)
{
    constexpr double across[wingStations] = {0, 22, 46, 70, 92, 110};
    constexpr double along[wingChord] = {0, 0.12, 0.4, 0.75, 1};
    constexpr double profile[wingChord] = {0, 0.75, 1, 0.6, 0};
    const double x = across[station], out = x / 110;
    const double leading = -52 + 84 * out, trailing = 56 + 14 * out;
    const double thickness = 7 - 5 * out;
    return {x, 6 * out + side * thickness * profile[chord],
            leading + (trailing - leading) * along[chord]};
}

void addWing(ModelBuilder& builder)
{
    Part& wing = builder.add("WingRight", 0, {31, 4, 12});
    const std::uint32_t wingIndex = builder.last();
    for (const double side : {-1.0, 1.0}) {
        std::vector<Ring> rows;
        for (int chord = 0; chord < wingChord; ++chord) {
            Ring row;
            for (int station = 0; station < wingStations; ++station)
                row.push_back(wingPoint(station, chord, side));
            rows.push_back(row);
        }
        addPatch(wing, rows, {0, side, 0}, [side](int row, int column) {
            if (column == 4) return plated(wingTip);
            if (row == 0) return smooth(orange);
            return plated(side < 0 ? wingPlates : bellyPlates);
        });
    }
    const auto above = [](double x, double z) { return Point{x, x * 6 / 110 - 7.5 + x / 28, z}; };
    wing.quadTowards({{above(50, 2), above(82, 2), above(82, 34), above(50, 34)}}, {0, -1, 0},
                     decal(roundel, ivory));
    // The soot of the engine above.
    wing.quadTowards({{above(8, 30), above(32, 30), above(34, 58), above(6, 58)}}, {0, -1, 0},
                     plain(0).with(shadowMode).sorted(sortNearest));

    // Its hinge is the wing's trailing edge.
    Part& flap = builder.add("FlapRight", wingIndex, {24, 1.5, 58});
    flap.rotation = {-1000, 0, 0};
    addHexahedron(flap,
                  {{{0, -1.5, 0},
                    {66, 2.5, 8},
                    {66, 4.5, 8},
                    {0, 1.5, 0},
                    {2, -0.25, 17},
                    {64, 3.25, 21},
                    {64, 3.75, 21},
                    {2, 0.25, 17}}},
                  {lit(ivory), lit(ivory), lit(slate), lit(ivory),
                   textured(hazardStripes, orange).with(useLight), lit(slate)},
                  allFaces & ~(1u << frontFace));

    Part& cannon = builder.add("CannonRight", wingIndex, {113, 6, 48});
    const struct {
        double z, radius;
    } rings[] = {
        {-44, 3}, {-38, 5}, {-4, 6.5}, {28, 6}, {48, 2.5},
    };
    std::vector<Ring> skin;
    for (const auto& ring : rings)
        skin.push_back(uprightRing({0, 0, ring.z}, ring.radius, ring.radius, 8));
    addLoft(cannon, skin, [](int row, int) {
        return row == 1 ? plated(engineBands) : row == 0 ? smooth(steel) : smooth(ivory);
    });
    addCap(cannon, skin.back(), {0, 0, 1}, everywhere(lit(orange)));

    Part& muzzle = builder.add("MuzzleRight", builder.last(), {0, 0, -44});
    const std::vector<Ring> barrel{uprightRing({0, 0, -34}, 1.75, 1.75, 6),
                                   uprightRing({0, 0, 0}, 2.5, 2.5, 6)};
    addLoft(muzzle, barrel, everywhere(smooth(slate)));
    const std::vector<Ring> brake{uprightRing({0, 0, -40}, 3, 3, 6),
                                  uprightRing({0, 0, -34}, 3, 3, 6)};
    addLoft(muzzle, brake, everywhere(smooth(steel)));
    addCap(muzzle, brake.front(), {0, 0, -1}, everywhere(plain(rgb555(28, 10, 4))));
    addCap(muzzle, brake.back(), {0, 0, 1}, everywhere(lit(steel)));
    builder.mirror(wingIndex);
}

void addFin(ModelBuilder& builder, std::uint32_t engine)
{
    Part& fin = builder.add("FinRight", engine, {2, -14, 44});
    for (const double side : {-1.0, 1.0}) {
        std::vector<Ring> rows;
        for (int up = 0; up < 4; ++up) { // from the tip down
            const double share = 1 - up / 3.0, thickness = (2.5 - 1.75 * share) * side;
            const Point lean{16 * share, -52 * share, 0};
            const double leading = 42 * share, trailing = 42 + 14 * share;
            rows.push_back({lean + Point{0, 0, leading},
                            lean + Point{thickness, 0, leading + (trailing - leading) * 0.4},
                            lean + Point{0, 0, trailing}});
        }
        addPatch(fin, rows, {side, 0, 0}, [](int row, int column) {
            return row == 0 ? plated(hullStripe) : column == 0 ? smooth(ivory) : plated(wingPlates);
        });
    }
    fin.quadTowards({{{12.5, -32, 33}, {12.5, -32, 48}, {8, -16, 44}, {8, -16, 29}}}, {1, 0, 0},
                    decal(shipNumber, slate));
    fin.faces.back().material.flags |= useLight;
}

void addEngine(ModelBuilder& builder)
{
    Part& engine = builder.add("EngineRight", 0, {50, -16, 20});
    const std::uint32_t engineIndex = builder.last();
    const struct {
        double z, radius;
    } rings[] = {
        {-46, 12}, {-42, 15}, {-16, 17.5}, {18, 17.5}, {48, 16}, {70, 13},
    };
    std::vector<Ring> skin;
    for (const auto& ring : rings)
        skin.push_back(uprightRing({0, 0, ring.z}, ring.radius, ring.radius, 10));
    addLoft(engine, skin, [](int row, int column) {
        if (row == 0) return smooth(orange);
        if (row == 4) return plated(sternPlates);
        return plated(row == 2 ? engineBands : column % 3 == 1 ? hullVents : hullPlates);
    });
    addCap(engine, skin.front(), {0, 0, -1}, everywhere(plain(slate).with(halfMode)));
    engine.quad({{{-11, -11, -46.5}, {11, -11, -46.5}, {11, 11, -46.5}, {-11, 11, -46.5}}},
                decal(engineFan, slate));
    // The pylon to the hull.
    addHexahedron(engine,
                  {{{-22, -2, -24},
                    {-14, -2, -24},
                    {-14, 6, -24},
                    {-22, 8, -24},
                    {-22, -2, 36},
                    {-14, -2, 36},
                    {-14, 6, 36},
                    {-22, 8, 36}}},
                  {lit(ivory), lit(ivory), lit(ivory), lit(ivory), lit(ivory), lit(slate)},
                  1u << frontFace | 1u << backFace | 1u << topFace);

    Part& nozzle = builder.add("NozzleRight", engineIndex, {0, 0, 70});
    const std::vector<Ring> bell{uprightRing({0, 0, 0}, 11, 11, 10),
                                 uprightRing({0, 0, 6}, 12.5, 12.5, 10),
                                 uprightRing({0, 0, 16}, 14.5, 14.5, 10)};
    addLoft(nozzle, bell, everywhere(smoothTextured(nozzleBands, steel)));
    addCap(nozzle, bell.back(), {0, 0, 1}, everywhere(lit(slate).sorted(sortFarthest)));
    nozzle.quad({{{13, -13, 16.5}, {-13, -13, 16.5}, {-13, 13, 16.5}, {13, 13, 16.5}}},
                decal(engineGlow, flameBlue));

    Part& flame = builder.add("FlameRight", builder.last(), {0, 0, 17});
    const std::vector<Ring> tongue{uprightRing({0, 0, 0}, 10, 10, 6),
                                   uprightRing({0, 0, 18}, 8, 8, 6),
                                   uprightRing({0, 0, 46}, 1, 1, 6)};
    addLoft(flame, tongue, [](int row, int) {
        const Rgb555 hot = grey(row == 0 ? 26 : 20), cold = grey(row == 0 ? 20 : 10);
        return plain(flameBlue)
            .with(translucentMode)
            .sorted(sortNearest)
            .shaded({hot, hot, cold, cold});
    });
    const std::vector<Ring> halo{uprightRing({0, 0, 1}, 13, 13, 6),
                                 uprightRing({0, 0, 30}, 6, 6, 6)};
    addLoft(flame, halo, [](int, int) {
        return plain(rgb555(8, 16, 29))
            .with(meshMode)
            .sorted(sortNearest)
            .shaded({grey(18), grey(18), grey(9), grey(9)});
    });
    addFin(builder, engineIndex);
    builder.mirror(engineIndex);
}

} // namespace

Message makeShip(Model& model, TextureList& textures)
{
    ModelBuilder builder;
    addHull(builder);
    addCockpit(builder);
    addTurret(builder);
    addAntenna(builder);
    addWing(builder);
    addEngine(builder);
    textures.clearAll();
    if (const Message message = paintShipTextures(textures); message != Message::none)
        return message;
    return builder.build(model);
}

} // namespace facetor::samples
