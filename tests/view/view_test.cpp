#include "view/view.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>

namespace facetor {

namespace {

struct Editor {
    Model model;
    Engine engine;
    View view;

    Editor()
    {
        EXPECT_EQ(createModelStore(model), Message::none);
        EXPECT_EQ(startEngine(engine), Message::none);
        startView(view, engine);
    }

    void moveModel(float x, float y, float z, float size)
    {
        for (std::uint32_t i = 0; i < 8; ++i) {
            Vertex& v = model.vertices[i];
            v = {v.x * size + x, v.y * size + y, v.z * size + z};
        }
    }

    /// The smallest rectangle around all drawn pixels.
    ScreenRectangle drawn(ClientSize client)
    {
        view.frameNeedsDrawing = true;
        EXPECT_TRUE(paintFrame(view, engine, model, client));
        ScreenRectangle box{100000, 100000, -1, -1};
        const FrameSurface& surface = engine.surface;
        for (std::int32_t y = 0; y < surface.height; ++y)
            for (std::int32_t x = 0; x < surface.width; ++x)
                if (surface.at(x, y) != view.backgroundColour)
                    box = {std::min(box.left, x), std::min(box.top, y), std::max(box.right, x),
                           std::max(box.bottom, y)};
        return box;
    }
};

constexpr FixedView allViews[] = {FixedView::forward, FixedView::back, FixedView::left,
                                  FixedView::right,   FixedView::top,  FixedView::bottom};

} // namespace

TEST(View, StartsSevenHundredUnitsBeforeTheModel)
{
    const Editor editor;
    Matrix expected = identityMatrix;
    expected.element[14] = 700;
    EXPECT_EQ(editor.view.viewMatrix.element, expected.element);
}

TEST(View, AFittedModelIsCentredAndInsideFromEveryFixedView)
{
    // Around the origin, from a grain to a mountain: the view turns the model about its origin.
    for (const float size : {0.01f, 1.0f, 500.0f})
        for (const ClientSize client : {ClientSize{640, 480}, ClientSize{320, 400}}) {
            Editor editor;
            editor.moveModel(0, 0, 0, size);
            fitModel(editor.view, editor.engine, editor.model, client);
            for (const FixedView direction : allViews) {
                applyFixedView(editor.view, editor.engine, direction);
                const ScreenRectangle box = editor.drawn(client);
                SCOPED_TRACE(testing::Message() << "size " << size << ", width " << client.width
                                                << ", view " << static_cast<int>(direction));
                EXPECT_NEAR((box.left + box.right) / 2, client.width / 2, 3);
                EXPECT_NEAR((box.top + box.bottom) / 2, client.height / 2, 3);
                EXPECT_GT(box.right - box.left, client.width / 4);
                EXPECT_LT(box.right - box.left, client.width);
                EXPECT_LT(box.bottom - box.top, client.height);
                EXPECT_GT(editor.engine.entryCount, 0u) << "the depth test dropped it";
            }
        }
}

TEST(View, AFittedModelAwayFromItsOriginIsCentred)
{
    Editor editor;
    editor.moveModel(1200, -700, 90, 1);
    editor.view.modelRotation = {100, 200, 300};
    fitModel(editor.view, editor.engine, editor.model, {640, 480});
    EXPECT_NEAR(editor.view.modelCentre.x, 1200, 0.5);
    EXPECT_NEAR(editor.view.modelCentre.y, -700, 0.5);
    EXPECT_NEAR(editor.view.modelCentre.z, 90, 0.5);
    EXPECT_EQ(editor.view.modelRotation, (std::array<Angle, 3>{}));
    const ScreenRectangle box = editor.drawn({640, 480});
    EXPECT_NEAR((box.left + box.right) / 2, 320, 2);
    EXPECT_NEAR((box.top + box.bottom) / 2, 240, 2);
}

TEST(View, FittingWhatHasNoUsableExtentLeavesAUsableView)
{
    const float infinity = std::numeric_limits<float>::infinity();
    struct Case {
        const char* reason;
        float size, x;
        std::uint32_t objects;
    };
    for (const Case& c : {Case{"a single point", 0, 5, 1}, Case{"no object", 1, 0, 0},
                          Case{"no finite point", 1, infinity, 1},
                          Case{"points too far apart for a single", 1e37f, 0, 1}}) {
        Editor editor;
        editor.moveModel(c.x, 0, 0, c.size);
        editor.model.objectCount = c.objects;
        fitModel(editor.view, editor.engine, editor.model, {640, 480});
        EXPECT_TRUE(std::isfinite(editor.view.viewScale) && editor.view.viewScale > 0) << c.reason;
        editor.view.frameNeedsDrawing = true;
        EXPECT_TRUE(paintFrame(editor.view, editor.engine, editor.model, {640, 480})) << c.reason;
    }
}

TEST(View, FixedViewsTurnToTheSideThatTheyName)
{
    // The start-up cube's faces: white towards -z, red +x, green +z, blue -x, yellow -y, cyan +y;
    // y grows downwards on the screen.
    struct Case {
        FixedView direction;
        int red, green, blue; // which components the colour of the side in view has
    };
    for (const Case& c : {Case{FixedView::forward, 1, 1, 1}, Case{FixedView::back, 0, 1, 0},
                          Case{FixedView::left, 0, 0, 1}, Case{FixedView::right, 1, 0, 0},
                          Case{FixedView::top, 1, 1, 0}, Case{FixedView::bottom, 0, 1, 1}}) {
        Editor editor;
        editor.view.lightColour = 0x7FFF;
        fitModel(editor.view, editor.engine, editor.model, {640, 480});
        for (std::uint32_t i = 0; i < 6; ++i)
            editor.model.attributes[i].flags &= ~std::uint32_t{useLight};
        applyFixedView(editor.view, editor.engine, c.direction);
        (void)editor.drawn({640, 480});
        const Rgb555 pixel = editor.engine.surface.at(320, 240);
        EXPECT_EQ(pixel & 0x7FFF, rgb555(31 * c.red, 31 * c.green, 31 * c.blue))
            << static_cast<int>(c.direction);
    }
}

TEST(View, FixedViewsTurnByAnglesOneUnitShortAndNeverAboutZ)
{
    struct Case {
        FixedView direction;
        std::array<Angle, 3> angles;
    };
    for (const Case& c :
         {Case{FixedView::forward, {0, 0, 0}}, Case{FixedView::back, {0, 32767, 0}},
          Case{FixedView::left, {0, -16383, 0}}, Case{FixedView::right, {0, 16383, 0}},
          Case{FixedView::top, {16383, 0, 0}}, Case{FixedView::bottom, {-16383, 0, 0}}}) {
        Editor editor;
        editor.view.viewDirection = {1, 2, 3};
        applyFixedView(editor.view, editor.engine, c.direction);
        EXPECT_EQ(editor.view.viewDirection, c.angles) << static_cast<int>(c.direction);
    }
}

TEST(View, TheViewMatrixPlacesAPointByItsPartsInTheirOrder)
{
    Editor editor;
    View& view = editor.view;
    view.cameraPosition = {1, 2, 300};
    view.modelCentre = {10, 20, 30};
    view.viewScale = 2;
    view.modelRotation = {0, 0, 16384};
    view.viewDirection = {16384, 0, 0};
    buildViewMatrix(view, editor.engine, ViewDirectionUse::apply);
    // Scaled, turned about x (y to z), then about z (x to y), less twice the centre, and the
    // camera.
    const Vector3 point = transformPoint({1, 10, 100}, view.viewMatrix);
    EXPECT_NEAR(point.x, 200 - 20 + 1, 0.1);
    EXPECT_NEAR(point.y, 2 - 40 + 2, 0.1);
    EXPECT_NEAR(point.z, 20 - 60 + 300, 0.1);
    buildViewMatrix(view, editor.engine, ViewDirectionUse::ignore);
    const Vector3 unturned = transformPoint({1, 10, 100}, view.viewMatrix);
    EXPECT_NEAR(unturned.x, -20 - 20 + 1, 0.1);
    EXPECT_NEAR(unturned.y, 2 - 40 + 2, 0.1);
    EXPECT_NEAR(unturned.z, 200 - 60 + 300, 0.1);
}

TEST(View, OnlyADragIsDrawnInTheDragDrawMode)
{
    Editor editor;
    fitModel(editor.view, editor.engine, editor.model, {640, 480});
    EXPECT_EQ(editor.view.dragDrawMode, DragDrawMode::wire);
    struct Case {
        bool dragging;
        DragDrawMode mode;
        std::uint32_t flags;
    };
    // In this order, each takes the flag of the one before back.
    for (const Case& c :
         {Case{true, DragDrawMode::wire, drawWireframe}, Case{true, DragDrawMode::flat, drawFlat},
          Case{true, DragDrawMode::full, 0}, Case{true, DragDrawMode::flat, drawFlat},
          Case{false, DragDrawMode::flat, 0}, Case{false, DragDrawMode::wire, 0}}) {
        editor.view.dragging = c.dragging;
        editor.view.dragDrawMode = c.mode;
        (void)editor.drawn({640, 480});
        EXPECT_EQ(editor.engine.settings.drawFlags, c.flags)
            << c.dragging << " " << static_cast<int>(c.mode);
    }
}

TEST(View, ANewFitForgetsTheFixedDirection)
{
    Editor editor;
    fitModel(editor.view, editor.engine, editor.model, {640, 480});
    const Matrix fitted = editor.view.viewMatrix;
    applyFixedView(editor.view, editor.engine, FixedView::top);
    EXPECT_NE(editor.view.viewMatrix.element, fitted.element);
    fitModel(editor.view, editor.engine, editor.model, {640, 480});
    EXPECT_EQ(editor.view.viewMatrix.element, fitted.element);
}

TEST(View, TheSurfaceFollowsTheClientAreaUpToItsLargestSize)
{
    Editor editor;
    struct Case {
        ClientSize client;
        std::int32_t width, height;
    };
    for (const Case& c : {Case{{637, 300}, 636, 300}, Case{{2000, 2000}, 640, 489},
                          Case{{0, 0}, 4, 1}, Case{{639, 480}, 636, 480}}) {
        (void)editor.drawn(c.client);
        EXPECT_EQ(editor.engine.surface.width, c.width);
        EXPECT_EQ(editor.engine.surface.height, c.height);
        EXPECT_EQ(editor.engine.surface.header().imageSize,
                  static_cast<std::uint32_t>(c.width * c.height * 2));
    }
    EXPECT_EQ(editor.engine.settings.centre.x, 319); // of the client area, not of the surface
}

TEST(View, ManyRequestsForANewFrameDrawItOnce)
{
    Editor editor;
    EXPECT_TRUE(paintFrame(editor.view, editor.engine, editor.model, {640, 480}));
    EXPECT_FALSE(paintFrame(editor.view, editor.engine, editor.model, {640, 480}));
}

} // namespace facetor
