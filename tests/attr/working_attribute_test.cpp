#include "attr/working_attribute.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

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

TEST(WorkingAttribute, ATextureNumberIsADecimalOf16Bits)
{
    for (const auto& [text, number] : {std::pair("0", 0),
                                       {" 0012 ", 12},
                                       {"4096", 4096},
                                       {"-1", 65535},
                                       {"-32768", 32768},
                                       {"65535", 65535}})
        EXPECT_EQ(parseTextureNumber(text), number);
    for (const std::string text : {"65536", "-32769", "4294967297", "", "  ", "x", "1x", "1 2",
                                   "1.5", "0x10", "99999999999999999999999999999999999999999"})
        EXPECT_FALSE(parseTextureNumber(text)) << text;
}

} // namespace
} // namespace facetor
