#include "app/window_place.h"

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

TEST(WindowPlace, AToolWindowKeepsItsSizeAndOpensBesideItsOwnerAtFirst)
{
    constexpr WindowRectangle screen{0, 0, 1280, 1024}, present{5, 5, 305, 205}, unknown{};
    constexpr WindowRectangle owner{100, 50, 600, 450}, wide{0, -4, 1280, 1000};
    EXPECT_EQ(toolWindowPlace({40, 60, 45, 65}, present, owner, screen),
              (WindowRectangle{40, 60, 340, 260}));
    EXPECT_EQ(toolWindowPlace(unknown, present, owner, screen),
              (WindowRectangle{600, 50, 900, 250}));
    EXPECT_EQ(toolWindowPlace(unknown, present, wide, screen),
              (WindowRectangle{980, 0, 1280, 200}));
    EXPECT_EQ(toolWindowPlace({9000, 60, 9005, 65}, present, owner, screen),
              (WindowRectangle{980, 60, 1280, 260}));
}

TEST(WindowPlace, AtFirstTheMainWindowStandsBesideTheToolBox)
{
    constexpr WindowRectangle toolBox{64, 64, 132, 178};
    EXPECT_EQ(firstPlace(650, 560, toolBox, {0, 0, 1920, 1040}),
              (WindowRectangle{140, 64, 790, 624}));
    EXPECT_EQ(firstPlace(650, 560, toolBox, {0, 0, 640, 480}), (WindowRectangle{0, 0, 640, 480}));
    EXPECT_EQ(firstPlace(650, 560, toolBox, {0, 30, 800, 600}),
              (WindowRectangle{140, 40, 790, 600}));
}

} // namespace

} // namespace facetor
