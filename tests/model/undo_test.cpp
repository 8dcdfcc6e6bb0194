#include "model/undo.h"

#include <gtest/gtest.h>

#include <array>

namespace facetor {

namespace {

constexpr std::uint32_t attributes = tag("ATTR");

std::array<std::byte, 4> block(int value)
{
    std::array<std::byte, 4> result;
    result.fill(static_cast<std::byte>(value));
    return result;
}

} // namespace

TEST(Undo, UndoingTwiceComesBackToTheEditedState)
{
    UndoSlot slot;
    auto live = block(1);
    ASSERT_EQ(undoRemember(slot, attributes, live), Message::none);
    live = block(2);
    ASSERT_EQ(undoExchange(slot, attributes, live), Message::none);
    EXPECT_EQ(live, block(1));
    ASSERT_EQ(undoExchange(slot, attributes, live), Message::none);
    EXPECT_EQ(live, block(2));
}

TEST(Undo, AnExchangeNeedsTheSameKindAndSize)
{
    UndoSlot slot;
    auto live = block(1);
    EXPECT_EQ(undoExchange(slot, attributes, live), Message::outOfUndoMemory) << "empty";
    ASSERT_EQ(undoRemember(slot, attributes, block(9)), Message::none);
    EXPECT_EQ(undoExchange(slot, tag("VTXR"), live), Message::outOfUndoMemory);
    EXPECT_EQ(undoExchange(slot, attributes, std::span(live).first(3)), Message::outOfUndoMemory);
    EXPECT_EQ(live, block(1));
    undoClear(slot);
    EXPECT_TRUE(slot.isEmpty());
    EXPECT_EQ(undoExchange(slot, attributes, live), Message::outOfUndoMemory);
}

} // namespace facetor
