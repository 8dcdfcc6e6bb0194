#include "view/view_settings.h"

#include <gtest/gtest.h>

#include <cmath>

namespace facetor {

TEST(ViewSettings, ACameraComesBackOnlyWhenItWasStored)
{
    View view;
    EXPECT_FALSE(recallCamera(view, 1));
    view.viewMatrix.element[12] = 5;
    storeCamera(view, 1);
    view.viewMatrix = identityMatrix;
    EXPECT_FALSE(recallCamera(view, 0));
    EXPECT_TRUE(recallCamera(view, 1));
    EXPECT_EQ(view.viewMatrix.element[12], 5);
}

TEST(ViewSettings, EverySliderPositionShowsAgain)
{
    EXPECT_EQ(viewAngleOf(9), 16383);
    for (int position = leastSliderPosition; position <= mostSliderPosition; ++position)
        EXPECT_EQ(sliderPosition(viewAngleOf(position)), position);
    EXPECT_EQ(sliderPosition(defaultViewAngle), 9);
}

TEST(ViewSettings, APickedLightPointShowsWhereItWasPicked)
{
    const LightPicker picker{{8, 8, 108, 108}};
    for (const ScreenPoint point : {ScreenPoint{58, 58}, ScreenPoint{40, 58}, ScreenPoint{58, 80},
                                    ScreenPoint{70, 45}, ScreenPoint{33, 83}}) {
        const Vector3 fore = lightDirection(picker, point, LightSide::fore);
        const Vector3 back = lightDirection(picker, point, LightSide::back);
        EXPECT_NEAR(std::hypot(fore.x, fore.y, fore.z), 1, 1e-5);
        EXPECT_EQ(fore.z, -back.z);
        EXPECT_EQ(fore.x, back.x);
        EXPECT_EQ(fore.x > 0, point.x < 58) << "a point on the left is light towards the right";
    }
    // The start direction is shown up to the left, and half way to the rim picks a slope of 45
    // degrees.
    const ScreenPoint start = lightPoint(picker, {0.577f, 0.577f, 0.577f});
    EXPECT_EQ(start.x, 58 - 20);
    EXPECT_EQ(start.y, 58 - 20);
    const Vector3 slope = lightDirection(picker, {33, 58}, LightSide::fore);
    EXPECT_NEAR(slope.x, slope.z, 1e-5);
    // Straight ahead and along one axis are no divisions by zero.
    EXPECT_EQ(lightPoint(picker, {0, 0, 1}).x, 58);
    EXPECT_EQ(lightPoint(picker, {0, -0.6f, 0.8f}).y, 58 + 40);
}

} // namespace facetor
