#include "document/undo.h"

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
