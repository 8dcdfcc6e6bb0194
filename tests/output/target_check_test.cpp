#include "output/target_check.h"

#include "output/target_budget.h"
#include "output/target_image.h"

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <optional>
#include <set>

namespace facetor {
namespace {

struct Document {
    Model model;
    TextureList list;

    Document()
    {
        EXPECT_EQ(createModelStore(model), Message::none);
        EXPECT_EQ(list.create(), Message::none);
    }

    void fill(std::uint32_t slot, std::uint16_t width, std::uint16_t height, std::uint32_t seed)
    {
        Texels texels;
        const std::size_t count = std::size_t{width} * height;
        ASSERT_TRUE(texels.allocate(count));
        for (std::size_t i = 0; i < count; ++i)
            texels.data()[i] = static_cast<Rgb555>(opaqueBit | ((seed + i) * 2654435761u >> 17));
        list.set(slot, width, height, std::move(texels));
    }
    void show(std::uint32_t polygon, std::uint16_t slot)
    {
        model.attributes[polygon].flags = textureMap;
        model.attributes[polygon].texture = slot;
    }
    /// Polygons after the cube's, of corners that the cube has.
    void addGouraud(std::uint32_t count)
    {
        for (std::uint32_t i = 0; i < count; ++i) {
            model.polygons[i] = model.polygons[0];
            model.attributes[i] = {0, 0, 0, 0, polygonFace | gouraudShading, i};
        }
        model.meshes[0].polygonCount = model.totalPolygonCount = count;
    }
    /// Makes the corners of polygon 0 lie at x, y and z.
    void place(const std::array<Vector3, 4>& corners)
    {
        for (std::size_t c = 0; c < 4; ++c)
            model.vertices[model.polygons[0].corner[c]] = corners[c];
        model.polygons[0].normal = computeFaceNormal(model.polygons[0], model.vertices.data());
    }
    /// Objects below each other, the lowest at a depth; with a mesh of their own or of object 0.
    void nest(std::uint32_t depth, std::optional<std::uint32_t> mesh = {})
    {
        for (std::uint32_t i = 1; i <= depth; ++i) {
            model.objects[i] = model.objects[0];
            model.objects[i].mesh = mesh.value_or(i);
            model.objects[i].child = noObject;
            model.meshes[i] = {8, 0, 6, 0, 6, 8};
            model.objects[i - 1].child = i;
            model.names[i] = defaultObjectName(i);
        }
        model.objectCount = depth + 1;
        assignDepths(model, 0, 0);
    }

