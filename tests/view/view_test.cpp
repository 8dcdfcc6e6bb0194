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
    InclusiveRectangle drawn(ClientSize client)
    {
        view.frameNeedsDrawing = true;
        EXPECT_TRUE(paintFrame(view, engine, model, client));
        InclusiveRectangle box{100000, 100000, -1, -1};
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
                const InclusiveRectangle box = editor.drawn(client);
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

} // namespace facetor
