#include "base/file.h"
#include "base/single_precision.h"
#include "model/model_file.h"
#include "output/model_source.h"
#include "output/source_names.h"
#include "output/source_text.h"
#include "output/target_image.h"
#include "output/texture_source.h"
#include "texture/texture_file.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdio>
#include <random>

namespace facetor {

namespace {

std::uint64_t hashOf(const Bytes& bytes)
{
    std::uint64_t hash = 14695981039346656037u;
    for (const std::byte byte : bytes)
        hash = (hash ^ std::to_integer<std::uint64_t>(byte)) * 1099511628211u;
    return hash;
}

std::uint32_t u32At(const Bytes& image, std::size_t offset)
{
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < 4; ++i)
        value = value << 8 | std::to_integer<std::uint32_t>(image.at(offset + i));
    return value;
}

} // namespace

/// The four files of each sample: of the small one as they stood when a reader of its own had found
/// every number in its place, in the folder golden; of the others the hashes, taken at the same
/// time. After a change that is meant, `facetor-cli convert` with the former and the new program
/// shows it.
TEST(Exports, OfTheSamplesAreTheirGoldenFiles)
{
    const SinglePrecision single;
    const struct {
        std::string name;
        std::array<std::uint64_t, 4> hashes; ///< none where golden files stand
    } samples[] = {
        {"prop", {}},
        {"ship", {0x4EA7A5EE308E84AE, 0x3D0773A4FE59CA77, 0xE52B62A549C3FC35, 0x5D101ECC3DF6C76F}},
        {"max", {0x31C139739BD7BD0C, 0xDF0D2CE314623223, 0xAE69C4240DA12B37, 0xA9CB7709F08D5215}},
    };
    Model model;
    TextureList list;
    ASSERT_EQ(createModelStore(model), Message::none);
    ASSERT_EQ(list.create(), Message::none);
    for (const auto& [name, hashes] : samples) {
        ASSERT_EQ(readModelFile(model, "samples/" + name + ".mx3"), Message::none);
        list.clearAll();
        ASSERT_EQ(readTextureFile(list, "samples/" + name + ".mxt"), Message::none);
        Bytes textures;
        ASSERT_EQ(formatTextureImage(textures, list), Message::none);
        const Bytes files[] = {bytesOf(formatModelSource(model, name + ".mdl").view()),
                               formatModelImage(model, 0.37f),
                               bytesOf(formatTextureSource(list, name + ".txr").view()), textures};
        const char* const ends[] = {".mdl", ".sal", ".txr", "-textures.sal"};
        for (std::size_t i = 0; i < 4; ++i) {
            if (hashes[i] == 0)
                EXPECT_TRUE(readFile("tests/output/golden/" + name + ends[i]) == files[i])
                    << ends[i];
            else
                EXPECT_EQ(hashOf(files[i]), hashes[i]) << name << ends[i];
        }
    }
}

TEST(Exports, OfWhatNoSampleHolds)
{
    Model model;
    ASSERT_EQ(createModelStore(model), Message::none);
    model.objects[0].translation = {40000.0f, -1e30f, std::nanf("")};
    model.objects[0].child = 1; // there is none
    model.objects[0].next = 0x12345678;
    const Bytes image = formatModelImage(model, 1.0f);
    const std::size_t entry =
        8 + 48 + 8 + 4 + 8; // behind the blocks of the matrix and of the scale
    EXPECT_EQ(u32At(image, entry + 4), 0x7FFFFFFFu) << "the nearest number that fits";
    EXPECT_EQ(u32At(image, entry + 8), 0x80000000u);
    EXPECT_EQ(u32At(image, entry + 12), 0u);
    EXPECT_EQ(u32At(image, entry + 36), 0x060B0000u) << "the first object instead of none";
    EXPECT_EQ(u32At(image, entry + 40), 0x060B0000u);
    model.objectCount = model.totalPolygonCount = model.totalVertexCount = 0;
    EXPECT_EQ(formatModelImage(model, 1.0f).size(), 4u * 8 + 4) << "empty blocks";
    TextureList list;
    ASSERT_EQ(list.create(), Message::none);
    Bytes textures;
    EXPECT_EQ(formatTextureImage(textures, list), Message::texturesEmpty);
    EXPECT_EQ(writeTextureSource(list, "no/such/folder"), Message::texturesEmpty);

    const Bytes scene =
        formatSceneImage({{-1, 0.5f, 0}, rgb555(1, 2, 3), 8191, rgb555(4, 5, 6), rgb555(7, 8, 9)});
    using namespace std::string_view_literals;
    EXPECT_EQ(scene, bytesOf("\0\xF0\x02\x06\x0C\0\0\0\xFF\xFF\0\0\0\0\x80\0\0\0\0\0"
                             "\x0C\xF0\x02\x06\2\0\0\0\x8C\x41"
                             "\x10\xF0\x02\x06\2\0\0\0\x1F\xFF"
                             "\x14\xF0\x02\x06\2\0\0\0\x98\xA4"
                             "\xFE\xFF\xE7\x25\2\0\0\0\xA5\x07"sv));
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

TEST(SourceText, NamesBecomeDifferentIdentifiersAndLeaveCommentsWhole)
{
    const std::vector<std::string> given = {"left wing",   "left_wing", "left-wing",   "left_wing",
                                            "7*/\xC3\xA9", "",          "left_wing_2", "?"};
    EXPECT_EQ(toIdentifiers(given, SourceNames::asTheyAre), given);
    EXPECT_EQ(toIdentifiers(given, SourceNames::identifiers),
              (std::vector<std::string>{"left_wing_3", "left_wing", "left_wing_4", "left_wing_5",
                                        "7___", "", "left_wing_2", "_"}));
    EXPECT_EQ(toComment("a*/b/*/c\r\n\x7F#", SourceNames::identifiers), "a* /b/ * /c   #");
    EXPECT_EQ(fileTitle("C:\\models.old\\ship.mdl"), "ship.mdl");
    EXPECT_EQ(fileTitle(std::string(100, 'x')), std::string(64, 'x'));
}

} // namespace facetor
