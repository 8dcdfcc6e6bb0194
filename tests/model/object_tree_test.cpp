#include "model/object_tree.h"

#include <gtest/gtest.h>

namespace facetor {

TEST(ObjectTree, IsReadFromTheDepths)
{
    Model model;
    ASSERT_EQ(createModelStore(model), Message::none);
    // The last one lies two deeper than the one before: only an odd file has that.
    constexpr std::uint32_t depths[] = {0, 1, 2, 1, 0, 1, 3}, ends[] = {4, 3, 3, 4, 7, 7, 7},
                            parents[] = {noObject, 0, 1, 0, noObject, 4, 5};
    model.objectCount = std::size(depths);
    for (std::uint32_t i = 0; i < model.objectCount; ++i) model.objects[i].depth = depths[i];
    for (std::uint32_t i = 0; i < model.objectCount; ++i) {
        EXPECT_EQ(parentOf(model, i), parents[i]) << i;
        EXPECT_EQ(subtreeEnd(model, i), ends[i]) << i;
        for (const Branch branch : {Branch::expanded, Branch::collapsed}) {
            for (std::uint32_t k = 0; k < model.objectCount; ++k) model.objects[k].flags = 5;
            const std::uint32_t end = branch == Branch::collapsed ? ends[i] : i + 1;
            EXPECT_EQ(setVisibility(model, i, branch, Visibility::hidden), end);
            for (std::uint32_t k = 0; k < model.objectCount; ++k)
                EXPECT_EQ(model.objects[k].flags, k >= i && k < end ? 4u : 5u) << i << ", " << k;
        }
    }
}

} // namespace facetor
