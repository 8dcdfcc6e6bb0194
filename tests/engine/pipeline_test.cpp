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
