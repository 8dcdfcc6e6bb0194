// Makes the small models of the manual's pictures of polygon attributes, each in one variant for a
// mode, with one texture list for all. scripts/manual-pictures renders them with facetor-cli.
#include "picture.h"
#include "samples.h"
#include "shapes.h"

#include "base/message.h"
#include "model/model_file.h"
#include "texture/texture_file.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

namespace facetor::samples {

namespace {

enum ManualTexture : std::uint16_t { letter, stripes };

constexpr Rgb555 orange = rgb555(31, 18, 4);
constexpr Rgb555 teal = rgb555(6, 20, 22);

Message paintTextures(TextureList& textures)
{
    Picture f(32, 32, rgb555(29, 28, 24));
    f.plate(0, 0, 32, 32, 6);
    f.fill(8, 5, 14, 27, rgb555(22, 4, 5));
    f.fill(8, 5, 25, 10, rgb555(22, 4, 5));
    f.fill(8, 14, 21, 19, rgb555(22, 4, 5));
    if (const Message message = f.store(textures, letter); message != Message::none) return message;
    Picture bars(32, 32, rgb555(31, 31, 31));
    const Rgb555 colours[] = {rgb555(31, 31, 31), rgb555(31, 6, 6),  rgb555(6, 26, 8),
                              rgb555(8, 12, 31),  rgb555(31, 29, 6), rgb555(20, 20, 20),
                              rgb555(24, 8, 26),  rgb555(2, 2, 2)};
    for (int bar = 0; bar < 8; ++bar) bars.fill(4 * bar, 0, 4 * bar + 4, 32, colours[bar]);
    return bars.store(textures, stripes);
}

/// A square that faces the viewer, its corners clockwise from the upper left.
std::array<Point, 4> square(double half, double z)
{
    return {Point{-half, -half, z}, {half, -half, z}, {half, half, z}, {-half, half, z}};
}

/// Something of one material before a striped wall, which is drawn first.
void addBeforeWall(ModelBuilder& builder, const Material& material)
{
    Part& part = builder.add("Wall");
    part.quad(square(150, 80), textured(stripes, rgb555(31, 31, 31)));
    part.quad(square(95, -20), material);
}

void addBox(ModelBuilder& builder, const Material& material)
{
    addBox(builder.add("Box"), {-100, -100, -100}, {100, 100, 100}, material);
}

void addSquare(ModelBuilder& builder, const Material& material, std::size_t turnedBy = 0)
{
    std::array<Point, 4> corners = square(140, 0);
    std::rotate(corners.begin(), corners.begin() + static_cast<std::ptrdiff_t>(turnedBy),
                corners.end());
    builder.add("Square").quad(corners, material);
}

void addBall(ModelBuilder& builder, const Material& material)
{
    std::vector<Ring> rings;
    // Radii and heights of rings around an upright ball, the same on every machine.
    constexpr double ring[][2] = {{-120, 50}, {-92, 92}, {-50, 120}, {0, 130},
                                  {50, 120},  {92, 92},  {120, 50}};
    for (const auto& [y, radius] : ring) rings.push_back(levelRing({0, y, 0}, radius, radius, 12));
    addGlobe(builder.add("Ball"), {0, -130, 0}, rings, {0, 130, 0}, everywhere(material));
}

/// A long carpet with two stones on it, to be seen from above its near end.
void addCarpet(ModelBuilder& builder, std::uint16_t sort)
{
    Part& part = builder.add("Carpet");
    part.quadTowards({Point{-80, 60, 200}, {80, 60, 200}, {80, 60, -140}, {-80, 60, -140}},
                     {0, -1, 0}, plain(teal).sorted(sort));
    addBox(builder.add("NearStone"), {-60, 0, -110}, {0, 60, -50}, lit(orange), noBottom);
    addBox(builder.add("FarStone"), {0, 0, 110}, {60, 60, 170}, lit(orange), noBottom);
}

/// A box without its lid.
void addOpenBox(ModelBuilder& builder, std::uint16_t plane)
{
    Material material = lit(orange);
    material.plane = plane;
    addBox(builder.add("OpenBox"), {-110, -60, -110}, {110, 70, 110}, material,
           allFaces & ~(1u << topFace));
}

/// A road from far away up to under the viewer.
void addRoad(ModelBuilder& builder, std::uint32_t flags)
{
    Part& part = builder.add("Road");
    for (int row = 0; row < 13; ++row) {
        const double z = 900 - 110.0 * row;
        part.quadTowards({Point{-60, 45, z}, {60, 45, z}, {60, 45, z - 110}, {-60, 45, z - 110}},
                         {0, -1, 0}, plain(row % 2 ? teal : orange).with(flags));
    }
}

struct ManualModel {
    const char* name;
    std::function<void(ModelBuilder&)> make;
};

const ManualModel models[] = {
    {"material-polygon", [](auto& b) { addBox(b, lit(orange)); }},
    {"material-polyline",
     [](auto& b) {
         Material wire = plain(orange);
         wire.flags = polyLine;
         addBox(b, wire);
     }},
    {"material-texture-map", [](auto& b) { addBox(b, textured(letter, orange)); }},
    {"material-no-light", [](auto& b) { addBox(b, plain(orange)); }},
    {"flip-none", [](auto& b) { addSquare(b, textured(letter, orange)); }},
    {"flip-h", [](auto& b) { addSquare(b, textured(letter, orange).with(flipHorizontal)); }},
    {"flip-v", [](auto& b) { addSquare(b, textured(letter, orange).with(flipVertical)); }},
    {"flip-hv",
     [](auto& b) {
         addSquare(b, textured(letter, orange).with(flipHorizontal).with(flipVertical));
     }},
    {"vertices-clockwise", [](auto& b) { addSquare(b, textured(letter, orange), 1); }},
    {"vertices-half-turn", [](auto& b) { addSquare(b, textured(letter, orange), 2); }},
    {"vertices-counter-cw", [](auto& b) { addSquare(b, textured(letter, orange), 3); }},
    {"mode-replace", [](auto& b) { addBeforeWall(b, plain(orange)); }},
    {"mode-shadow", [](auto& b) { addBeforeWall(b, plain(orange).with(shadowMode)); }},
    {"mode-half", [](auto& b) { addBeforeWall(b, plain(orange).with(halfMode)); }},
    {"mode-translucent", [](auto& b) { addBeforeWall(b, plain(orange).with(translucentMode)); }},
    {"mode-mesh", [](auto& b) { addBeforeWall(b, plain(orange).with(meshMode)); }},
    {"sort-center", [](auto& b) { addCarpet(b, sortCentre); }},
    {"sort-minimum", [](auto& b) { addCarpet(b, sortNearest); }},
    {"sort-maximum", [](auto& b) { addCarpet(b, sortFarthest); }},
    {"gouraud-off", [](auto& b) { addBall(b, lit(orange)); }},
    {"gouraud-light", [](auto& b) { addBall(b, smooth(orange)); }},
    {"gouraud-table",
     [](auto& b) {
         addSquare(b, plain(rgb555(16, 16, 16))
                          .shaded({rgb555(31, 16, 16), rgb555(16, 31, 16), rgb555(16, 16, 31),
                                   rgb555(31, 31, 16)}));
     }},
    {"option-single", [](auto& b) { addOpenBox(b, 0); }},
    {"option-dual", [](auto& b) { addOpenBox(b, 1); }},
    {"option-near-clip-off", [](auto& b) { addRoad(b, 0); }},
    {"option-near-clip-on", [](auto& b) { addRoad(b, nearClip); }},
};

Message writeAll(const std::string& folder)
{
    TextureList textures;
    Message message = textures.create();
    if (message == Message::none) message = paintTextures(textures);
    if (message == Message::none) message = writeTextureFile(textures, folder + "manual.mxt");
    for (const ManualModel& entry : models) {
        Model model;
        if (message == Message::none) message = createModelStore(model);
        ModelBuilder builder;
        entry.make(builder);
        if (message == Message::none) message = builder.build(model);
        if (message == Message::none) message = writeModelFile(model, folder + entry.name + ".mx3");
    }
    Model sign;
    if (message == Message::none) message = createModelStore(sign);
    if (message == Message::none) message = makeSign(sign, letter);
    if (message == Message::none) message = writeModelFile(sign, folder + "sign.mx3");
    return message;
}

} // namespace

} // namespace facetor::samples

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fputs("usage: manual-models FOLDER\nWrites the models of the manual's pictures.\n",
                   stderr);
        return 2;
    }
    const facetor::Message message = facetor::samples::writeAll(std::string(argv[1]) + "/");
    if (message == facetor::Message::none) return 0;
    const std::string text(catalogueText(message));
    std::fprintf(stderr, "manual-models: %s\n", text.c_str());
    return 1;
}
