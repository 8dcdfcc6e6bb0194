#include "engine/rasteriser.h"

#include "engine/triangle_fill.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <vector>

namespace facetor {

namespace {

constexpr std::int32_t width = 64, height = 48;
constexpr Rgb555 background = rgb555(9, 20, 27);

std::unique_ptr<Engine> makeEngine()
{
    auto engine = std::make_unique<Engine>();
    EXPECT_EQ(startEngine(*engine), Message::none);
    setSurfaceSize(engine->surface, width, height);
    clearSurface(engine->surface, background);
    return engine;
}

struct Texture {
    std::vector<Rgb555> texels;
    TextureSlot slot;

    Texture(std::uint16_t columns, std::uint16_t rows)
        : texels(std::size_t{columns} * rows), slot{columns, rows, texels.data()}
    {
    }
};

/// Quadrilaterals of every kind that a frame holds: tiny, large, thin, folded, triangles, points,
/// and partly or wholly off the surface.
ScreenQuad randomQuad(std::minstd_rand& random)
{
    const auto below = [&](std::int32_t limit) {
        return static_cast<std::int32_t>(random() % static_cast<unsigned>(limit));
    };
    const std::array<std::int32_t, 5> extents{3, 9, 16, 40, 150};
    const std::int32_t extent = extents[random() % extents.size()];
    const ScreenPoint middle{below(width + 20) - 10, below(height + 20) - 10};
    ScreenQuad quad;
    if (random() % 2 == 0) { // around the middle in order, as most polygons are
        const std::int32_t h = extent / 2 + 1;
        quad = {ScreenPoint{middle.x - below(h + 1), middle.y - below(h + 1)},
                ScreenPoint{middle.x + below(h + 1), middle.y - below(h + 1)},
                ScreenPoint{middle.x + below(h + 1), middle.y + below(h + 1)},
                ScreenPoint{middle.x - below(h + 1), middle.y + below(h + 1)}};
    } else {
        for (ScreenPoint& point : quad)
            point = {middle.x + below(extent) - extent / 2, middle.y + below(extent) - extent / 2};
    }
    if (random() % 6 == 0) quad[3] = quad[2];
    if (random() % 20 == 0) quad[1] = quad[0];
    return quad;
}

constexpr std::uint32_t modeFlags[] = {0, shadowMode, halfMode, translucentMode,
                                       shadowMode | halfMode | translucentMode};

void addPixels(std::uint64_t& hash, const FrameSurface& surface)
{
    for (std::int32_t i = 0; i < width * height; ++i) {
        hash ^= surface.pixels()[i] & 0x7FFFu; // bit 15 is unused on the surface
        hash *= 1099511628211u;
    }
}

Light randomLight(std::minstd_rand& random)
{
    Light light;
    if (random() % 2 == 0) setLightColour(light, static_cast<Rgb555>(random() & 0x7FFF));
    if (random() % 2 == 0) setAmbientColour(light, static_cast<Rgb555>(random() & 0x3DEF));
    return light;
}

} // namespace

/// Counts the pixels whose coordinates lie outside the limits that the filler keeps to.
struct CountingSource {
    static constexpr std::size_t coordinates = 2;
    static constexpr FillPath path = FillPath::plain;
    std::array<float, 2> limit;
    int* beyond;

