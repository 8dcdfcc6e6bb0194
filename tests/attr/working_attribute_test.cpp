#include "attr/working_attribute.h"

#include "resources/resource_ids.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace facetor {
namespace {

TEST(WorkingAttribute, APageChangesItsOwnBitsOfPickedPolygonsAndNoOthers)
{
    constexpr std::uint32_t before = 0x5A5A5A5A | picked;
    const WorkingAttribute working{5, 6, 7, 8, ~before, {1, 2, 3, 4}};
    const std::pair<AttributePage, std::uint32_t> rows[] = {{AttributePage::material, 0x0100003B},
                                                            {AttributePage::mode, 0x00000F00},
                                                            {AttributePage::zSort, 0},
                                                            {AttributePage::gouraud, 0x01001000},
                                                            {AttributePage::option, 0x08000000}};
    for (const auto& [page, mask] : rows) {
        Model model;
        ASSERT_EQ(createModelStore(model), Message::none);
        model.attributes[1].flags = model.attributes[6].flags = before;
        model.attributes[2].flags = before & ~picked;
        applyAttributePage(model, working, page, PickedAfter::clear);
        EXPECT_EQ(model.attributes[1].flags, (before ^ mask) & ~picked);
        EXPECT_EQ(model.attributes[2].flags, before & ~picked);
        EXPECT_EQ(model.attributes[6].flags, before) << "beyond the six polygons of the cube";
        EXPECT_EQ(model.gouraud[1].color == working.gouraud, page == AttributePage::gouraud);
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
    for (const auto& [working, expected] : rows)
        for (const int control :
             {1094, 1095, 1096, 1015, 1016, 1017, 1018, 1024, 1025, 1026, 1022, 1023})
            EXPECT_EQ(isButtonChecked(working, control), std::ranges::count(expected, control) == 1)
                << control;
    WorkingAttribute working{.flags = 0xFFFFFFFF};
    EXPECT_TRUE(setButton(working, IDC_ATTRIBUTE_POLYGON, true));
    EXPECT_TRUE(setButton(working, IDC_ATTRIBUTE_REPLACE, true));
    EXPECT_EQ(working.flags, ~(0x28u | 0xE00u)) << "every other one of the group is cleared";
}

TEST(WorkingAttribute, ATextureNumberIsASlotInDecimal)
{
    for (const auto& [text, number] : {std::pair("0", 0), {" 0012 ", 12}, {"4095", 4095}})
        EXPECT_EQ(parseTextureNumber(text), number);
    for (const std::string text : {"4096", "-1", "65536", "4294967297", "", "  ", "x", "1x", "1 2",
                                   "1.5", "0x10", "99999999999999999999999999999999999999999"})
        EXPECT_FALSE(parseTextureNumber(text)) << text;
}

} // namespace
} // namespace facetor
