#include "engine/rasteriser.h"

#include "engine/reference_fill.h"

#include <gtest/gtest.h>

#include <cmath>
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

TEST(Rasteriser, APolygonPartlyOffTheSurfaceIsCutAtItsEdge)
{
    const auto engine = makeEngine();
    fillFlat(*engine, {{{-10, 5}, {3, 5}, {3, 8}, {-10, 8}}}, 0x7FFF, 0, 0);
    for (std::int32_t y = 0; y < height; ++y)
        for (std::int32_t x = 0; x < width; ++x) {
            const bool inside = x <= 3 && y >= 5 && y <= 8;
            ASSERT_EQ(engine->surface.at(x, y), inside ? 0x7FFF : background) << x << " " << y;
        }
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

TEST(Rasteriser, MeshParitiesOfFlatAndTexturedFillsAreOpposite)
{
    const auto engine = makeEngine();
    Texture texture(8, 8);
    std::fill(texture.texels.begin(), texture.texels.end(), Rgb555{0xFFFF});
    const ScreenQuad all{{{0, 0}, {63, 0}, {63, 47}, {0, 47}}};
    fillFlat(*engine, all, 0x001F, 0, meshMode);
    fillTextured(*engine, all, texture.slot, 16, meshMode);
    for (std::int32_t y = 0; y < height; ++y)
        for (std::int32_t x = 0; x < width; ++x) {
            const std::int32_t row = height - 1 - y;
            ASSERT_EQ(engine->surface.at(x, y), (x & 1) == (row & 1) ? 0x001F : 0xFFFF);
        }
}

TEST(Rasteriser, FlipsShowTheTexelsOfTheirCorners)
{
    // The texel at each corner of the polygon, by flip: 0 none, 1 horizontal, 2 vertical, 3 both.
    Texture texture(16, 8);
    for (std::size_t i = 0; i < texture.texels.size(); ++i)
        texture.texels[i] = static_cast<Rgb555>(opaqueBit | i);
    const auto texel = [&](int u, int v) {
        return texture.texels[static_cast<std::size_t>(v * 16 + u)];
    };
    const ScreenQuad quad{{{2, 2}, {58, 2}, {58, 44}, {2, 44}}};
    for (std::uint32_t flip = 0; flip < 4; ++flip) {
        const auto engine = makeEngine();
        fillTextured(*engine, quad, texture.slot, 16, flip);
        const int u = (flip & 1) != 0 ? 15 : 0, v = (flip & 2) != 0 ? 7 : 0;
        EXPECT_EQ(engine->surface.at(2, 2), texel(u, v)) << flip;
        EXPECT_EQ(engine->surface.at(58, 2), texel(15 - u, v)) << flip;
        EXPECT_EQ(engine->surface.at(58, 44), texel(15 - u, 7 - v)) << flip;
        EXPECT_EQ(engine->surface.at(2, 44), texel(u, 7 - v)) << flip;
    }
}

TEST(Rasteriser, LinesReachBothEndsAndStayWithinOnePixelOfTheirSlope)
{
    std::minstd_rand random(5);
    for (int round = 0; round < 300; ++round) {
        const auto engine = makeEngine();
        const auto anywhere = [&] {
            return ScreenPoint{static_cast<std::int32_t>(random() % 100) - 18,
                               static_cast<std::int32_t>(random() % 80) - 16};
        };
        const ScreenPoint a = anywhere(), b = anywhere();
        drawLine(engine->surface, a, b, 0x7FFF);
        const std::int32_t longer = std::max(std::abs(b.x - a.x), std::abs(b.y - a.y));
        int drawn = 0, expected = 0;
        for (std::int32_t y = 0; y < height; ++y)
            for (std::int32_t x = 0; x < width; ++x) drawn += engine->surface.at(x, y) == 0x7FFF;
        for (std::int32_t i = 0; i <= longer; ++i) {
            const double t = longer == 0 ? 0 : double(i) / longer;
            const double x = a.x + t * (b.x - a.x), y = a.y + t * (b.y - a.y);
            bool found = false, inside = false;
            for (const double dx : {-0.5, 0.5})
                for (const double dy : {-0.5, 0.5}) {
                    const auto px = static_cast<std::int32_t>(std::floor(x + dx + 0.5));
                    const auto py = static_cast<std::int32_t>(std::floor(y + dy + 0.5));
                    if (px < 0 || px >= width || py < 0 || py >= height) continue;
                    inside = true;
                    found = found || engine->surface.at(px, py) == 0x7FFF;
                }
            const bool wellInside = x > 1 && x < width - 2 && y > 1 && y < height - 2;
            expected += wellInside;
            if (inside && wellInside) {
                ASSERT_TRUE(found) << "at step " << i;
            }
        }
        EXPECT_GE(drawn, expected);
        EXPECT_LE(drawn, longer + 1);
    }
}

} // namespace facetor
