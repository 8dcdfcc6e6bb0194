#include "session/window_place.h"

#include <gtest/gtest.h>

namespace facetor {

namespace {

TEST(WindowPlace, ARememberedPlaceIsMovedIntoTheScreen)
{
    constexpr WindowRectangle screen{-800, 0, 1280, 1024};
    constexpr WindowRectangle otherwise{1, 2, 3, 4};
    struct Case {
        const char* name;
        WindowRectangle remembered, restored;
    };
    const Case cases[] = {
        {"inside", {10, 20, 410, 320}, {10, 20, 410, 320}},
        {"on the left monitor", {-700, 20, -300, 320}, {-700, 20, -300, 320}},
        {"at the edges", {-800, 0, 1280, 1024}, {-800, 0, 1280, 1024}},
        {"beyond the left", {-1200, 20, -800, 320}, {-800, 20, -400, 320}},
        {"beyond the right and the bottom", {1200, 900, 1600, 1200}, {880, 724, 1280, 1024}},
        {"above", {10, -50, 410, 250}, {10, 0, 410, 300}},
        {"far away", {9000, 9000, 9400, 9300}, {880, 724, 1280, 1024}},
        {"larger than the screen", {-999, -999, 9999, 9999}, {-800, 0, 1280, 1024}},
        {"empty", {0, 0, 0, 0}, otherwise},
        {"without height", {10, 20, 410, 20}, otherwise},
        {"turned about", {410, 320, 10, 20}, otherwise},
    };
    for (const Case& current : cases)
        EXPECT_EQ(restoredPlace(current.remembered, screen, otherwise), current.restored)
            << current.name;
}

TEST(WindowPlace, NoMonitorWhereItWasBringsItToTheNearestOne)
{
    // Side by side, the right one smaller and lower: above and below it nothing is shown.
    Screen screen({0, 0, 2000, 1000});
    screen.monitors = {{0, 0, 1000, 1000}, {1000, 300, 2000, 900}};
    struct Case {
        const char* name;
        WindowRectangle remembered, restored;
    };
    for (const Case& c : {Case{"on the right one", {1200, 350, 1500, 650}, {1200, 350, 1500, 650}},
                          {"across both", {900, 310, 1300, 500}, {900, 310, 1300, 500}},
                          {"above it", {1500, 20, 1800, 200}, {1500, 300, 1800, 480}},
                          {"with a bit of it seen", {960, 10, 1400, 200}, {560, 10, 1000, 200}}})
        EXPECT_EQ(restoredPlace(c.remembered, screen, {}), c.restored) << c.name;
}

} // namespace

} // namespace facetor
