#include "samples.h"

#include "numbers.h"
#include "picture.h"
#include "shapes.h"

namespace facetor::samples {

namespace {

enum PropTexture : std::uint16_t { planks, lidPlanks, insidePlanks, coins, lockPlate };

constexpr Rgb555 wood = rgb555(17, 10, 5);
constexpr Rgb555 darkWood = rgb555(9, 5, 3);
constexpr Rgb555 iron = rgb555(9, 9, 11);
constexpr Rgb555 gold = rgb555(24, 17, 3);

// Half the chest's width and depth, its height without the lid, the lid's, the wood's thickness.
constexpr double halfWidth = 66, halfDepth = 42, height = 56, lidHeight = 30, board = 5;

Picture boards(Rgb555 colour, std::uint32_t seed)
{
    Picture picture(32, 32, colour);
    for (int y = 0; y < 32; ++y) {
        const auto row = static_cast<std::uint32_t>(y);
        picture.shade(0, y, 32, y + 1, static_cast<int>(scattered(seed, row) % 3) - 1);
        const int knot = static_cast<int>(scattered(seed, row, 1) % 40);
        picture.shade(knot, y, knot + 7, y + 1, -2); // the grain
    }
    for (int y = 0; y < 32; y += 8) {
        picture.shade(0, y, 32, y + 1, 3);
        picture.shade(0, y + 7, 32, y + 8, -8);
    }
    return picture;
}

/// Boards between two riveted iron bands.
Picture banded(Rgb555 colour, std::uint32_t seed)
{
    Picture picture = boards(colour, seed);
    for (const int x : {0, 26}) {
        picture.fill(x, 0, x + 6, 32, iron);
        picture.shade(x, 0, x + 1, 32, 5);
        picture.shade(x + 5, 0, x + 6, 32, -5);
        for (int y = 3; y < 32; y += 8) {
            picture.fill(x + 2, y, x + 4, y + 2, shifted(iron, 9));
            picture.set(x + 3, y + 1, shifted(iron, 2));
        }
    }
    return picture;
}

Picture coinHeap()
{
    Picture picture(32, 32, rgb555(14, 9, 1));
    for (std::uint32_t coin = 0; coin < 60; ++coin) {
        const double x = 32 * scatteredUnit(coin, 1), y = 32 * scatteredUnit(coin, 2);
        picture.disc(x, y, 3.6, rgb555(13, 8, 1));
        picture.disc(x - 0.4, y - 0.4, 3.1, shifted(gold, static_cast<int>(coin % 5) - 2));
        picture.disc(x - 0.8, y - 0.8, 1.4, shifted(gold, 5));
    }
    return picture;
}

Picture lock()
{
    Picture picture(16, 16, shifted(gold, -2));
    picture.grain(4, 1);
    picture.plate(0, 0, 16, 16, 4);
    picture.disc(8, 6.5, 2.6, rgb555(2, 1, 1));
    picture.fill(7, 7, 9, 13, rgb555(2, 1, 1));
    return picture;
}

Material boarded(PropTexture slot)
{
    return smoothTextured(slot, slot == insidePlanks ? darkWood : wood);
}

void addBody(Part& chest)
{
    const double w = halfWidth, d = halfDepth, top = -height / 2, bottom = height / 2;
    const auto wall = [&chest](Point from, Point to, Point outward, double above, double below,
                               int parts, PropTexture slot) {
        for (int i = 0; i < parts; ++i) {
            const Point a = from + (to - from) * (static_cast<double>(i) / parts);
            const Point b = from + (to - from) * (static_cast<double>(i + 1) / parts);
            chest.quadTowards(
                {{{a.x, above, a.z}, {b.x, above, b.z}, {b.x, below, b.z}, {a.x, below, a.z}}},
                outward, boarded(slot));
        }
    };
    wall({-w, 0, -d}, {w, 0, -d}, {0, 0, -1}, top, bottom, 3, planks);
    wall({w, 0, -d}, {w, 0, d}, {1, 0, 0}, top, bottom, 2, planks);
    wall({w, 0, d}, {-w, 0, d}, {0, 0, 1}, top, bottom, 2, planks);
    wall({-w, 0, d}, {-w, 0, -d}, {-1, 0, 0}, top, bottom, 2, planks);

    const double iw = w - board, id = d - board, floor = bottom - board;
    wall({-iw, 0, -id}, {iw, 0, -id}, {0, 0, 1}, top, floor, 1, insidePlanks);
    wall({iw, 0, -id}, {iw, 0, id}, {-1, 0, 0}, top, floor, 1, insidePlanks);
    wall({iw, 0, id}, {-iw, 0, id}, {0, 0, -1}, top, floor, 1, insidePlanks);
    wall({-iw, 0, id}, {-iw, 0, -id}, {1, 0, 0}, top, floor, 1, insidePlanks);

    // The rim between the two, and the bottom.
    const Point outer[] = {{-w, top, -d}, {w, top, -d}, {w, top, d}, {-w, top, d}};
    const Point inner[] = {{-iw, top, -id}, {iw, top, -id}, {iw, top, id}, {-iw, top, id}};
    for (std::size_t i = 0; i < 4; ++i) {
        const std::size_t next = (i + 1) % 4;
        chest.quadTowards({outer[i], outer[next], inner[next], inner[i]}, {0, -1, 0}, lit(iron));
    }
    chest.quadTowards({{{-w, bottom, -d}, {w, bottom, -d}, {w, bottom, d}, {-w, bottom, d}}},
                      {0, 1, 0}, boarded(insidePlanks));
}

/// Its origin is the hinge: turning it about x opens and closes the chest.
void addLid(Part& lid)
{
    constexpr int segments = 6;
    const auto arc = [](int i, double inset) {
        const double turns = i / (2.0 * segments);
        return Point{0, -(lidHeight - inset) * sineOfTurns(turns),
                     -halfDepth - (halfDepth - inset) * cosineOfTurns(turns)};
    };
    std::vector<Ring> skin, lining;
    for (int i = 0; i <= segments; ++i) {
        Ring row;
        for (const double x : {-1.0, -1.0 / 3, 1.0 / 3, 1.0})
            row.push_back(arc(i, 0) + Point{x * halfWidth, 0, 0});
        skin.push_back(row);
        const Point inside = arc(i, board);
        lining.push_back(
            {inside + Point{board - halfWidth, 0, 0}, inside + Point{halfWidth - board, 0, 0}});
    }
    addPatch(lid, skin, {0, -1, 0}, everywhere(boarded(lidPlanks)));
    // The lining comes before the skin. Its front row may be seen from so far below that its normal
    // points away from the screen; only a double-sided face is drawn then.
    addPatch(lid, lining, {0, 1, 0}, [](int row, int) {
        const Material inside = boarded(insidePlanks).sorted(sortFarthest);
        return row == 0 ? inside.dualSided() : inside;
    });
    for (const double side : {-1.0, 1.0}) {
        const Point end{side * halfWidth, 0, 0}, inside{side * (halfWidth - board), 0, 0};
        for (int i = 0; i < segments / 2; ++i) {
            const int other = segments - i;
            lid.quadTowards({arc(i, 0) + end, arc(i + 1, 0) + end, arc(other - 1, 0) + end,
                             arc(other, 0) + end},
                            {side, 0, 0}, lit(wood));
            lid.quadTowards({arc(i, board) + inside, arc(i + 1, board) + inside,
                             arc(other - 1, board) + inside, arc(other, board) + inside},
                            {-side, 0, 0}, lit(darkWood).sorted(sortFarthest));
        }
    }
    // The rim, seen when the lid stands open.
    lid.quadTowards({skin[0][0], skin[0][3], lining[0][1], lining[0][0]}, {0, 1, 0}, lit(iron));
    lid.quadTowards(
        {skin[segments][0], skin[segments][3], lining[segments][1], lining[segments][0]}, {0, 1, 0},
        lit(iron));
    for (const double side : {-1.0, 1.0}) {
        const std::size_t outside = side < 0 ? 0 : 3, inside = side < 0 ? 0 : 1;
        lid.quadTowards({skin[0][outside], skin[segments][outside], lining[segments][inside],
                         lining[0][inside]},
                        {0, 1, 0}, lit(iron));
    }
}

void addTreasure(Part& treasure)
{
    std::vector<Ring> rows;
    for (int r = 0; r <= 3; ++r) {
        Ring row;
        for (int c = 0; c <= 3; ++c) {
            const double x = c / 1.5 - 1, z = r / 1.5 - 1;
            const double heap = (1 - x * x) * 16 + (1 - z * z) * 8;
            row.push_back(
                {x * (halfWidth - board), -heap - 2 * ((r + c) % 2), z * (halfDepth - board)});
        }
        rows.push_back(row);
    }
    addPatch(treasure, rows, {0, -1, 0}, everywhere(smoothTextured(coins, gold)));
}

} // namespace

Message makeProp(Model& model, TextureList& textures)
{
    ModelBuilder builder;
    Part& chest = builder.add("Chest");
    addBody(chest);
    // What it stands on is not there, its shadow is.
    chest.quadTowards({{{-84, height / 2 + 1, -56},
                        {84, height / 2 + 1, -56},
                        {84, height / 2 + 1, 56},
                        {-84, height / 2 + 1, 56}}},
                      {0, -1, 0}, plain(0).with(shadowMode).sorted(sortFarthest));

    Part& lid = builder.add("Lid", 0, {0, -height / 2, halfDepth});
    lid.rotation = {-14000, 0, 0};
    addLid(lid);
    // Seen from above, the open lid comes nearer than the screen.
    for (Face& face : lid.faces) face.material.flags |= nearClip;
    Part& hasp = builder.add("Hasp", builder.last(), {0, 0, -2 * halfDepth});
    addBox(hasp, {-7, -6, -3}, {7, 9, 0}, lit(gold).with(nearClip), allFaces & ~(1u << backFace));
    Part& lockPart = builder.add("Lock", 0, {0, -height / 2 + 12, -halfDepth});
    addBox(lockPart, {-10, -6, -4}, {10, 14, 0},
           {smoothTextured(lockPlate, gold), lit(gold), lit(gold), lit(gold), lit(gold), lit(gold)},
           allFaces & ~(1u << backFace));
    Part& treasure = builder.add("Treasure", 0, {0, -8, 0});
    addTreasure(treasure);
    Part& ruby = builder.add("Ruby", builder.last(), {18, -27, -8});
    addCrystal(ruby, {0, 0, 0}, 9, 11, 11,
               smooth(rgb555(20, 2, 6)).with(translucentMode).sorted(sortNearest));

    textures.clearAll();
    const struct {
        PropTexture slot;
        Picture picture;
    } all[] = {
        {planks, banded(wood, 1)},
        {lidPlanks, banded(wood, 2)},
        {insidePlanks, boards(darkWood, 3)},
        {coins, coinHeap()},
        {lockPlate, lock()},
    };
    for (const auto& [slot, picture] : all)
        if (const Message message = picture.store(textures, slot); message != Message::none)
            return message;
    return builder.build(model);
}

} // namespace facetor::samples
