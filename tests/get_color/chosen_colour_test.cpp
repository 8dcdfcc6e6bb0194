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

TEST(ChosenColour, AStepIsReadFromDigitsOnly)
{
    for (const char* text : {"", "-4", "1a", " 7", "+3"}) EXPECT_FALSE(parseStep(text)) << text;
    EXPECT_EQ(parseStep("07"), 7);
    EXPECT_EQ(parseStep("32"), 31);
    EXPECT_EQ(parseStep("99999999999999999999"), 31);
}

TEST(ChosenColour, AWordAndHexadecimalDigitsNameIt)
{
    EXPECT_EQ(formatWord(0x8000 | rgb555(1, 2, 31)), "045F");
    EXPECT_EQ(formatHex(rgb555(1, 2, 31)), "0810F8");
    for (const char* text : {"045F", "0x45f", "845F"})
        EXPECT_EQ(parseWord(text), rgb555(1, 2, 31)) << text;
    for (const char* text : {"0810F8", "#0F17ff", "0X810F8"})
        EXPECT_EQ(parseHex(text), rgb555(1, 2, 31)) << text;
    for (const char* text : {"", "0x", "-1", "4G", "12345", " 1"})
        EXPECT_FALSE(parseWord(text)) << text;
    EXPECT_FALSE(parseHex("1234567"));
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
