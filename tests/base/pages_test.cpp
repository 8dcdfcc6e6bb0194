#include "base/pages.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

namespace facetor {
namespace {

TEST(Pages, AreAlignedAndZeroUpToTheEndOfTheLastPage)
{
    for (const std::size_t size : {std::size_t{0}, std::size_t{1}, pageSize, pageSize + 1}) {
        const auto* pages = static_cast<unsigned char*>(allocatePages(size));
        ASSERT_NE(pages, nullptr);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(pages) % pageSize, 0u);
        const std::size_t rounded =
            size == 0 ? pageSize : (size + pageSize - 1) / pageSize * pageSize;
        for (std::size_t i = 0; i < rounded; ++i) ASSERT_EQ(pages[i], 0) << size << " at " << i;
        freePages(const_cast<unsigned char*>(pages));
    }
}

TEST(Pages, ASizeThatWouldWrapIsRefused)
{
    EXPECT_EQ(allocatePages(std::numeric_limits<std::size_t>::max()), nullptr);
    EXPECT_EQ(allocatePages(std::numeric_limits<std::size_t>::max() - pageSize + 1), nullptr);
}

TEST(PageArray, ReleaseHandsThePagesOverAndHoldsNothing)
{
    PageArray<int> array;
    ASSERT_TRUE(array.allocate(3));
    array[2] = 7;
    int* pages = array.release();
    EXPECT_EQ(array.size(), 0u);
    EXPECT_EQ(array.data(), nullptr);
    EXPECT_EQ(pages[2], 7);
    freePages(pages);
}

} // namespace
} // namespace facetor
