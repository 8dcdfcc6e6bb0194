#include "texture/texture_rules.h"

#include "slice/slice.h"

#include <gtest/gtest.h>

namespace facetor {

namespace {

/// The message as the user reads it; empty for no fault.
std::string textOf(const std::optional<InputFault>& fault)
{
    return fault ? expandPlaceholders(catalogueText(fault->message), catalogueText(fault->word1),
                                      catalogueText(fault->word2))
                 : std::string();
}

TEST(TextureRules, WhatADialogRefusesIsSaid)
{
    const std::string multipleOf8 = "Width of Texture should be multiple of 8. ";
    EXPECT_EQ(textOf(extentFault({0, 0})), "");
    EXPECT_EQ(textOf(extentFault({0, 4096})), "");
    EXPECT_EQ(textOf(extentFault({0, 4097})), "Out of Polygons to edit!");
    EXPECT_EQ(textOf(extentFault({-1, 5})), "Out of Polygons to edit!");
    EXPECT_EQ(textOf(extentFault({6, 5})), "Data Error(\"From\">\"to\")");
    EXPECT_EQ(textOf(textureSizeFault(256, 256)), "");
    EXPECT_EQ(textOf(textureSizeFault(8, 1)), "");
    EXPECT_EQ(textOf(textureSizeFault(260, 1)), multipleOf8);
    EXPECT_EQ(textOf(textureSizeFault(264, 1)), "Out of Width to edit!");
    EXPECT_EQ(textOf(textureSizeFault(0, 1)), "Out of Width to edit!");
    EXPECT_EQ(textOf(textureSizeFault(-8, 1)), "Out of Width to edit!");
    EXPECT_EQ(textOf(textureSizeFault(8, 257)), "Out of Height to edit!");
    EXPECT_EQ(textOf(textureSizeFault(8, 0)), "Out of Height to edit!");

    SliceSettings settings;
    settings.chosenSlot = 3; // counts only where it is chosen
    EXPECT_EQ(textOf(sliceFault(settings, 3)), "");
    settings.appendix = SliceAppendix::chosen;
    EXPECT_EQ(textOf(sliceFault(settings, 3)), "Data Error(ID < CurrentID)");
    EXPECT_EQ(textOf(sliceFault(settings, 2)), "");
    settings.chosenSlot = 4096;
    EXPECT_EQ(textOf(sliceFault(settings, 2)), "Out of Polygons to edit!");
    settings.width = 12;
    EXPECT_EQ(textOf(sliceFault(settings, 2)), multipleOf8);
}

TEST(TextureRules, TheSizeButtonsStayWithinWhatATextureMayBe)
{
    const std::pair<TextureSize, TextureSize> doubled[] = {
        {{200, 3}, {256, 6}},
        {{16, 200}, {32, 256}},
        {{0, 0}, {8, 1}},
        {{12, 1}, {24, 2}},
        {{2147483647, -2147483647 - 1}, {256, 1}}};
    for (const auto& [from, to] : doubled) EXPECT_EQ(doubledSize(from), to) << from.width;
    EXPECT_EQ(halvedSize({12, 1}), (TextureSize{8, 1}));
    EXPECT_EQ(halvedSize({200, 5}), (TextureSize{96, 2}));
}

} // namespace

} // namespace facetor
