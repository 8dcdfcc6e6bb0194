#include "engine/engine.h"

#include "engine/rasteriser.h"
#include "engine/trigonometry.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <random>

namespace facetor {

namespace {

constexpr float notANumber = std::numeric_limits<float>::quiet_NaN();

/// An engine and a model of one object whose polygons a test gives in view space.
struct Frame {
    Model model;
    Engine engine;
    std::uint32_t vertexCount = 0, polygonCount = 0;

    Frame()
    {
        EXPECT_EQ(createModelStore(model), Message::none);
        EXPECT_EQ(startEngine(engine), Message::none);
        setSurfaceSize(engine.surface, 640, 480);
        clearSurface(engine.surface, 0);
    }

    PolygonAttribute& add(const std::array<Vertex, 4>& corners, Vector3 normal = {0, 0, -1})
    {
        Polygon& polygon = model.polygons[polygonCount];
        polygon.normal = normal;
        for (std::size_t i = 0; i < 4; ++i) {
            model.vertices[vertexCount] = corners[i];
            model.vertexNormals[vertexCount] = {0, 0, -1};
            polygon.corner[i] = static_cast<std::uint16_t>(vertexCount++);
        }
        PolygonAttribute& attribute = model.attributes[polygonCount];
        attribute = {0, sortCentre, 0, 0x7FFF, polygonFace, polygonCount};
        ++polygonCount;
        return attribute;
    }

    /// A square of the given half edge about (x, y) at depth z.
    PolygonAttribute& addSquare(float x, float y, float z, float half)
    {
        return add({{{x - half, y - half, z},
                     {x + half, y - half, z},
                     {x + half, y + half, z},
                     {x - half, y + half, z}}});
    }

    void list()
    {
        model.meshes[0] = {0, vertexCount, 0, polygonCount, 0, 0};
        resetFrame(engine);
        putMesh(engine, model, 0);
        sortPolygons(engine);
    }