    std::set<TargetCode> codes(float scale = 1) const
    {
        std::set<TargetCode> found;
        for (const auto& warnings : {checkTarget(model, scale, &list), checkTarget(list, &model)})
            for (const TargetWarning& warning : warnings) {
                found.insert(warning.code);
                EXPECT_EQ(describe(warning).find('^'), std::string::npos) << describe(warning);
            }
        return found;
    }
};

TEST(TargetCheck, EveryCodeAppearsAtItsLimitAndNotBefore)
{
    using Edit = std::function<void(Document&)>;
    const auto filled = [](std::uint32_t slot, std::uint16_t width, std::uint16_t height) {
        return [=](Document& d) { d.fill(slot, width, height, 1), d.show(0, slot & 0xFFFF); };
    };
    // 448 KiB are seven textures of 256 x 128; the last of them a little less high, or one more.
    const auto memory = [](std::uint16_t rows) {
        return [=](Document& d) {
            for (std::uint32_t i = 0; i < 7; ++i) d.fill(i, 256, 128, i), d.show(0, 0);
            d.fill(7, 8, rows, 7);
        };
    };
    const auto square = [](float z) -> Edit {
        return [=](Document& d) {
            d.place({{{0, 0, 0}, {100, 0, 0}, {100, 100, z}, {0, 100, 0}}});
            d.model.meshes[0].polygonCount = d.model.totalPolygonCount = 1;
        };
    };
    const auto corners = [](const std::array<Vector3, 4>& at) -> Edit {
        return [=](Document& d) {
            d.place(at);
            d.model.meshes[0].polygonCount = d.model.totalPolygonCount = 1;
        };
    };
    const auto named = [](const char* name) -> Edit {
        return [=](Document& d) { d.model.names[0] = name; };
    };
    const auto pair = [](unsigned change) -> Edit {
        return [=](Document& d) {
            d.fill(0, 16, 8, 5), d.fill(1, 16, 8, 5), d.show(0, 0), d.show(1, 1);
            const auto from = d.list.pixels(0), to = d.list.pixels(1);
            for (std::size_t i = 0; i < from.size(); ++i) // turned by half
                to[i] = static_cast<Rgb555>(from[from.size() - 1 - i] ^ (i == 3 ? change : 0));
            if (change == opaqueBit) from[from.size() - 4] = 0x7FFF & 0x1234; // transparent, too
        };
    };
    const struct {
        TargetCode code;
        Edit appears, staysAway;
    } rows[] = {
        {TargetCode::textureCount, filled(2048, 8, 8), filled(2047, 8, 8)},
        {TargetCode::textureMemory, memory(1), [&](Document& d) { memory(1)(d), d.list.clear(7); }},
        {TargetCode::textureHeight, filled(0, 8, 256), filled(0, 8, 255)},
        {TargetCode::textureWidth, filled(0, 264, 8), filled(0, 256, 8)},
        {TargetCode::textureWidth, filled(0, 12, 8), filled(0, 16, 8)},
        {TargetCode::gouraudCount, [](Document& d) { d.addGouraud(969); },
         [](Document& d) { d.addGouraud(968); }},
        {TargetCode::gouraudCount, [](Document& d) { d.addGouraud(485), d.nest(1, 0); }, // twice
         [](Document& d) { d.addGouraud(484), d.nest(1, 0); }},
        {TargetCode::fixedRange, [](Document& d) { d.model.vertices[7].y = 32768; },
         [](Document& d) { d.model.vertices[7].y = 32767.99f; }},
        {TargetCode::fixedRange, [](Document& d) { d.model.objects[0].translation.x = -32769; },
         [](Document& d) { d.model.objects[0].translation.x = -32768; }},
        {TargetCode::fixedRange, [](Document& d) { d.model.objects[0].scaling.z = 40000; },
         [](Document& d) { d.model.objects[0].scaling.z = 30000; }},
        {TargetCode::slotEmpty, [](Document& d) { d.fill(2, 8, 8, 1), d.show(0, 2), d.show(1, 1); },
         filled(2, 8, 8)},
        {TargetCode::slotRange, [](Document& d) { d.show(3, 4096); }, filled(4095, 8, 8)},
        {TargetCode::textureUnused, [](Document& d) { d.fill(4, 8, 8, 1); }, filled(4, 8, 8)},
        {TargetCode::textureDuplicate, pair(0), pair(1)},
        {TargetCode::textureDuplicate, pair(opaqueBit), pair(0x0020)},
        {TargetCode::quadBent, square(6.3f), square(6)}, // 5.1 and 4.9 degrees
        {TargetCode::quadCrossed, corners({{{0, 0, 0}, {9, 9, 0}, {9, 0, 0}, {0, 9, 0}}}),
         square(0)},
        {TargetCode::quadCrossed, corners({{{0, 0, 0}, {9, 0, 0}, {2, 2, 0}, {0, 9, 0}}}),
         corners({{{0, 0, 0}, {9, 0, 0}, {4.5f, 4.5f, 0}, {0, 9, 0}}})}, // a corner within an edge
        {TargetCode::noArea, corners({{{0, 0, 0}, {9, 0, 0}, {5, 0, 0}, {1, 0, 0}}}),
         corners({{{0, 0, 0}, {9, 0, 0}, {0, 9, 0}, {0, 9, 0}}})}, // a triangle
        {TargetCode::nameC, named("left wing"), named("left_wing2")},
        {TargetCode::depth, [](Document& d) { d.nest(10); }, [](Document& d) { d.nest(9); }},
    };
    std::set<TargetCode> covered;
    for (const auto& [code, appears, staysAway] : rows) {
        SCOPED_TRACE(std::string(nameOf(code)) + " #" + std::to_string(&code - &rows[0].code));
        Document with, without;
        appears(with);
        staysAway(without);
        EXPECT_TRUE(with.codes().contains(code));
        EXPECT_FALSE(without.codes().contains(code));
        covered.insert(code);
    }
    EXPECT_EQ(covered.size(), targetCodeCount);
    EXPECT_EQ(Document().codes(), std::set<TargetCode>()) << "a new document";
    EXPECT_TRUE(Document().codes(1000).contains(TargetCode::fixedRange)) << "50 becomes 50000";
}

TEST(TargetCheck, DuplicatesAreFoundALittleAtATimeAndAnewAfterAnEdit)
{
    Document d;
    for (std::uint32_t i = 0; i < 6; ++i) d.fill(i, 16, 8, i % 3);
    d.list.set(9, 16, 8, d.list.texels(1)); // shared
    DuplicateSearch search;
    const auto found = [&] {
        search.begin(d.list);
        int steps = 1;
        while (!search.step(100)) ++steps;
        EXPECT_GT(steps, 1);
        return std::map(search.found().begin(), search.found().end());
    };
    using Pairs = std::map<std::uint32_t, std::uint32_t>;
    EXPECT_EQ(found(), (Pairs{{3, 0}, {4, 1}, {5, 2}, {9, 1}}));
    d.list.pixels(4)[7] ^= 1;
    d.list.clear(2);
    EXPECT_EQ(found(), (Pairs{{3, 0}, {9, 1}}));
    d.list.pixels(4)[7] ^= 1; // in place, or at the same place of memory
    EXPECT_EQ(found(), (Pairs{{3, 0}, {4, 1}, {9, 1}}));
}

TEST(TargetCheck, TheBudgetIsWhatTheImagesHold)
{
    Document d;
    d.addGouraud(20);
    d.model.attributes[7].flags |= useLight;
    d.fill(2, 24, 5, 1);
    Bytes textures;
    ASSERT_EQ(formatTextureImage(textures, d.list), Message::none);
    EXPECT_EQ(budgetOf(d.model, 0.5f).imageBytes, formatModelImage(d.model, 0.5f).size());
    const TargetBudget budget = budgetOf(d.list);
    EXPECT_EQ(budget.imageBytes, textures.size());
    EXPECT_EQ(budget.parts[0].used, 3u);
    EXPECT_EQ(budget.parts[1].used, 2u * (2 * 64 + 24 * 5));
    const std::vector<BudgetPart> parts = budgetParts(d.model, d.list);
    ASSERT_EQ(parts.size(), budgetPartCount);
    EXPECT_EQ(parts[6].used, formatModelImage(d.model, 0.5f).size());
    EXPECT_EQ(parts[7].used, textures.size());
    EXPECT_EQ(parts[7].limit, 16u + 2048 * 8 + 458752);
    EXPECT_EQ(budgetOf(d.model, 1e6f).imageBytes, std::nullopt);
    d.fill(0, 8, 256, 1);
    EXPECT_EQ(budgetOf(d.list).imageBytes, std::nullopt);
}

} // namespace
} // namespace facetor
