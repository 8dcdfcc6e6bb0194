#include "base/text.h"

#include <gtest/gtest.h>

#include <limits>

namespace facetor {
namespace {

TEST(PathText, IsCutAtItsLastPoint)
{
    struct Row {
        std::string_view path, cut, extension;
    };
    const Row rows[] = {
        {"ship.mx3", "ship", "mx3"},
        {"a.b.MX3", "a.b", "MX3"},
        {"ship", "ship", ""},
        {"ship.", "ship", ""},
        {".mx3", "", "mx3"},
        {"old.dir/ship", "old", "dir/ship"},
        {"", "", ""},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(cutExtension(row.path), row.cut) << row.path;
        EXPECT_EQ(extensionOf(row.path), row.extension) << row.path;
    }
}

TEST(PathText, ComparesAsciiWithoutCase)
{
    EXPECT_TRUE(equalIgnoringCase("MX3", "mx3"));
    EXPECT_TRUE(equalIgnoringCase("", ""));
    EXPECT_FALSE(equalIgnoringCase("mx3", "mx"));
    EXPECT_FALSE(equalIgnoringCase("mx3", "mxt"));
    EXPECT_FALSE(equalIgnoringCase("[", "{")) << "no letters, though they differ by the case bit";
}

TEST(FormatShortest, GivesTheFewestDigitsThatReadBack)
{
    EXPECT_EQ(formatShortest(0.1f), "0.1");
    EXPECT_EQ(formatShortest(1.0f), "1");
    EXPECT_EQ(formatShortest(-0.0f), "-0");
    EXPECT_EQ(formatShortest(16777217.0f), "16777216");
    EXPECT_EQ(formatShortest(0.005493f), "0.005493");
    EXPECT_EQ(formatShortest(std::numeric_limits<float>::max()), "3.4028235e+38");
    EXPECT_EQ(formatShortest(std::numeric_limits<float>::denorm_min()), "1e-45");
}

TEST(CutText, KeepsCharactersWhole)
{
    EXPECT_EQ(cutText("ab\xC3\xA9", 4), "ab\xC3\xA9");
    EXPECT_EQ(cutText("\xE3\x81\x82\xF0\x9F\x98\x80", 6), "\xE3\x81\x82");
    EXPECT_EQ(cutText("\x80\x80\x80\x80\x80\x80", 5), "\x80\x80\x80\x80\x80") << "no UTF-8";
}

} // namespace
} // namespace facetor