    void draw()
    {
        list();
        drawPolygons(engine, model);
    }
};

} // namespace

TEST(Pipeline, DepthTestKeepsTheScreenPlaneAndTheFarLimitItself)
{
    const auto keeps = [](float z, std::uint32_t flags) {
        Frame frame;
        frame.addSquare(0, 0, z, 1).flags |= flags;
        frame.list();
        return frame.engine.entryCount == 1;
    };
    const Frame frame;
    const float focal = frame.engine.settings.focalLength;
    EXPECT_NEAR(focal, 320.0f, 0.2f);
    EXPECT_TRUE(keeps(focal, 0));
    EXPECT_FALSE(keeps(std::nextafter(focal, 0.0f), 0));
    EXPECT_TRUE(keeps(std::nextafter(focal, 0.0f), nearClip));
    EXPECT_TRUE(keeps(1.0f, nearClip));
    float farthest = 32767.0f + focal;
    while (farthest - focal > 32767.0f) farthest = std::nextafter(farthest, 0.0f);
    while (std::nextafter(farthest, 1e9f) - focal <= 32767.0f)
        farthest = std::nextafter(farthest, 1e9f);
    EXPECT_TRUE(keeps(farthest, 0));
    EXPECT_FALSE(keeps(std::nextafter(farthest, 1e9f), 0));
    EXPECT_FALSE(keeps(std::nextafter(farthest, 1e9f), nearClip));
}

TEST(Pipeline, ProjectionTruncatesTowardZeroAndClampsNearPoints)
{
    Frame frame;
    EngineSettings& settings = frame.engine.settings;
    const float focal = settings.focalLength;
    const auto x = [&](float px, float z) { return projectPoint(settings, {px, 0, z}).x - 320; };
    EXPECT_EQ(x(1.9f, focal), 1);
    EXPECT_EQ(x(-1.9f, focal), -1);
    EXPECT_EQ(x(5, 40), x(5, 10));
    EXPECT_EQ(x(5, 40), x(5, -1e9f));
    EXPECT_EQ(x(5, 40), static_cast<std::int32_t>(5 * (focal / 40.0f)));
    EXPECT_NE(x(50, 40), x(50, 41));
    settings.drawFlags = drawParallel;
    EXPECT_EQ(x(-7.9f, 12345), -7);
    // What no screen can hold stays finite, and differences of it fit 32 bits.
    for (const float huge : {1e30f, -1e30f, notANumber, std::numeric_limits<float>::infinity()})
        EXPECT_LE(std::abs(x(huge, huge)), 1 << 28);
}

TEST(Pipeline, OnlyPolygonsWithAllCornersOutsideAreDropped)
{
    struct Case {
        const char* reason;
        std::array<Vertex, 4> corner; // parallel projection about the centre: pixels
        bool kept;
    };
    const Case cases[] = {
        {"a corner on the right edge of the window is inside",
         {{{320, 0, 400}, {400, 0, 400}, {400, 9, 400}, {330, 9, 400}}},
         true},
        {"one pixel further right all are outside",
         {{{321, 0, 400}, {400, 0, 400}, {400, 9, 400}, {330, 9, 400}}},
         false},
        {"outside on different sides, though it covers the screen",
         {{{-900, -900, 400}, {900, -900, 400}, {900, 900, 400}, {-900, 900, 400}}},
         false},
    };
    for (const Case& c : cases) {
        Frame frame;
        frame.engine.settings.drawFlags = drawParallel;
        frame.add(c.corner);
        frame.list();
        EXPECT_EQ(frame.engine.entryCount == 1, c.kept) << c.reason;
    }
}

TEST(Pipeline, BackFacesAreDroppedUnlessDoubleSided)
{
    struct Case {
        const char* reason;
        Vector3 normal;
        std::uint32_t drawFlags;
        std::uint16_t plane;
        bool kept;
    };
    const Case cases[] = {
        {"towards the camera", {0, 0, -1}, 0, 0, true},
        {"away from it", {0, 0, 1}, 0, 0, false},
        {"away, but double-sided", {0, 0, 1}, 0, 1, true},
        {"only bit 0 makes it double-sided", {0, 0, 1}, 0, 2, false},
        {"perspective goes by the line of sight", {0.9f, 0, 0.43f}, 0, 0, true},
        {"parallel goes by the normal's z", {0.9f, 0, 0.43f}, drawParallel, 0, false},
        {"just below the limit", {0, 0, 0.0009f}, drawParallel, 0, true},
        {"at the limit", {0, 0, 0.001f}, drawParallel, 0, false},
    };
    for (const Case& c : cases) {
        Frame frame;
        frame.engine.settings.drawFlags = c.drawFlags;
        PolygonAttribute& attribute = frame.add(
            {{{-301, -1, 400}, {-299, -1, 400}, {-299, 1, 400}, {-301, 1, 400}}}, c.normal);
        attribute.plane = c.plane;
        frame.list();
        EXPECT_EQ(frame.engine.entryCount == 1, c.kept) << c.reason;
    }
}

TEST(Pipeline, SortPointsFollowTheAttributeAndItsTieRules)
{
    struct Case {
        const char* reason;
        std::uint16_t sort;
        std::array<float, 4> z;
        Vector3 expected; // corners lie at x 1, 2, 3, 4
    };
    const Case cases[] = {
        {"the mean for any other value", 7, {400, 402, 404, 406}, {2.5f, 0, 403}},
        {"nearest", sortNearest, {405, 404, 403, 409}, {3, 0, 403}},
        {"nearest: 0 wins over an equal 1", sortNearest, {400, 400, 401, 401}, {1, 0, 400}},
        {"nearest: 2 wins over equal 0", sortNearest, {400, 400, 400, 401}, {3, 0, 400}},
        {"nearest: 3 wins over all equal", sortNearest, {400, 400, 400, 400}, {4, 0, 400}},
        {"farthest: later ones win", sortFarthest, {400, 400, 400, 400}, {4, 0, 400}},
        {"farthest: 1 wins over an equal 0", sortFarthest, {400, 400, 399, 399}, {2, 0, 400}},
    };
    for (const Case& c : cases) {
        // Parallel projection keeps the polygon; with a normal across x the back-face test of
        // perspective would tell the x of the sort point, so the depth and that test are observed.
        for (const float limit : {-0.5f, 0.5f}) {
            Frame frame;
            std::array<Vertex, 4> corner;
            for (std::size_t i = 0; i < 4; ++i) corner[i] = {static_cast<float>(i + 1), 0, c.z[i]};
            // dot(normal, sort point) = x - (expected x + limit) z / expected z
            frame.add(corner, {1, 0, -(c.expected.x + limit) / c.expected.z}).sort = c.sort;
            frame.list();
            EXPECT_EQ(frame.engine.entryCount, limit > 0 ? 1u : 0u) << c.reason;
            if (frame.engine.entryCount == 1) {
                EXPECT_FLOAT_EQ(frame.engine.entries[0].depth,
                                c.expected.z - frame.engine.settings.focalLength)
                    << c.reason;
            }
        }
    }
}

TEST(Pipeline, TheListRunsFromFarToNearForFewAndForManyPolygons)
{
    for (const int count : {2, 100, 1000}) {
        Frame frame;
        frame.engine.settings.drawFlags = drawParallel;
        std::minstd_rand random(1);
        for (int i = 0; i < count; ++i)
            frame.addSquare(0, 0, static_cast<float>(random() % 60000) - 28000.5f, 5).flags |=
                nearClip;
        frame.list();
        ASSERT_GT(frame.engine.entryCount, static_cast<std::uint32_t>(count) / 2);
        std::vector<bool> seen(frame.engine.entryCount, false);
        float previous = std::numeric_limits<float>::infinity();
        for (std::uint32_t i = 0; i < frame.engine.entryCount; ++i) {
            const std::uint32_t entry = frame.engine.sortList[i];
            EXPECT_LE(frame.engine.entries[entry].depth, previous);
            previous = frame.engine.entries[entry].depth;
            EXPECT_FALSE(seen[entry]);
            seen[entry] = true;
        }
    }
}

TEST(Pipeline, LightLevelsTruncateAndEveryFillerUsesItsOwnIndex)
{
    Light light;
    light.direction = {0, 0, 1};
    EXPECT_EQ(lightLevel(light, {0, 0, -5}, Facing::front), 16);
    EXPECT_EQ(lightLevel(light, {0, 0, -5}, Facing::back), -16);
    EXPECT_EQ(lightLevel(light, {0, 0.8f, -0.6f}, Facing::front), 9); // 9.6
    EXPECT_EQ(lightLevel(light, {0, 0.8f, 0.6f}, Facing::front), -9);
    EXPECT_EQ(lightLevel(light, {notANumber, 0, 1}, Facing::front), -16);

    const Rgb555 grey = rgb555(10, 20, 30);
    EXPECT_EQ(litColour(light, grey, 4, colourLightIndex), rgb555(14, 24, 31));
    EXPECT_EQ(litColour(light, grey, 4, texelLightIndex), rgb555(6, 16, 26));
    EXPECT_EQ(litColour(light, grey, -16, texelLightIndex), rgb555(0, 0, 6));
    setLightColour(light, rgb555(31, 21, 0));
    setAmbientColour(light, rgb555(0, 0, 3));
    EXPECT_EQ(litColour(light, grey, 0, colourLightIndex), rgb555(10, 10, 3));
    TexelLightCache cache;
    for (int level = -16; level <= 16; ++level)
        for (const Rgb555 texel : {grey, Rgb555{0xFFFF}, Rgb555{0}})
            EXPECT_EQ(texelLight(cache, light, level).lit(texel),
                      litColour(light, texel, level, texelLightIndex));
    setLightColour(light, 0x7FFF); // the cache follows the light
    EXPECT_EQ(texelLight(cache, light, 8).lit(grey), grey);
}

/// The colour in the middle of a square that faces the camera squarely, lit from the front at level
/// 8 (a direction of half the length) unless it is turned about.
TEST(Pipeline, EachKindOfPolygonIsDrawnByItsFiller)
{
    const Rgb555 colour = rgb555(8, 16, 4);
    std::array<Rgb555, 4> texels;
    texels.fill(static_cast<Rgb555>(opaqueBit | rgb555(20, 10, 5)));
    const TextureSlot texture{2, 2, texels.data()};
    struct Case {
        const char* reason;
        std::uint32_t flags, drawFlags;
        float normalZ; // 1: seen from behind, and double-sided
        Rgb555 expected;
    };
    const Case cases[] = {
        {"unlit", polygonFace, 0, -1, colour},
        {"lit", polygonFace | useLight, 0, -1, rgb555(16, 24, 12)},
        {"lit from behind its back", polygonFace | useLight, 0, 1, rgb555(16, 24, 12)},
        {"textured", textureMap, 0, -1, texels[0]},
        {"textured and lit: 8 darker than a flat fill", textureMap | useLight, 0, -1,
         rgb555(20, 10, 5)},
        {"half texels of an unlit polygon come out 8 brighter", textureMap | halfMode, 0, -1,
         rgb555(18, 13, 10)},
        {"half", polygonFace | halfMode, 0, -1, rgb555(4, 8, 2)},
        {"shadow wins and ignores the colour", polygonFace | shadowMode | halfMode, 0, -1, 0},
        {"Gouraud by the table", polygonFace | gouraudShading, 0, -1, rgb555(11, 19, 7)},
        {"Gouraud by the light", polygonFace | gouraudShading | useLight, 0, -1,
         rgb555(16, 24, 12)},
        {"Gouraud from behind turns the vertex normals about",
         polygonFace | gouraudShading | useLight, 0, 1, rgb555(0, 8, 0)},
        {"flat mode lights a back by its own normal", polygonFace | useLight, drawFlat, 1,
         rgb555(0, 8, 0)},
        {"textured Gouraud is not lit twice", textureMap | gouraudShading | useLight, 0, -1,
         static_cast<Rgb555>(opaqueBit | rgb555(28, 18, 13))},
        {"a polyline leaves its middle", polyLine, 0, -1, 0},
        {"wireframe too", polygonFace, drawWireframe, -1, 0},
        {"flat mode fills polylines, lit at 16", polyLine, drawFlat, -1, rgb555(24, 31, 20)},
        {"flat mode ignores textures", textureMap | useLight, drawFlat, -1, rgb555(16, 24, 12)},
        {"picked: the checkerboard of the picked colour", polygonFace | picked, 0, -1, 0x83E0},
    };
    for (const Case& c : cases) {
        Frame frame;
        frame.engine.settings.light.direction = {0, 0, 0.5f};
        frame.engine.settings.drawFlags = c.drawFlags;
        frame.engine.settings.textures = {&texture, 1};
        PolygonAttribute& attribute = frame.addSquare(0, 0, 400, 20);
        attribute.color = colour;
        attribute.flags = c.flags;
        attribute.plane = dualPlaneBit;
        frame.model.polygons[0].normal.z = c.normalZ;
        frame.model.gouraud[0].color.fill(rgb555(19, 19, 19));
        frame.draw();
        // Screen row 239 is surface row 240: even, as is column 320, so mesh fills write there.
        EXPECT_EQ(frame.engine.surface.at(320, 239), c.expected) << c.reason;
    }
}

TEST(Pipeline, APolygonWhoseNormalPointsAwayIsListedByItsLineOfSightButNotFilled)
{
    struct Case {
        const char* reason;
        std::uint16_t plane;
        std::uint32_t drawFlags;
        bool drawn;
    };
    for (const Case& c :
         {Case{"single-sided", 0, 0, false}, Case{"double-sided", dualPlaneBit, 0, true},
          Case{"flat mode does not ask", 0, drawFlat, true}}) {
        Frame frame;
        frame.engine.settings.drawFlags = c.drawFlags;
        frame
            .add({{{-310, -10, 400}, {-290, -10, 400}, {-290, 10, 400}, {-310, 10, 400}}},
                 {0.9f, 0, 0.43f})
            .plane = c.plane;
        frame.draw();
        ASSERT_EQ(frame.engine.entryCount, 1u);
        EXPECT_EQ(frame.engine.surface.at(80, 240) != 0, c.drawn) << c.reason;
    }
}

TEST(Pipeline, APickedPolygonShowsACheckerboardInsideAWholeOutline)
{
    Frame frame;
    PolygonAttribute& attribute = frame.addSquare(0, 0, 400, 20);
    attribute.flags |= picked;
    frame.draw();
    const auto [left, right] =
        std::minmax({frame.engine.entries[0].point[0].x, frame.engine.entries[0].point[1].x});
    const Rgb555 pickedColour = frame.engine.settings.pickedColour;
    for (std::int32_t x = left; x <= right; ++x) {
        const bool shown = x == left || x == right || x % 2 == 0; // row 240 of the surface is even
        EXPECT_EQ(frame.engine.surface.at(x, 239), shown ? pickedColour : attribute.color) << x;
    }
}

TEST(Pipeline, ATextureNumberBeyondTheTableIsDrawnUntextured)
{
    Frame frame;
    PolygonAttribute& attribute = frame.addSquare(0, 0, 400, 20);
    attribute.flags = textureMap;
    attribute.texture = 65535;
    frame.draw();
    EXPECT_EQ(frame.engine.surface.at(320, 240), attribute.color);
}

TEST(Pipeline, HiddenObjectsStillPlaceTheirChildren)
{
    Frame frame;
    frame.addSquare(0, 0, 0, 5);
    frame.list(); // fills mesh 0
    Model& model = frame.model;
    model.objectCount = 3;
    for (std::uint32_t i = 0; i < 3; ++i) {
        model.objects[i] = model.objects[0];
        model.objects[i].translation = {0, 0, 200};
        model.objects[i].mesh = 0;
    }
    model.objects[0].child = 1;
    model.objects[0].flags = 0;
    model.objects[1].child = 2;
    resetFrame(frame.engine);
    walkHierarchy(frame.engine, model, 0);
    ASSERT_EQ(frame.engine.entryCount, 2u); // objects 1 at z 400 and 2 at z 600
    EXPECT_FLOAT_EQ(frame.engine.entries[0].depth + frame.engine.settings.focalLength, 400);
    EXPECT_FLOAT_EQ(frame.engine.entries[1].depth + frame.engine.settings.focalLength, 600);
    EXPECT_EQ(frame.engine.stack.index, 0);
}

TEST(Pipeline, AMeshThatWouldOverrunTheFrameIsLeftOut)
{
    Frame frame;
    for (int i = 0; i < 1000; ++i) frame.addSquare(0, 0, 400, 5);
    frame.list();
    putMesh(frame.engine, frame.model, 0);
    EXPECT_EQ(frame.engine.entryCount, 1000u);
    EXPECT_EQ(frame.engine.vertexCount, 4000u);
}

TEST(Pipeline, OnlyVisiblePolygonsCountAgainstTheLimitOfAFrame)
{
    Frame frame;
    frame.addSquare(0, 0, 400, 5);
    frame.polygonCount = 3000;
    for (std::uint32_t i = 1; i < frame.polygonCount; ++i) {
        frame.model.polygons[i] = frame.model.polygons[0];
        frame.model.attributes[i] = frame.model.attributes[0];
        if (i % 2 == 1) frame.model.polygons[i].normal.z = 1;
    }
    frame.list();
    EXPECT_EQ(frame.engine.entryCount, 1500u);
    putMesh(frame.engine, frame.model, 0);
    EXPECT_EQ(frame.engine.entryCount, 3000u) << "6000 were seen";
    putMesh(frame.engine, frame.model, 0);
    EXPECT_EQ(frame.engine.entryCount, 4096u);
    EXPECT_EQ(frame.engine.polygonCount, 9000u);
}

TEST(Pipeline, TreesDeeperThanTheStackLeaveItBalanced)
{
    Frame frame;
    frame.addSquare(0, 0, 0, 1);
    frame.list();
    Model& model = frame.model;
    model.objectCount = 40;
    for (std::uint32_t i = 0; i < 40; ++i) {
        model.objects[i] = model.objects[0];
        model.objects[i].child = i + 1 < 40 ? i + 1 : noObject;
        model.objects[i].mesh = 0;
    }
    const Matrix before = frame.engine.stack.current();
    resetFrame(frame.engine);
    walkHierarchy(frame.engine, model, 0);
    EXPECT_EQ(frame.engine.stack.index, 0);
    EXPECT_EQ(frame.engine.stack.current().element, before.element);
}

} // namespace facetor
