#include "view/view_gestures.h"

#include "view/visit_points.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace facetor {

namespace {

constexpr ClientSize client{640, 480};

/// The start-up cube of edge 100, out of the origin, fitted and turned a little.
struct Scene {
    Model model;
    Engine engine;
    View view;

    explicit Scene(bool perspective)
    {
        EXPECT_EQ(createModelStore(model), Message::none);
        EXPECT_EQ(startEngine(engine), Message::none);
        for (std::uint32_t i = 0; i < 8; ++i) model.vertices[i].x += 300;
        startView(view, engine);
        view.perspective = perspective;
        fitModel(view, engine, model, client);
        engine.stack.current() = view.viewMatrix;
        translate(engine.stack, 300, 0, 0);
        rotateXYZ(engine.stack, 3000, 5000, 0);
        translate(engine.stack, -300, 0, 0);
        view.viewMatrix = engine.stack.current();
        listFrame(view, engine, model, client);
    }

    ScreenPoint onScreen(Vector3 point) const
    {
        return projectPoint(engine.settings, transformPoint(point, view.viewMatrix));
    }

    /// The smallest rectangle around the model's points on the screen.
    InclusiveRectangle outline()
    {
        InclusiveRectangle box{100000, 100000, -100000, -100000};
        engine.stack.current() = view.viewMatrix;
        visitPoints(engine, model, [&](const Vector3& point) {
            const ScreenPoint p = projectPoint(engine.settings, point);
            box = {std::min(box.left, p.x), std::min(box.top, p.y), std::max(box.right, p.x),
                   std::max(box.bottom, p.y)};
        });
        return box;
    }

    float depth(ScreenPoint at)
    {
        listFrame(view, engine, model, client);
        sortPolygons(engine);
        return depthAt(view, engine, model, at);
    }

    void zoom(ScreenPoint at, float factor, int times)
    {
        for (int i = 0; i < times; ++i) zoomAt(view, engine, model, at, depth(at), factor);
    }

    std::uint32_t listed()
    {
        listFrame(view, engine, model, client);
        return engine.entryCount;
    }
};

} // namespace

TEST(ViewGestures, ZoomingAndMovingKeepWhatIsUnderTheCursor)
{
    for (const bool perspective : {true, false}) {
        SCOPED_TRACE(perspective);
        Scene scene(perspective);
        const InclusiveRectangle before = scene.outline();
        const std::uint32_t listed = scene.listed();
        const Vector3 point{310, 10, -50}; // of the side that faces the camera
        ScreenPoint cursor = scene.onScreen(point);
        panView(scene.view, scene.engine, scene.depth(cursor), 37, -20);
        EXPECT_NEAR(scene.onScreen(point).x, cursor.x + 37, 1);
        EXPECT_NEAR(scene.onScreen(point).y, cursor.y - 20, 1);
        cursor = scene.onScreen(point);
        scene.zoom(cursor, 1.25f, 3);
        EXPECT_NEAR(scene.onScreen(point).x, cursor.x, 2);
        EXPECT_NEAR(scene.onScreen(point).y, cursor.y, 2);
        EXPECT_GT(scene.listed(), 0u) << "it is not dropped for being near";
        EXPECT_GT(scene.outline().right - scene.outline().left, 1.7 * (before.right - before.left));
        scene.zoom(cursor, 0.8f, 200);
        EXPECT_GT(scene.outline().right, scene.outline().left) << "it does not vanish";
        EXPECT_GE(scene.listed(), listed);
        scene.zoom({1, 1}, 1.25f, 200); // beside it
        EXPECT_GT(scene.outline().right, scene.outline().left);
    }
}

TEST(ViewGestures, FramingFillsTheWindowAndTurnsAboutTheMiddle)
{
    for (const bool perspective : {true, false})
        for (const Framed framed : {Framed::model, Framed::picked}) {
            Scene scene(perspective);
            const std::uint32_t listed = scene.listed();
            panView(scene.view, scene.engine, 700, 5000, 0);
            EXPECT_FALSE(frameView(scene.view, scene.engine, scene.model, client, Framed::picked));
            for (std::uint32_t i = 0; i < 6; ++i) scene.model.attributes[i].flags |= picked;
            ASSERT_TRUE(frameView(scene.view, scene.engine, scene.model, client, framed));
            const InclusiveRectangle box = scene.outline();
            EXPECT_GT(box.bottom - box.top, 300);
            EXPECT_TRUE(box.left >= 0 && box.right < 640 && box.top >= 28 && box.bottom < 456);
            EXPECT_NEAR((box.left + box.right) / 2, 320, 12);
            EXPECT_EQ(scene.listed(), listed);
            ASSERT_TRUE(scene.view.turnCentre);
            EXPECT_NEAR(scene.view.turnCentre->x, 300, 0.01f);
        }
}

} // namespace facetor
