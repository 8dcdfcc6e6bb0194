#include "get_color/chosen_colour.h"

#include <gtest/gtest.h>

namespace facetor {

namespace {

TEST(ChosenColour, EveryColourComesBackFromHueSaturationAndValue)
{
    for (int colour = 0; colour < 0x8000; ++colour) {
        const Hsv hsv = toHsv(static_cast<Rgb555>(colour));
        ASSERT_EQ(toRgb555(hsv), colour);
        ASSERT_TRUE(hsv.hue >= 0 && hsv.hue < 1 && hsv.saturation <= 1 && hsv.value <= 1) << colour;
    }
}

TEST(ChosenColour, HueRunsFromRedOverGreenAndBlue)
{
    const struct {
        float hue;
        Rgb555 colour;
    } rows[] = {{0, 0x7C00},        {1 / 6.0f, 0x7FE0}, {2 / 6.0f, 0x03E0}, {3 / 6.0f, 0x03FF},
                {4 / 6.0f, 0x001F}, {5 / 6.0f, 0x7C1F}, {1, 0x7C00}};
    for (const auto& row : rows) EXPECT_EQ(toRgb555({row.hue, 1, 1}), row.colour) << row.hue;
    EXPECT_EQ(toRgb555({0.3f, 0, 16 / 31.0f}), rgb555(16, 16, 16));
    EXPECT_EQ(toRgb555({0.3f, 1, 0}), 0);
}

TEST(ChosenColour, AChannelIsSetAloneAndWithinItsSteps)
{
    EXPECT_EQ(withChannel(0x8000 | rgb555(1, 2, 3), Channel::red, 31), 0x8000 | rgb555(31, 2, 3));
    EXPECT_EQ(withChannel(rgb555(1, 2, 3), Channel::green, 99), rgb555(1, 31, 3));
    EXPECT_EQ(withChannel(rgb555(1, 2, 3), Channel::blue, -1), rgb555(1, 2, 0));
    EXPECT_EQ(channelOf(0xFFFF & ~rgb555(0, 31, 0), Channel::green), 0);
}

TEST(ChosenColour, AStepIsReadFromDigitsOnly)
{
    for (const char* text : {"", "-4", "1a", " 7", "+3"}) EXPECT_FALSE(parseStep(text)) << text;
    EXPECT_EQ(parseStep("07"), 7);
    EXPECT_EQ(parseStep("32"), 31);
    EXPECT_EQ(parseStep("99999999999999999999"), 31);
}

TEST(ChosenColour, GreyAndBlackKeepWhatTheUserChoseBefore)
{
    ChosenColour chosen;
    choose(chosen, 0x8000 | rgb555(0, 10, 20));
    EXPECT_EQ(chosen.colour, rgb555(0, 10, 20));
    const Hsv before = chosen.hsv;
    choose(chosen, rgb555(7, 7, 7));
    EXPECT_EQ(chosen.hsv.hue, before.hue);
    EXPECT_EQ(chosen.hsv.saturation, 0);
    choose(chosen, rgb555(0, 10, 20));
    choose(chosen, Hsv{chosen.hsv.hue, chosen.hsv.saturation, 0}); // dark, and bright again
    EXPECT_EQ(chosen.colour, 0);
    choose(chosen, Rgb555{0});
    choose(chosen, Hsv{chosen.hsv.hue, chosen.hsv.saturation, before.value});
    EXPECT_EQ(chosen.colour, rgb555(0, 10, 20));
}

} // namespace

} // namespace facetor
