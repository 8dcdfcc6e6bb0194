#include "view/view_tools.h"

#include "model/model.h"

#include <gtest/gtest.h>

#include <cmath>

namespace facetor {

namespace {

/// A view of a model that was fitted away from its origin, and scaled.
struct Tools {
    Engine engine;
    View view;

    Tools()
    {
        EXPECT_EQ(startEngine(engine), Message::none);
        view.modelCentre = {40, -20, 10};
        view.viewScale = 2;
        buildViewMatrix(view, engine, ViewDirectionUse::ignore);
    }

    Vector3 seen(const Vector3& point) const { return transformPoint(point, view.viewMatrix); }

    void move(ViewTool tool, std::int32_t dx, std::int32_t dy, bool shift = false,
              ScreenPoint cursor = {400, 300})
    {
        applyViewTool(view, engine, tool, {dx, dy, cursor, shift});
    }
};

void expectNear(const Vector3& a, const Vector3& b, float tolerance)
{
    EXPECT_NEAR(a.x, b.x, tolerance);
    EXPECT_NEAR(a.y, b.y, tolerance);
    EXPECT_NEAR(a.z, b.z, tolerance);
}

} // namespace

TEST(ViewTools, RotatingTurnsAboutTheCentreTheWayTheMouseMoves)
{
    Tools tools;
    const Vector3 centre = tools.seen(tools.view.modelCentre);
    const Vector3 front{40, -20, -40}; // 50 before the centre, 100 when seen
    tools.move(ViewTool::rotateModel, 30, 0);
    expectNear(tools.seen(tools.view.modelCentre), centre, 0.01f);
    const Vector3 turned = tools.seen(front);
    EXPECT_NEAR(turned.x - centre.x, 100 * std::sin(30 * 3.14159265 / 180), 0.1); // to the right
    EXPECT_NEAR(turned.y - centre.y, 0, 0.1);
    Tools down;
    down.move(ViewTool::rotateModel, 0, 30);
    EXPECT_GT(down.seen(front).y - centre.y, 49);
    Tools both; // 3 + 4 pixels are 7 degrees
    both.move(ViewTool::rotateModel, 3, 4);
    const Vector3 moved = both.seen(front);
    EXPECT_NEAR(std::hypot(moved.x - centre.x, moved.y - centre.y),
                100 * std::sin(7 * 3.14159265 / 180), 0.1);
}

TEST(ViewTools, RotatingWithShiftGoesAroundTheOriginWithTheMouse)
{
    // The origin is seen up to the left of (320, 240) or so; around it, right of it down is
    // clockwise, below it left is clockwise. The screen's y grows downwards.
    struct Case {
        const char* reason;
        ScreenPoint cursor;
        std::int32_t dx, dy;
        bool clockwise;
    };
    const Case cases[] = {
        {"right of the origin, down", {600, 240}, 0, 9, true},
        {"right of the origin, up", {600, 240}, 0, -9, false},
        {"left of the origin, down", {20, 240}, 0, 9, false},
        {"below the origin, right", {320, 470}, 9, 0, false},
        {"below the origin, left", {320, 470}, -9, 0, true},
        {"above the origin, right", {320, 5}, 9, 0, true},
    };
    for (const Case& c : cases) {
        Tools tools;
        const Vector3 beside{60, -20, 10}; // right of the centre
        const float before = tools.seen(beside).y;
        tools.move(ViewTool::rotateModel, c.dx, c.dy, true, c.cursor);
        EXPECT_EQ(tools.seen(beside).y > before, c.clockwise) << c.reason;
        EXPECT_NEAR(tools.seen(beside).z, tools.seen(tools.view.modelCentre).z, 0.01) << c.reason;
    }
}

TEST(ViewTools, EveryMoveTranslatesByTenUnitsInItsDirection)
{
    for (const std::int32_t pixels : {1, 50}) {
        Tools tools;
        const Vector3 before = tools.seen({1, 2, 3});
        tools.move(ViewTool::rotateModel, 17, 31); // the direction is the screen's, not the model's
        const Vector3 start = tools.seen({1, 2, 3});
        tools.move(ViewTool::translateModel, pixels, 0);
        expectNear(tools.seen({1, 2, 3}), {start.x + 10, start.y, start.z}, 0.01f);
        tools.move(ViewTool::translateModel, 0, -pixels, true);
        expectNear(tools.seen({1, 2, 3}), {start.x + 10, start.y, start.z + 10}, 0.01f);
        EXPECT_NE(before.x, start.x);
    }
}

TEST(ViewTools, ScalingGoesByTheLongerOfTheTwoMoves)
{
    struct Case {
        std::int32_t dx, dy;
        float factor;
    };
    for (const Case& c : {Case{5, -3, 1.1f}, Case{-5, 3, 0.9f}, Case{2, -3, 0.9f},
                          Case{-2, 3, 1.1f}, Case{-4, 4, 0.9f}, Case{4, -4, 1.1f}}) {
        Tools tools;
        const Vector3 centre = tools.seen(tools.view.modelCentre);
        const float before = tools.seen({60, -20, 10}).x - centre.x;
        tools.move(ViewTool::scaleModel, c.dx, c.dy);
        EXPECT_NEAR(tools.seen({60, -20, 10}).x - centre.x, before * c.factor, 0.01f)
            << c.dx << " " << c.dy;
        expectNear(tools.seen(tools.view.modelCentre), centre, 0.01f);
    }
}

TEST(ViewTools, WithoutAMoveNothingChanges)
{
    for (const ViewTool tool : {ViewTool::rotateModel, ViewTool::translateModel,
                                ViewTool::scaleModel, ViewTool::selectPolygons}) {
        Tools tools;
        const Matrix before = tools.view.viewMatrix;
        tools.move(tool, 0, 0);
        EXPECT_EQ(tools.view.viewMatrix.element, before.element);
    }
}

} // namespace facetor
