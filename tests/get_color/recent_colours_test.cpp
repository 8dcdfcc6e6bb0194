#include "get_color/recent_colours.h"

#include <gtest/gtest.h>

#include <vector>

namespace facetor {

namespace {

std::vector<Rgb555> list(const RecentColours& recent)
{
    const auto used = inUse(recent);
    return {used.begin(), used.end()};
}

TEST(RecentColours, TheNewestIsFirstAndEachIsThereOnce)
{
    RecentColours recent;
    for (const Rgb555 colour : {1, 2, 3, 0x8002}) remember(recent, colour);
    EXPECT_EQ(list(recent), (std::vector<Rgb555>{2, 3, 1}));
    for (Rgb555 colour = 100; colour < 114; ++colour) remember(recent, colour);
    EXPECT_EQ(list(recent).size(), 16u);
    EXPECT_EQ(list(recent).front(), 113);
    EXPECT_EQ(list(recent).back(), 3) << "1 is the oldest";
    remember(recent, 3);
    EXPECT_EQ(list(recent).front(), 3);
    EXPECT_EQ(list(recent).back(), 2);
}

TEST(RecentColours, AWrongCountIsNotBelieved)
{
    RecentColours recent;
    recent.count = 0xFFFFFFFF;
    EXPECT_EQ(list(recent).size(), 16u);
    remember(recent, 5);
    EXPECT_EQ(list(recent).size(), 16u);
    EXPECT_EQ(list(recent).front(), 5);
}

} // namespace

} // namespace facetor
