#include "samples.h"

#include "numbers.h"
#include "obj_text.h"
#include "picture.h"

namespace facetor::samples {

namespace {

constexpr int sides = 12;          ///< of everything round
constexpr double ground = 14;      ///< above the sea, of the plateau
constexpr Point tower{24, 0, -14}; ///< its axis
constexpr double gallery = 134;    ///< above the sea

constexpr char materials[] = "# Facetor sample: a lighthouse\n"
                             "newmtl rock\nmap_Kd lighthouse-rock.png\n"
                             "newmtl grass\nKd 0.32 0.52 0.2\n"
                             "newmtl sea\nmap_Kd lighthouse-sea.png\n"
                             "newmtl tower\nmap_Kd lighthouse-tower.png\n"
                             "newmtl iron\nKd 0.3 0.31 0.36\n"
                             "newmtl rail\nmap_Kd lighthouse-rail.png\n"
                             "newmtl glass\nKd 1 0.95 0.6\nd 0.4\n"
                             "newmtl lamp\nKd 1 1 0.75\nillum 0\n"
                             "newmtl red\nKd 0.75 0.16 0.12\n"
                             "newmtl wall\nmap_Kd lighthouse-house.png\n"
                             "newmtl plaster\nKd 0.86 0.82 0.7\n"
                             "newmtl roof\nmap_Kd lighthouse-roof.png\n"
                             "newmtl brick\nKd 0.5 0.27 0.2\n";

/// A point on a circle round an upright axis; side 0 faces the viewer, the next lies to its right.
Point onCircle(Point axis, double radius, double height, int side)
{
    const double turns = (side - 0.5) / sides;
    return {axis.x + radius * sineOfTurns(turns), height, axis.z + radius * cosineOfTurns(turns)};
}

std::array<Point, 4> sideOf(Point axis, double lowRadius, double low, double highRadius,
                            double high, int side)
{
    return {onCircle(axis, lowRadius, low, side), onCircle(axis, lowRadius, low, side + 1),
            onCircle(axis, highRadius, high, side + 1), onCircle(axis, highRadius, high, side)};
}

Picture rock()
{
    Picture picture(32, 32, rgb555(14, 13, 12));
    for (std::uint32_t i = 0; i < 22; ++i) {
        const double x = 32 * scatteredUnit(i, 5), y = 32 * scatteredUnit(i, 6);
        picture.disc(x, y, 2 + 3 * scatteredUnit(i, 7),
                     shifted(rgb555(14, 13, 12), static_cast<int>(i % 7) - 3));
    }
    picture.grain(8, 1);
    return picture;
}

Picture sea()
{
    Picture picture(32, 32, rgb555(4, 12, 20));
    for (int y = 0; y < 32; ++y)
        for (int x = 0; x < 32; ++x) {
            const double wave = sineOfTurns(x / 32.0 + sineOfTurns(y / 16.0) / 8 + y / 8.0);
            picture.shade(x, y, x + 1, y + 1, static_cast<int>(floorOf(wave * 3 + 0.5)));
        }
    picture.grain(9, 1);
    return picture;
}

/// Four fields of 32 x 32: red and white plaster, below them the same with a window.
Picture towerWalls()
{
    Picture picture(64, 64, rgb555(27, 26, 23));
    picture.fill(0, 0, 32, 64, rgb555(23, 6, 5));
    for (int y = 0; y < 64; y += 8)
        for (int x = 0; x < 64; x += 16) picture.plate(x + y % 16, y, x + y % 16 + 16, y + 8, 1);
    picture.grain(10, 1);
    for (const int x : {0, 32}) {
        picture.fill(x + 10, 40, x + 22, 58, rgb555(13, 12, 11));
        picture.fill(x + 12, 42, x + 20, 56, rgb555(4, 6, 10));
        picture.fill(x + 15, 42, x + 17, 56, rgb555(13, 12, 11));
        picture.fill(x + 12, 48, x + 20, 49, rgb555(13, 12, 11));
        picture.fill(x + 12, 42, x + 15, 48, rgb555(12, 17, 22));
    }
    return picture;
}

/// Bars with nothing between them.
Picture rail()
{
    Picture picture(16, 16, rgb555(8, 8, 10));
    for (int y = 0; y < 16; ++y)
        for (int x = 0; x < 16; ++x)
            if (y > 2 && y != 8 && x % 8 > 1) picture.erase(x, y);
    picture.shade(0, 0, 16, 1, 5);
    return picture;
}

Picture house()
{
    Picture picture(64, 32, rgb555(26, 25, 21));
    picture.grain(11, 1);
    picture.fill(0, 28, 64, 32, rgb555(12, 11, 10));
    for (const int x : {6, 46}) {
        picture.fill(x, 8, x + 13, 21, rgb555(5, 9, 14));
        picture.fill(x + 1, 9, x + 12, 20, rgb555(25, 21, 10));
        picture.fill(x + 6, 9, x + 7, 20, rgb555(5, 9, 14));
        picture.fill(x + 1, 14, x + 12, 15, rgb555(5, 9, 14));
    }
    picture.fill(26, 8, 38, 30, rgb555(5, 9, 14));
    picture.fill(27, 9, 37, 30, rgb555(8, 14, 18));
    picture.plate(28, 10, 36, 18, 2);
    picture.plate(28, 20, 36, 29, 2);
    picture.set(35, 20, rgb555(28, 24, 8));
    return picture;
}

Picture roof()
{
    Picture picture(32, 32, rgb555(18, 7, 5));
    for (int y = 0; y < 32; y += 8)
        for (int x = -4; x < 32; x += 8) {
            const int start = x + (y % 16 == 0 ? 0 : 4);
            picture.plate(start, y, start + 8, y + 8, 2);
        }
    picture.grain(12, 1);
    return picture;
}

void addIsland(ObjText& out)
{
    // Radius and height of the rings, from the sea to the plateau.
    constexpr std::array<std::array<double, 2>, 3> rings{{{106, 0}, {98, 8}, {82, ground}}};
    const auto at = [&](std::size_t ring, int side) {
        const auto wrapped = static_cast<std::uint32_t>((side + sides) % sides);
        const double bump = 1 + 0.16 * (scatteredUnit(wrapped, 3) - 0.5);
        return onCircle({0, 0, 0}, rings[ring][0] * bump, rings[ring][1], side);
    };
    out.object("Island");
    out.material("rock");
    out.smooth(true);
    for (std::size_t ring = 0; ring < 2; ++ring)
        for (int i = 0; i < sides; ++i)
            out.quad({at(ring, i), at(ring, i + 1), at(ring + 1, i + 1), at(ring + 1, i)});
    out.smooth(false);
    out.material("grass");
    std::vector<Point> plateau; // one face of twelve corners
    for (int i = 0; i < sides; ++i) plateau.push_back(at(2, i));
    out.plainFace(plateau);
    out.material("sea");
    for (int i = 0; i < sides; ++i)
        out.quad({onCircle({0, 0, 0}, 138, 0, i), onCircle({0, 0, 0}, 138, 0, i + 1), at(0, i + 1),
                  at(0, i)});
}

void addTower(ObjText& out)
{
    // Fields of the picture: left, bottom, right, top.
    constexpr std::array<double, 4> red{0, 0.5, 0.5, 1}, white{0.5, 0.5, 1, 1};
    constexpr std::array<double, 4> redWindow{0, 0, 0.5, 0.5}, whiteWindow{0.5, 0, 1, 0.5};
    constexpr int rows = 4;
    out.object("Tower");
    out.material("tower");
    out.smooth(true);
    for (int row = 0; row < rows; ++row)
        for (int i = 0; i < sides; ++i) {
            const double low = static_cast<double>(row) / rows, high = (row + 1.0) / rows;
            const bool hasWindow = row > 0 && i == (row * 5) % sides - 4;
            const bool isRed = row % 2 == 0;
            out.quad(sideOf(tower, 27 - 9 * low, ground + (gallery - ground) * low, 27 - 9 * high,
                            ground + (gallery - ground) * high, i),
                     isRed ? (hasWindow ? redWindow : red) : (hasWindow ? whiteWindow : white));
        }
}

void addLantern(ObjText& out)
{
    out.object("Lantern");
    out.material("iron");
    out.smooth(false);
    for (int i = 0; i < sides; ++i) {
        out.plainFace(sideOf(tower, 18, gallery, 27, gallery + 5, i));
        out.plainFace(sideOf(tower, 27, gallery + 5, 27, gallery + 8, i));
        out.plainFace(sideOf(tower, 27, gallery + 8, 13, gallery + 8, i));
    }
    out.material("rail");
    for (int i = 0; i < sides; ++i) {
        const auto outside = sideOf(tower, 26, gallery + 8, 26, gallery + 18, i);
        out.quad(outside);
        out.quad({outside[1], outside[0], outside[3], outside[2]}); // as it is seen from inside
    }
    out.material("lamp");
    const Point middle{tower.x, gallery + 18, tower.z};
    const auto tip = [&](double above) { return middle + Point{0, above, 0}; };
    for (int i = 0; i < 4; ++i) {
        const auto around = [&](int quarter) {
            return middle +
                   Point{6 * sineOfTurns(quarter / 4.0), 0, 6 * cosineOfTurns(quarter / 4.0)};
        };
        out.plainFace(std::array{around(i), around(i + 1), tip(8)});
        out.plainFace(std::array{around(i + 1), around(i), tip(-8)});
    }
    out.material("glass");
    for (int i = 0; i < sides; ++i)
        out.plainFace(sideOf(tower, 13, gallery + 8, 13, gallery + 30, i));
    out.material("red");
    out.smooth(true);
    for (int i = 0; i < sides; ++i)
        out.plainFace(std::array{onCircle(tower, 18, gallery + 30, i),
                                 onCircle(tower, 18, gallery + 30, i + 1),
                                 Point{tower.x, gallery + 50, tower.z}});
}

void addHouse(ObjText& out)
{
    // Of the walls: from, to, the eaves above the sea, the ridge.
    constexpr Point least{-64, ground, 6}, most{-12, 38, 40};
    constexpr double ridge = 56, middle = (least.z + most.z) / 2;
    const auto corner = [&](bool right, double y, double z) {
        return Point{right ? most.x : least.x, y, z};
    };
    out.object("House");
    out.material("wall");
    out.smooth(false);
    out.quad({corner(false, ground, most.z), corner(true, ground, most.z),
              corner(true, most.y, most.z), corner(false, most.y, most.z)});
    out.quad({corner(true, ground, least.z), corner(false, ground, least.z),
              corner(false, most.y, least.z), corner(true, most.y, least.z)});
    out.material("plaster"); // gables of five corners
    out.plainFace(std::array{corner(true, ground, most.z), corner(true, ground, least.z),
                             corner(true, most.y, least.z), corner(true, ridge, middle),
                             corner(true, most.y, most.z)});
    out.plainFace(std::array{corner(false, ground, least.z), corner(false, ground, most.z),
                             corner(false, most.y, most.z), corner(false, ridge, middle),
                             corner(false, most.y, least.z)});
    out.material("roof");
    const auto edge = [&](bool right, double y, double z) {
        return Point{right ? most.x + 3 : least.x - 3, y, z};
    };
    out.quad({edge(false, most.y - 3, most.z + 3), edge(true, most.y - 3, most.z + 3),
              edge(true, ridge + 1, middle), edge(false, ridge + 1, middle)});
    out.quad({edge(true, most.y - 3, least.z - 3), edge(false, most.y - 3, least.z - 3),
              edge(false, ridge + 1, middle), edge(true, ridge + 1, middle)});
    out.material("brick");
    constexpr double left = -54, right = -46, back = 25, front = 33, foot = 44, top = 66;
    constexpr std::array<std::array<double, 2>, 4> plan{
        {{left, front}, {right, front}, {right, back}, {left, back}}};
    for (std::size_t i = 0; i < 4; ++i) {
        const auto &a = plan[i], &b = plan[(i + 1) % 4];
        out.plainFace(std::array{Point{a[0], foot, a[1]}, Point{b[0], foot, b[1]},
                                 Point{b[0], top, b[1]}, Point{a[0], top, a[1]}});
    }
    out.plainFace(std::array{Point{left, top, front}, Point{right, top, front},
                             Point{right, top, back}, Point{left, top, back}});
}

} // namespace

std::vector<ExportedFile> makeLighthouse()
{
    ObjText out("# Facetor sample: a lighthouse\nmtllib lighthouse.mtl\n");
    addIsland(out);
    addTower(out);
    addLantern(out);
    addHouse(out);
    std::vector<ExportedFile> files{{"lighthouse.obj", bytesOf(out.finish())},
                                    {"lighthouse.mtl", bytesOf(materials)}};
    const std::pair<const char*, Picture> pictures[] = {
        {"rock", rock()}, {"sea", sea()},     {"tower", towerWalls()},
        {"rail", rail()}, {"house", house()}, {"roof", roof()},
    };
    for (const auto& [name, picture] : pictures)
        files.push_back({"lighthouse-" + std::string(name) + ".png", picture.toPng()});
    return files;
}

} // namespace facetor::samples
