#include "engine/rasteriser.h"

#include "engine/reference_fill.h"
#include "engine/triangle_fill.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <string>

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

void expectSame(const Engine& engine, const test::ReferencePicture& reference,
                std::int64_t& compared, std::int64_t& ambiguous)
{
    for (std::size_t i = 0; i < reference.pixel.size(); ++i) {
        if (reference.ambiguous[i]) {
            ++ambiguous;
            continue;
        }
        ++compared;
        // Bit 15 is unused on the surface.
        ASSERT_EQ(engine.surface.pixels()[i] & 0x7FFF, reference.pixel[i] & 0x7FFF)
            << "x " << i % width << ", row " << i / width;
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
    std::array<float, 2> limit;
    int* beyond;

    template <PixelMode mode> void pixel(const std::array<std::int32_t, 2>& at, Rgb555&) const
    {
        for (std::size_t c = 0; c < 2; ++c)
            if (at[c] < 0 || static_cast<float>(at[c]) >= limit[c]) ++*beyond;
    }
};

/// Every filler on thousands of random polygons, in every mode, against the plain version.
class FillersAgree : public testing::TestWithParam<const char*> {};

TEST_P(FillersAgree, WithThePlainVersionInEveryMode)
{
    const std::string filler = GetParam();
    const auto engine = makeEngine();
    std::minstd_rand random(11);
    // Texels all different, as far as 15 bits go, and some transparent.
    Texture texture(24, 20);
    for (std::size_t i = 0; i < texture.texels.size(); ++i)
        texture.texels[i] =
            static_cast<Rgb555>((i * 67 + 5) % 32768 | (i % 7 == 0 ? 0 : opaqueBit));
    std::int64_t compared = 0, ambiguous = 0;
    for (int round = 0; round < 1500; ++round) {
        const ScreenQuad quad = randomQuad(random);
        std::uint32_t flags = modeFlags[random() % std::size(modeFlags)];
        if (random() % 3 == 0) flags |= meshMode;
        if (random() % 2 == 0) flags |= useLight;
        flags |= random() & (flipHorizontal | flipVertical);
        const int level = static_cast<int>(random() % 33) - 16;
        const auto colour = static_cast<Rgb555>(random() & 0x7FFF);
        std::array<Rgb555, 4> gouraud;
        for (Rgb555& g : gouraud) g = static_cast<Rgb555>(random() & 0x7FFF);
        engine->settings.light = randomLight(random);
        const Light& light = engine->settings.light;
        clearSurface(engine->surface, background);
        test::ReferencePicture reference(width, height, background);
        if (filler == "Flat") {
            fillFlat(*engine, quad, colour, level, flags);
            test::referenceFlat(reference, light, quad, colour, level, flags);
        } else if (filler == "Gouraud") {
            fillGouraud(*engine, quad, colour, gouraud, flags);
            test::referenceGouraud(reference, light, quad, colour, gouraud, flags);
        } else if (filler == "Textured") {
            fillTextured(*engine, quad, texture.slot, (flags & useLight) != 0 ? level : 16, flags);
            test::referenceTextured(reference, light, quad, texture.slot, level, flags);
        } else {
            fillTexturedGouraud(*engine, quad, texture.slot, gouraud, flags);
            test::referenceTexturedGouraud(reference, light, quad, texture.slot, gouraud, flags);
        }
        SCOPED_TRACE(testing::Message()
                     << "round " << round << " flags " << std::hex << flags << std::dec << " quad "
                     << quad[0].x << "," << quad[0].y << " " << quad[1].x << "," << quad[1].y << " "
                     << quad[2].x << "," << quad[2].y << " " << quad[3].x << "," << quad[3].y);
        expectSame(*engine, reference, compared, ambiguous);
        if (HasFatalFailure()) return;
    }
    EXPECT_GT(compared, 20 * ambiguous) << "the comparison leaves too much out";
}

INSTANTIATE_TEST_SUITE_P(Rasteriser, FillersAgree,
                         testing::Values("Flat", "Gouraud", "Textured", "TexturedGouraud"),
                         [](const auto& values) { return std::string(values.param); });

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
        fillTriangle<PixelMode::replace, false>(engine->surface, ends, c.corner, source);
        fillTriangle<PixelMode::replace, true>(engine->surface, ends, c.corner, source);
        EXPECT_EQ(beyond, 0) << c.size[0] << " x " << c.size[1];
    }
}

