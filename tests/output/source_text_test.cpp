#include "output/source_text.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cmath>
#include <cstdio>
#include <limits>
#include <random>

namespace facetor {

namespace {

std::string fixed(float value)
{
    TextWriter text;
    appendFixed(text, value);
    return std::string(text.view());
}

} // namespace

TEST(SourceText, FixedNumbersHaveFourDecimalsRoundedHalfToEven)
{
    struct Case {
        float value;
        const char* text;
    };
    constexpr float infinity = std::numeric_limits<float>::infinity();
    const Case cases[] = {
        {0.0f, "  0.0000"},
        {-0.0f, " -0.0000"},
        {50.0f, " 50.0000"},
        {-50.0f, "-50.0000"},
        {-0.57735f, " -0.5774"},
        {12345.678f, " 12345.6777"},
        {0.03125f, "  0.0312"},
        {0.09375f, "  0.0938"}, // exactly half-way
        {-0.00001f, " -0.0000"},
        {99.99996f, " 100.0000"},
        {1e9f, " 1000000000.0000"},
        {-3.4028235e38f, "-340282346638528859811704183484516925440.0000"},
        {infinity, "  0.0000"},
        {-infinity, "  0.0000"},
        {std::nanf(""), "  0.0000"},
    };
    for (const Case& c : cases) EXPECT_EQ(fixed(c.value), c.text);
}

#if defined(__linux__)
// Where the C library formats exactly, it is what the numbers are defined by.
TEST(SourceText, FixedNumbersEqualTheCLibrarysOverMillionsOfValues)
{
    std::mt19937 random(1);
    std::array<char, 64> expected;
    const auto compare = [&](float value) {
        if (!std::isfinite(value)) return;
        TextWriter text(64);
        appendFixed(text, value);
        const int size =
            std::snprintf(expected.data(), expected.size(), "% 8.4f", static_cast<double>(value));
        ASSERT_EQ(text.view(), std::string_view(expected.data(), static_cast<std::size_t>(size)));
    };
    for (int i = 0; i < 1'000'000; ++i)
        compare(std::bit_cast<float>(static_cast<std::uint32_t>(random()))); // any bits
    for (int i = 0; i < 1'500'000; ++i)                                      // what models hold
        compare(static_cast<float>(static_cast<std::int32_t>(random()) >> (i % 24)) / 4096.0f);
    for (int i = -40000; i < 40000; ++i) compare(static_cast<float>(i) / 32.0f); // half-way often
}
#endif

TEST(SourceText, IntegersAreAligned)
{
    TextWriter numbers(1); // grows
    appendNumber(numbers, 7, 2);
    appendNumber(numbers, 4095, 3);
    appendNumber(numbers, 0);
    appendNumber(numbers, 4294967295u);
    EXPECT_EQ(numbers.view(), " 7409504294967295");
    TextWriter hexadecimal;
    appendHex16(hexadecimal, 0x1C3B);
    appendHex16(hexadecimal, 0xA);
    EXPECT_EQ(hexadecimal.view(), "0x1c3b0x000a");
}

TEST(SourceText, AFileTitleIsTheNameWithoutItsFolder)
{
    EXPECT_EQ(fileTitle("ship.mdl"), "ship.mdl");
    EXPECT_EQ(fileTitle("C:\\models.old\\ship.mdl"), "ship.mdl");
    EXPECT_EQ(fileTitle("/a.b/ship"), "ship");
    EXPECT_EQ(fileTitle(std::string(100, 'x')), std::string(64, 'x'));
}

} // namespace facetor
