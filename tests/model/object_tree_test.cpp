#include "model/object_tree.h"

#include <gtest/gtest.h>

#include <string>

namespace facetor {
namespace {

TEST(ObjectTree, IsReadFromTheDepths)
{
    Model model;
    ASSERT_EQ(createModelStore(model), Message::none);
    struct Row {
        std::uint32_t depth, parent, end;
    };
    // The last one lies two deeper than the one before: only a faulty file has that.
    const Row rows[] = {{0, noObject, 4}, {1, 0, 3}, {2, 1, 3}, {1, 0, 4},
                        {0, noObject, 7}, {1, 4, 7}, {3, 5, 7}};
    model.objectCount = std::size(rows);
    for (std::uint32_t i = 0; i < model.objectCount; ++i) model.objects[i].depth = rows[i].depth;
    for (std::uint32_t i = 0; i < model.objectCount; ++i) {
        EXPECT_EQ(parentOf(model, i), rows[i].parent) << i;
        EXPECT_EQ(subtreeEnd(model, i), rows[i].end) << i;
    }

    const auto flags = [&] {
        std::string text;
        for (std::uint32_t i = 0; i < model.objectCount; ++i)
            text += static_cast<char>('0' + model.objects[i].flags);
        return text;
    };
    for (std::uint32_t i = 0; i < model.objectCount; ++i) model.objects[i].flags = 5;
    EXPECT_EQ(setVisibility(model, 1, Branch::collapsed, Visibility::hidden), 3u);
    EXPECT_EQ(flags(), "5445555") << "the other bits stay";
    EXPECT_EQ(setVisibility(model, 4, Branch::expanded, Visibility::hidden), 5u);
    EXPECT_EQ(flags(), "5445455");
    EXPECT_EQ(setVisibility(model, 0, Branch::collapsed, Visibility::shown), 4u);
    EXPECT_EQ(flags(), "5555455");
}

} // namespace
} // namespace facetor