TEST(Rasteriser, LinesAreThePixelsNearestToTheirSlopeAlsoFromFarOff)
{
    std::minstd_rand random(5);
    const auto engine = makeEngine();
    for (int round = 0; round < 400; ++round) {
        const auto within = [&](std::int32_t reach) {
            const auto offset = [&] {
                return static_cast<std::int32_t>(random() % static_cast<unsigned>(2 * reach)) -
                       reach;
            };
            return ScreenPoint{width / 2 + offset(), height / 2 + offset()};
        };
        ScreenPoint a = within(30), b = within(100);
        if (round % 2 == 0) { // far beyond two sides, and through the surface
            const ScreenPoint through = a;
            a = within(40000);
            b = {2 * through.x - a.x + round % 7, 2 * through.y - a.y};
        }
        clearSurface(engine->surface, background);
        drawLine(engine->surface, a, b, 0x7FFF);
        std::vector<Rgb555> expected(std::size_t{width} * height, background);
        // Step i of the longer axis belongs to i shorter / longer across, a half being one more.
        const std::int64_t dx = std::abs(b.x - a.x), dy = std::abs(b.y - a.y);
        const std::int64_t longer = std::max<std::int64_t>({dx, dy, 1});
        for (std::int64_t i = 0; i <= std::max(dx, dy); ++i) {
            const std::int64_t x =
                a.x + (b.x < a.x ? -1 : 1) * ((2 * i * dx + longer) / (2 * longer));
            const std::int64_t y =
                a.y + (b.y < a.y ? -1 : 1) * ((2 * i * dy + longer) / (2 * longer));
            if (x >= 0 && x < width && y >= 0 && y < height)
                expected[static_cast<std::size_t>((height - 1 - y) * width + x)] = 0x7FFF;
        }
        const Rgb555* drawn = engine->surface.pixels();
        ASSERT_TRUE(std::equal(expected.begin(), expected.end(), drawn))
            << a.x << "," << a.y << " to " << b.x << "," << b.y;
    }
}

TEST(Rasteriser, AnOutlinesEdgesRunFromTheCornersZeroAndTwo)
{
    // Each edge has a step half-way between two pixels, which shows where it was begun.
    const auto engine = makeEngine();
    drawOutline(engine->surface, {{{10, 10}, {12, 11}, {14, 12}, {13, 14}}}, 0x7FFF);
    struct Case {
        const char* edge;
        ScreenPoint drawn, ifTurnedAbout;
    };
    for (const Case& c : {Case{"0-1", {11, 11}, {11, 10}}, Case{"0-3", {12, 12}, {11, 12}},
                          Case{"2-1", {13, 11}, {13, 12}}, Case{"2-3", {13, 13}, {14, 13}}}) {
        EXPECT_EQ(engine->surface.at(c.drawn.x, c.drawn.y), 0x7FFF) << c.edge;
        EXPECT_EQ(engine->surface.at(c.ifTurnedAbout.x, c.ifTurnedAbout.y), background) << c.edge;
    }
}

TEST(Rasteriser, ClearingFillsTheWholeSurfaceAndNothingBehindIt)
{
    const auto engine = makeEngine();
    FrameSurface& surface = engine->surface;
    for (const ScreenPoint size : {ScreenPoint{4, 1}, {12, 7}, {64, 47}}) {
        setSurfaceSize(surface, width, height);
        clearSurface(surface, background);
        setSurfaceSize(surface, size.x, size.y);
        clearSurface(surface, 0x1234);
        const std::ptrdiff_t cleared = std::ptrdiff_t{size.x} * size.y;
        EXPECT_EQ(std::count(surface.pixels(), surface.pixels() + width * height, 0x1234), cleared);
        EXPECT_EQ(surface.pixels()[cleared - 1], 0x1234);
    }
}

} // namespace facetor