    template <PixelMode mode> void pixel(const std::array<std::int32_t, 2>& at, Rgb555&) const
    {
        for (std::size_t c = 0; c < 2; ++c)
            if (at[c] < 0 || static_cast<float>(at[c]) >= limit[c]) ++*beyond;
    }
};

/// The pictures of thousands of random polygons, as a hash for each filler and mode. They were
/// taken while a plain version of the fillers, pixel by pixel in double precision, drew the same.
class FrozenPictures : public testing::TestWithParam<FillPath> {};

INSTANTIATE_TEST_SUITE_P(Rasteriser, FrozenPictures,
                         testing::Values(FillPath::plain, FillPath::vector));

TEST_P(FrozenPictures, AreDrawnByEveryFillerInEveryMode)
{
    struct Row {
        const char* filler;
        std::array<std::uint64_t, std::size(modeFlags)> pictures;
    };
    const Row rows[] = {
        {"flat",
         {0xE6184255B6D4EFE2, 0x0F65B4C1684E9355, 0xD147B0508E5CBEAE, 0xA8955642199D63FF,
          0x33449594E2D7B7EB}},
        {"Gouraud",
         {0x25C355A4E22350AF, 0x1ED7B4BD9DA6D913, 0xA951BFA711B0587A, 0xF0183124AB9FF9A9,
          0x37AB244E947EC53F}},
        {"textured",
         {0x23C069172303A4C9, 0x79596F9AB18E8A67, 0xD327141770561685, 0x7C60D36C84407E5F,
          0xCB9E16AB3184DBE9}},
        {"textured Gouraud",
         {0xDA48C6077744DCCC, 0x79596F9AB18E8A67, 0xF56EFA7AEC90FBB2, 0x2606C3A704E4BFAF,
          0xCB9E16AB3184DBE9}},
        {"outline",
         {0x11335FA5DB909386, 0x58209EDE33DB2309, 0x3D768B91E48F52B7, 0x2F306579D0482529,
          0xD630BCB4A0064BA3}},
    };
    // Texels all different, as far as 15 bits go, and some transparent.
    Texture texture(24, 20);
    for (std::size_t i = 0; i < texture.texels.size(); ++i)
        texture.texels[i] =
            static_cast<Rgb555>((i * 67 + 5) % 32768 | (i % 7 == 0 ? 0 : opaqueBit));
    for (const Row& row : rows) {
        const auto engine = makeEngine();
        engine->settings.fillPath = GetParam();
        std::minstd_rand random(11);
        std::array<std::uint64_t, std::size(modeFlags)> pictures;
        pictures.fill(14695981039346656037u);
        for (int round = 0; round < 1500; ++round) {
            const ScreenQuad quad = randomQuad(random);
            const std::size_t mode = random() % std::size(modeFlags);
            std::uint32_t flags = modeFlags[mode];
            if (random() % 3 == 0) flags |= meshMode;
            if (random() % 2 == 0) flags |= useLight;
            flags |= random() & (flipHorizontal | flipVertical);
            const int level = static_cast<int>(random() % 33) - 16;
            const int texelLevel = (flags & useLight) != 0 ? level : 16;
            const auto colour = static_cast<Rgb555>(random() & 0x7FFF);
            std::array<Rgb555, 4> gouraud;
            for (Rgb555& g : gouraud) g = static_cast<Rgb555>(random() & 0x7FFF);
            engine->settings.light = randomLight(random);
            clearSurface(engine->surface, background);
            switch (&row - rows) {
            case 0: fillFlat(*engine, quad, colour, level, flags); break;
            case 1: fillGouraud(*engine, quad, colour, gouraud, flags); break;
            case 2: fillTextured(*engine, quad, texture.slot, texelLevel, flags); break;
            case 3: fillTexturedGouraud(*engine, quad, texture.slot, gouraud, flags); break;
            case 4: drawOutline(engine->surface, quad, colour); break;
            }
            addPixels(pictures[mode], engine->surface);
        }
        EXPECT_EQ(pictures, row.pictures) << row.filler;
    }
}

/// The paths on scenes of all kinds of polygons, drawn over each other: textures of many shapes,
/// whole and with holes, surfaces that cut the polygons, and small cells met again.
TEST(Rasteriser, EveryPathDrawsTheSameScenes)
{
    const auto plain = makeEngine(), vector = makeEngine();
    std::minstd_rand random(5);
    const auto one = [&](auto... of) {
        const std::array<int, sizeof...(of)> choices{of...};
        return choices[random() % choices.size()];
    };
    for (int scene = 0; scene < 300; ++scene) {
        std::vector<Texture> textures;
        for (int i = 0; i < 4; ++i) {
            textures.emplace_back(static_cast<std::uint16_t>(one(1, 8, 13, 64, 64, 256, 300)),
                                  static_cast<std::uint16_t>(one(1, 8, 20, 64, 64, 256, 300)));
            const bool holes = random() % 2 == 0;
            for (Rgb555& texel : textures.back().texels)
                texel = static_cast<Rgb555>((random() & 0x7FFF) |
                                            (holes && random() % 4 == 0 ? 0 : opaqueBit));
        }
        const Light light = randomLight(random);
        const std::int32_t columns = one(4, 32, width, 640), rows = one(9, height, 489);
        for (Engine* engine : {plain.get(), vector.get()}) {
            engine->settings.light = light;
            engine->settings.countsWrites = scene % 8 == 7;
            setSurfaceSize(engine->surface, columns, rows);
            clearSurface(engine->surface, background);
            resetFrame(*engine);
        }
        plain->settings.fillPath = FillPath::plain;
        vector->settings.fillPath = FillPath::vector;
        for (int i = 0; i < 40; ++i) {
            ScreenQuad quad = randomQuad(random);
            const auto over = [&](std::int32_t size, std::int32_t usual) { // all of the surface
                return size <= usual ? 0 : static_cast<std::int32_t>(random()) % (size - usual);
            };
            const ScreenPoint moved{over(columns, width), over(rows, height)};
            const bool sliver = random() % 10 == 0; // taller than any surface
            for (std::size_t c = 0; c < 4; ++c) {
                quad[c].x = sliver ? quad[0].x + one(0, 1, 2, 4) : quad[c].x;
                if (sliver) quad[c].y += (c < 2 ? -1 : 1) * one(70, 1100, 4000);
                quad[c] = {quad[c].x + moved.x, quad[c].y + moved.y};
            }
            std::uint32_t flags = modeFlags[random() % std::size(modeFlags)];
            flags |= random() & (flipHorizontal | flipVertical | useLight | meshMode);
            const int level = (flags & useLight) != 0 ? static_cast<int>(random() % 33) - 16 : 16;
            const auto colour = static_cast<Rgb555>(random() & 0x7FFF);
            std::array<Rgb555, 4> gouraud;
            for (Rgb555& g : gouraud) g = static_cast<Rgb555>(random() & 0x7FFF);
            const TextureSlot& texture = textures[random() % textures.size()].slot;
            const int filler = one(0, 1, 2, 2, 3, 3);
            for (Engine* engine : {plain.get(), vector.get()}) switch (filler) {
                case 0: fillFlat(*engine, quad, colour, level, flags); break;
                case 1: fillGouraud(*engine, quad, colour, gouraud, flags); break;
                case 2: fillTextured(*engine, quad, texture, level, flags); break;
                case 3: fillTexturedGouraud(*engine, quad, texture, gouraud, flags); break;
                }
        }
        for (std::size_t i = 0; i < plain->surface.pixelCount(); ++i)
            ASSERT_EQ(plain->surface.pixels()[i], vector->surface.pixels()[i])
                << "scene " << scene << ", pixel " << i;
    }
}

TEST(Rasteriser, CountsAsOftenAsShadowHalves)
{
    const auto engine = makeEngine();
    Texture texture(64, 64);
    std::fill(texture.texels.begin(), texture.texels.end(), Rgb555{0xFFFF});
    std::minstd_rand random(3);
    int most = 0;
    for (int round = 0; round < 200; ++round) {
        const ScreenQuad quad = randomQuad(random);
        const std::uint32_t mesh = round % 3 == 0 ? std::uint32_t{meshMode} : 0;
        const auto fill = [&](Rgb555 before, std::uint32_t flags) {
            clearSurface(engine->surface, before);
            if (round % 2 == 0)
                fillTextured(*engine, quad, texture.slot, 16, flags | mesh);
            else
                fillGouraud(*engine, quad, 0, {}, flags | mesh);
            const Rgb555* pixels = engine->surface.pixels();
            return std::vector<Rgb555>(pixels, pixels + engine->surface.pixelCount());
        };
        const auto halved = fill(31, shadowMode);
        engine->settings.countsWrites = true;
        const auto counted = fill(0, 0);
        engine->settings.countsWrites = false;
        for (std::size_t i = 0; i < halved.size(); ++i) {
            ASSERT_EQ(31 >> std::min<int>(counted[i], 5), halved[i]) << round;
            most = std::max<int>(most, counted[i]);
        }
    }
    EXPECT_GT(most, 5) << "more than white can be halved";
}

TEST(Rasteriser, CornersMillionsOfPixelsAwayAreCutWithoutHarm)
{
    const auto engine = makeEngine();
    constexpr std::int32_t far = 1 << 28;
    Texture texture(8, 8);
    std::fill(texture.texels.begin(), texture.texels.end(), Rgb555{0xFFFF});
    const ScreenQuad around{{{-far, -far}, {far, -far}, {far, far}, {-far, far}}};
    fillFlat(*engine, around, 0x1234, 0, 0);
    EXPECT_EQ(engine->surface.at(0, 0), 0x1234);
    EXPECT_EQ(engine->surface.at(width - 1, height - 1), 0x1234);
    fillTextured(*engine, around, texture.slot, 16, 0);
    EXPECT_EQ(engine->surface.at(width / 2, height / 2), 0xFFFF);
    fillGouraud(*engine, around, 0, {}, 0);
    fillTexturedGouraud(*engine, around, texture.slot, {}, 0);
    drawOutline(engine->surface, around, 0);
    drawLine(engine->surface, {-far, -far + 7}, {far, far}, 0x7C00);
    drawLine(engine->surface, {far, 3}, {2, -far}, 0x7C00);
}

TEST(Rasteriser, LargeTexturesSqueezedIntoAFewPixelsAreNeverReadBeyondTheirEnd)
{
    // Triangles whose spans begin thousands of texels outside, where a coordinate is rounded most.
    struct Case {
        std::array<float, 2> size;
        std::array<TriangleCorner<2>, 3> corner;
    };
    constexpr float b = coordinateBias;
    const Case cases[] = {
        {{16383, 257},
         {{{{602, 282}, {1 - b, 128 + b}},
           {{607, 274}, {8192 - b, 193 - b}},
           {{606, 279}, {16383 - b, 193 - b}}}}},
        {{16383, 16384},
         {{{{490, 107}, {16383 - b, 16384 - b}},
           {{483, 108}, {4095 + b, 1 - b}},
           {{491, 105}, {4095 + b, 1 - b}}}}},
        {{1000, 8192},
         {{{{285, 396}, {750 - b, 1 - b}},
           {{287, 375}, {750 - b, 2048 + b}},
           {{289, 378}, {500 + b, 8192 - b}}}}},
        {{16384, 1},
         {{{{550, 242}, {1 - b, 1 - b}},
           {{552, 251}, {4096 + b, b}},
           {{555, 246}, {16384 - b, 1 - b}}}}},
    };
    const auto engine = makeEngine();
    setSurfaceSize(engine->surface, 640, 489);
    for (const Case& c : cases) {
        int beyond = 0;
        const CountingSource source{c.size, &beyond};
        const SpanEnds ends = spanEndsOf(*engine);
        fillTriangle<PixelMode::replace, false>(engine->surface.rows(), ends, c.corner, source);
        fillTriangle<PixelMode::replace, true>(engine->surface.rows(), ends, c.corner, source);
        EXPECT_EQ(beyond, 0) << c.size[0] << " x " << c.size[1];
    }
}

} // namespace facetor
