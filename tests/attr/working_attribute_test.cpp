#include "attr/working_attribute.h"

#include "resources/resource_ids.h"

#include <gtest/gtest.h>

#include <string>

namespace facetor {
namespace {

TEST(WorkingAttribute, APageGivesPickedPolygonsItsOwnFieldsAndNoOthers)
{
    constexpr std::uint32_t before = 0x5A5A5A5A | picked, after = ~before;
    struct Row {
        AttributePage page;
        std::uint16_t plane, sort, texture, color;
        std::uint32_t flags;
        bool gouraud;
    };
    const auto mixed = [&](std::uint32_t mask) { return (before & ~mask) | (after & mask); };
    const Row rows[] = {
        {AttributePage::material, 1, 2, 7, 8, mixed(0x0100003B), false},
        {AttributePage::mode, 1, 2, 3, 4, mixed(0x00000F00), false},
        {AttributePage::zSort, 1, 6, 3, 4, before, false},
        {AttributePage::gouraud, 1, 2, 3, 4, mixed(0x01001000), true},
        {AttributePage::option, 5, 2, 3, 4, mixed(0x08000000), false},
    };
    const WorkingAttribute working{5, 6, 7, 8, after, {1, 2, 3, 4}};
    for (const auto& row : rows) {
        SCOPED_TRACE(static_cast<int>(row.page));
        Model model;
        ASSERT_EQ(createModelStore(model), Message::none);
        for (const std::uint32_t i : {1u, 2u, 5u, 6u})
            model.attributes[i] = {1, 2, 3, 4, i == 2 ? before & ~picked : before, i};
        const GouraudEntry plain = model.gouraud[1];
        applyAttributePage(model, working, row.page, PickedAfter::keep);
        for (const std::uint32_t i : {1u, 5u}) {
            const PolygonAttribute& a = model.attributes[i];
            EXPECT_EQ(a.plane, row.plane);
            EXPECT_EQ(a.sort, row.sort);
            EXPECT_EQ(a.texture, row.texture);
            EXPECT_EQ(a.color, row.color);
            EXPECT_EQ(a.flags, row.flags);
            EXPECT_EQ(a.gouraud, i);
            EXPECT_EQ(model.gouraud[i].color, row.gouraud ? working.gouraud : plain.color);
        }
        EXPECT_EQ(model.attributes[2].flags, before & ~picked) << "not picked";
        EXPECT_EQ(model.attributes[6].flags, before) << "beyond the six polygons of the cube";
        applyAttributePage(model, working, row.page, PickedAfter::clear);
        EXPECT_EQ(model.attributes[5].flags, row.flags & ~picked);
        WorkingAttribute loaded;
        loadWorkingAttribute(loaded, model, 5);
        EXPECT_EQ(loaded.plane, row.plane);
        EXPECT_EQ(loaded.texture, row.texture);
        EXPECT_EQ(loaded.gouraud, model.gouraud[5].color);
    }
}

TEST(WorkingAttribute, OneRadioButtonOfAGroupIsCheckedWhateverAFileHolds)
{
    const std::pair<WorkingAttribute, std::vector<int>> rows[] = {
        {{}, {1094, 1015, 1024, 1022}},
        {{.plane = 1, .sort = 1, .flags = 0x38 | 0xE00}, {1095, 1016, 1025, 1023}},
        {{.plane = 2, .sort = 2, .flags = 0x18 | 0xC00}, {1096, 1017, 1026, 1022}},
        {{.plane = 3, .sort = 3, .flags = 0x800}, {1094, 1018, 1024, 1022}},
    };
    for (const auto& [working, expected] : rows) {
        std::vector<int> checked;
        for (const int control :
             {1094, 1095, 1096, 1015, 1016, 1017, 1018, 1024, 1025, 1026, 1022, 1023})
            if (isButtonChecked(working, control)) checked.push_back(control);
        EXPECT_EQ(checked, expected);
    }
}

TEST(WorkingAttribute, AMaterialOrModeThatIsChosenReplacesEveryOtherOne)
{
    WorkingAttribute working{.flags = 0xFFFFFFFF};
    EXPECT_TRUE(setButton(working, IDC_ATTRIBUTE_POLYGON, true));
    EXPECT_TRUE(setButton(working, IDC_ATTRIBUTE_REPLACE, true));
    EXPECT_EQ(working.flags, ~(0x28u | 0xE00u));
    EXPECT_FALSE(setButton(working, IDC_ATTRIBUTE_TEXTURE, true));
}

TEST(WorkingAttribute, ATextureNumberIsASlotInDecimal)
{
    const std::pair<std::string, std::optional<std::uint16_t>> rows[] = {
        {"0", 0},    {" 0012 ", 12}, {"4095", 4095},     {"4096", {}},
        {"-1", {}},  {"65536", {}},  {"4294967297", {}}, {std::string(5000, '9'), {}},
        {"", {}},    {"  ", {}},     {"x", {}},          {"1x", {}},
        {"1 2", {}}, {"1.5", {}},    {"0x10", {}},
    };
    for (const auto& [text, number] : rows) EXPECT_EQ(parseTextureNumber(text), number) << text;
}

} // namespace
} // namespace facetor
