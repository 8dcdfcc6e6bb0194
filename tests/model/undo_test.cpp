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
    auto other = block(3);
    const UndoPieces pieces{live, other};
    ASSERT_EQ(undoRemember(slot, attributes, pieces), Message::none);
    live = block(2);
    other = block(4);
    ASSERT_EQ(undoExchange(slot, attributes, pieces), Message::none);
    EXPECT_EQ(live, block(1));
    EXPECT_EQ(other, block(3));
    ASSERT_EQ(undoExchange(slot, attributes, pieces), Message::none);
    EXPECT_EQ(live, block(2));
    EXPECT_EQ(other, block(4));
}

TEST(Undo, AnExchangeNeedsTheSameKindAndSize)
{
    UndoSlot slot;
    auto live = block(1);
    EXPECT_EQ(undoExchange(slot, attributes, {live}), Message::outOfUndoMemory) << "empty";
    auto saved = block(9);
    ASSERT_EQ(undoRemember(slot, attributes, {saved}), Message::none);
    EXPECT_EQ(undoExchange(slot, tag("VTXR"), {live}), Message::outOfUndoMemory);
    EXPECT_EQ(undoExchange(slot, attributes, {std::span(live).first(3)}), Message::outOfUndoMemory);
    EXPECT_EQ(live, block(1));
    undoClear(slot);
    EXPECT_TRUE(slot.isEmpty());
    EXPECT_EQ(undoExchange(slot, attributes, {live}), Message::outOfUndoMemory);
}

} // namespace facetor
