#include "session/plug_in_list.h"

#include <gtest/gtest.h>

namespace facetor {

namespace {

constexpr PlugInCapability readOnly{.read = true};
constexpr PlugInCapability both{.read = true, .write = true};

std::string_view filterOf(const PlugInList& list)
{
    return {list.filter.data(), list.filterLength + 1};
}

TEST(PlugInList, EachPurposeHasItsFiltersInTheOrderOfItsFiles)
{
    PlugIns plugIns;
    ASSERT_EQ(createPlugInLists(plugIns), Message::none);
    EXPECT_EQ(registerPlugIn(plugIns, {"A.dll", "jpg", "Photo"}, readOnly), Message::none);
    EXPECT_EQ(registerPlugIn(plugIns, {"B.dll", "bmp", "Bitmap"}, both), Message::none);
    for (const auto& [extension, description] : {std::pair{"x|y", "X"}, {"x", "X|Y"}})
        EXPECT_EQ(registerPlugIn(plugIns, {"C.dll", extension, description}, both),
                  Message::badPlugIn);
    EXPECT_EQ(registerPlugIn(plugIns, {std::string(32, 'n'), "x", "X"}, both), Message::badPlugIn);
    finishPlugInFilters(plugIns);
    using namespace std::string_view_literals;
    EXPECT_EQ(filterOf(plugIns.import), "Photo(*.jpg)\0*.jpg\0Bitmap(*.bmp)\0*.bmp\0\0"sv);
    EXPECT_EQ(filterOf(plugIns.export_), "Bitmap(*.bmp)\0*.bmp\0\0"sv);
    EXPECT_EQ(plugIns.import.files, (std::vector<std::string>{"A.dll", "B.dll"}));
}

TEST(PlugInList, RegistrationStopsWhereTableOrFilterIsFull)
{
    for (const bool isLong : {false, true}) {
        PlugIns plugIns;
        ASSERT_EQ(createPlugInLists(plugIns), Message::none);
        // An entry is of 31 + 3 + 15 + 4 + 15 + 1 = 69 bytes, and 29 of them are 2001.
        const PlugInDescription large{"L.dll", std::string(15, 'e'), std::string(31, 'd')};
        for (int i = 0; i < 40; ++i) // a shorter one at the end would have found room again
            EXPECT_EQ(registerPlugIn(
                          plugIns, isLong && i < 39 ? large : PlugInDescription{"S.dll", "e", "d"},
                          readOnly),
                      Message::none);
        finishPlugInFilters(plugIns);
        EXPECT_EQ(plugIns.import.files.size(), isLong ? 29u : plugInCapacity);
        EXPECT_EQ(plugIns.import.files.back(), isLong ? "L.dll" : "S.dll");
        EXPECT_TRUE(filterOf(plugIns.import).ends_with(std::string_view("\0\0", 2)));
        EXPECT_TRUE(plugIns.export_.files.empty());
    }
}

TEST(PlugInList, ImportAndExportStayWithinTheList)
{
    EXPECT_EQ(importCount(0, 3), 3u);
    EXPECT_EQ(importCount(4093, 3), 2u);
    EXPECT_EQ(importCount(4094, 3), 1u);
    EXPECT_EQ(importCount(4095, 3), 0u);
    const auto slots = [](const ExportChoice& choice) {
        const SlotRange range = exportedSlots(choice, 9, 20);
        return std::pair(range.first, range.end);
    };
    EXPECT_EQ(slots({}), (std::pair{0u, 20u}));
    EXPECT_EQ(slots({ExportRange::current, {1, 2}}), (std::pair{9u, 10u}));
    EXPECT_EQ(slots({ExportRange::extent, {5, 7}}), (std::pair{5u, 8u}));
    EXPECT_EQ(slots({ExportRange::extent, {4090, 4096}}), (std::pair{4090u, 4096u}));
    EXPECT_EQ(slots({ExportRange::extent, {4096, 4096}}), (std::pair{4096u, 4096u}));
}

TEST(PlugInList, ExportedFilesBearTheNumbersOfTheirSlots)
{
    const struct {
        const char* chosen;
        std::uint32_t slot, usedCount;
        const char* path;
    } rows[] = {
        {"C:\\a\\pic.bmp", 5, 20, "C:\\a\\pic05.bmp"},
        {"C:\\a\\pic.bmp", 7, 99, "C:\\a\\pic07.bmp"},
        {"C:\\a\\pic.bmp", 5, 100, "C:\\a\\pic005.bmp"},
        {"C:\\a\\pic.bmp", 4095, 4096, "C:\\a\\pic4095.bmp"},
        {"C:\\a\\pic.bmp", 150, 20, "C:\\a\\pic150.bmp"},
        {"C:\\a.b\\pic.x.png", 0, 1, "C:\\a.b\\pic.x00.png"},
        {"C:\\a.b\\pic", 0, 1, "C:\\a.b\\pic00."},
    };
    for (const auto& row : rows)
        EXPECT_EQ(exportPath(row.chosen, row.slot, row.usedCount), row.path);
}

} // namespace

} // namespace facetor
