#include "slice/slice_placement.h"

#include <gtest/gtest.h>

namespace facetor {

namespace {

using Sides = std::array<std::int32_t, 4>;

Sides sidesOf(const InclusiveRectangle& r)
{
    return {r.left, r.top, r.right, r.bottom};
}

TEST(SlicePlacement, StartsInTheMiddleOfTheViewWithThePicturesProportions)
{
    EXPECT_EQ(sidesOf(startPlacement({640, 480}, 256, 256)), (Sides{200, 120, 440, 360}));
    EXPECT_EQ(sidesOf(startPlacement({640, 480}, 256, 64)), (Sides{160, 200, 480, 280}));
    EXPECT_EQ(sidesOf(startPlacement({640, 480}, 8, 256)), (Sides{316, 120, 323, 360}));
    EXPECT_EQ(sidesOf(startPlacement({2000, 1000}, 320, 244)), (Sides{160, 122, 480, 366}))
        << "the view shows 640 x 489 pixels at most";
    for (const ClientSize tiny : {ClientSize{0, 0}, {1, 1}, {3, 900}}) {
        const InclusiveRectangle r = startPlacement(tiny, 256, 1);
        EXPECT_LT(r.left, r.right);
        EXPECT_LT(r.top, r.bottom);
    }
}

TEST(SlicePlacement, EdgesAndCornersAreTakenAFewPixelsToEitherSide)
{
    const InclusiveRectangle place{100, 100, 200, 160};
    const std::tuple<ScreenPoint, unsigned> cases[] = {
        {{150, 130}, placementInside},
        {{96, 130}, placementLeft},
        {{104, 130}, placementLeft},
        {{95, 130}, 0},
        {{150, 164}, placementBottom},
        {{150, 165}, 0},
        {{203, 97}, placementRight | placementTop},
        {{99, 161}, placementLeft | placementBottom},
    };
    for (const auto& [point, sides] : cases)
        EXPECT_EQ(placementSidesAt(place, point), sides) << point.x << ", " << point.y;
    EXPECT_EQ(placementSidesAt({100, 100, 104, 160}, {102, 130}), unsigned{placementRight})
        << "a narrow one can be made wider";
}

TEST(SlicePlacement, DragsMoveOrSizeItAndNeverTurnItAboutOrLoseIt)
{
    const InclusiveRectangle place{100, 100, 200, 160};
    const ClientSize client{640, 480};
    const auto dragged = [&](unsigned sides, int dx, int dy) {
        return sidesOf(draggedPlacement(place, sides, dx, dy, client));
    };
    EXPECT_EQ(dragged(placementInside, 5, -7), (Sides{105, 93, 205, 153}));
    EXPECT_EQ(dragged(placementRight, 5, -7), (Sides{100, 100, 205, 160}));
    EXPECT_EQ(dragged(placementLeft | placementTop, 500, 500), (Sides{192, 152, 200, 160}));
    EXPECT_EQ(dragged(placementBottom, 0, -500), (Sides{100, 100, 200, 108}));
    EXPECT_EQ(dragged(placementInside, -500, 9000), (Sides{-50, 450, 50, 510}));
}

} // namespace

} // namespace facetor
