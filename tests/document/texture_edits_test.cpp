#include "document/texture_edits.h"

#include "document/undo_kinds.h"

#include "texture/numbered_texture.h"

#include <gtest/gtest.h>

namespace facetor {

namespace {

class TextureEdits : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_EQ(list.create(), Message::none);
        ASSERT_EQ(createModelStore(model), Message::none);
    }

    /// What is in the first slots, as the number of each one's first texel; -1 for an empty one.
    std::vector<int> firstSlots(std::uint32_t count) const
    {
        std::vector<int> result;
        for (std::uint32_t i = 0; i < count; ++i)
            result.push_back(list.isEmpty(i) ? -1 : list.slot(i).pixels[0] & 0x7FFF);
        return result;
    }
    std::vector<int> polygonNumbers() const
    {
        std::vector<int> numbers;
        for (std::size_t i = 0; i < 6; ++i) numbers.push_back(model.attributes[i].texture);
        return numbers;
    }

    TextureList list;
    Model model;
    UndoSlot undo;
};

TEST_F(TextureEdits, APastedBitmapReplacesTheSlotOrIsRefusedWithEverythingAsItWas)
{
    const auto bitmap = [&](std::uint32_t width, std::uint32_t height, std::size_t rows) {
        ByteWriter out;
        for (const std::uint32_t field : {40u, width, height, 24u << 16 | 1u, 0u}) out.u32(field);
        out.zeros(20 + rows * width * 3);
        return out.release();
    };
    const std::pair<Bytes, Message> cases[] = {
        {bitmap(12, 2, 2), Message::textureWidthNotMultipleOf8},
        {bitmap(12, 0xFFFFFFFE, 2), Message::textureWidthNotMultipleOf8}, // rows from the top
        {bitmap(8, 2, 1), Message::clipboardTypeNotSupported},
        {bitmap(65528, 65535, 0), Message::clipboardTypeNotSupported},
        {bitmap(65544, 1, 1), Message::clipboardTypeNotSupported},
        {{}, Message::clipboardTypeNotSupported},
        {bitmap(8, 2, 2), Message::none}};
    putNumbered(list, 5, 8, 1, 40);
    for (const auto& [bytes, message] : cases) {
        EXPECT_EQ(list.slot(5).height, 1);
        EXPECT_TRUE(undo.isEmpty());
        EXPECT_EQ(pasteBitmap(list, undo, 5, bytes, 0xFFFF).edit, message);
    }
    EXPECT_EQ(numbersOf(list, 5), std::vector<int>(16, 0));
    EXPECT_EQ(undoEdit(undo, model, list), Message::none);
    EXPECT_EQ(list.slot(5).pixels[0] & 0x7FFF, 40);
}

TEST_F(TextureEdits, FlipsAndTurnsMoveEveryTexelToItsPlace)
{
    const auto expect = [&](std::uint16_t width, const std::vector<int>& texels, const auto& edit) {
        SCOPED_TRACE(testing::PrintToString(texels));
        putNumbered(list, 0, 3, 2);        // 0 1 2
        ASSERT_EQ(edit(0), Message::none); // 3 4 5
        EXPECT_EQ(list.slot(0).width, width);
        EXPECT_EQ(numbersOf(list, 0), texels);
        EXPECT_EQ(edit(1), Message::texturesEmpty);
    };
    const auto flip = [&](bool across, bool down) {
        return [=, this](std::uint32_t slot) { return flipTexture(list, slot, {across, down}); };
    };
    const auto turn = [&](TextureTurn kind) {
        return [=, this](std::uint32_t slot) { return turnTexture(list, slot, kind); };
    };
    const auto scale = [&](std::uint16_t width, std::uint16_t height) {
        return [=, this](std::uint32_t slot) {
            return scaleTexture(list, slot, width, height, Sampling::nearest);
        };
    };
    expect(3, {2, 1, 0, 5, 4, 3}, flip(true, false));
    expect(3, {3, 4, 5, 0, 1, 2}, flip(false, true));
    expect(3, {5, 4, 3, 2, 1, 0}, flip(true, true));
    expect(2, {3, 0, 4, 1, 5, 2}, turn(TextureTurn::clockwise));
    expect(2, {2, 5, 1, 4, 0, 3}, turn(TextureTurn::counterClockwise));
    expect(3, {5, 4, 3, 2, 1, 0}, turn(TextureTurn::halfTurn));
    expect(1, {0, 3}, scale(1, 2));
    expect(6, {0, 0, 1, 1, 2, 2}, scale(6, 1));
}

TEST_F(TextureEdits, SmoothScalingMixesFourTexelsAndIsTransparentBesideATransparentOne)
{
    putNumbered(list, 0, 2, 2); // blue 0 1 / 2 3, in steps of eight
    for (Rgb555& texel : list.pixels(0)) texel = opaqueBit | rgb555(31, 0, (texel & 3) * 8);
    ASSERT_EQ(scaleTexture(list, 0, 4, 4, Sampling::smooth), Message::none);
    const auto blue = [&](int x, int y) { return blueOf(list.slot(0).pixels[y * 4 + x]); };
    EXPECT_EQ(blue(0, 0), 0);
    EXPECT_EQ(blue(1, 0), 4);
    EXPECT_EQ(blue(0, 1), 8);
    EXPECT_EQ(blue(1, 1), 12);
    EXPECT_EQ(blue(3, 0), 8) << "the last column has itself to its right";
    // In the last column the fourth texel is left of the third: 8, 8, below 24 and 16, halfway.
    EXPECT_EQ(blue(3, 1), 14);
    EXPECT_EQ(redOf(list.slot(0).pixels[5]), 31) << "nothing is lost between equal components";
    list.pixels(0)[0] &= 0x7FFF;
    ASSERT_EQ(scaleTexture(list, 0, 8, 8, Sampling::smooth), Message::none);
    EXPECT_EQ(list.slot(0).pixels[0], 0);
    EXPECT_EQ(list.slot(0).pixels[1 * 8 + 1], 0);
    EXPECT_NE(list.slot(0).pixels[2], 0) << "source column 1 is not beside it";
}

TEST_F(TextureEdits, InsertingAndRemovingMoveTexturesAndWithThemThePolygonsThatFollow)
{
    for (std::uint32_t i = 0; i < 4; ++i) putNumbered(list, i, 8, 1, static_cast<int>(100 * i));
    for (std::uint16_t i = 0; i < 6; ++i) model.attributes[i].texture = i;
    ASSERT_EQ(insertSlot(list, undo, model, 2, PolygonNumbers::follow).edit, Message::none);
    EXPECT_EQ(firstSlots(6), (std::vector<int>{0, 100, -1, 200, 300, -1}));
    EXPECT_EQ(polygonNumbers(), (std::vector<int>{0, 1, 3, 4, 5, 6}));
    ASSERT_EQ(undoEdit(undo, model, list), Message::none);
    EXPECT_EQ(firstSlots(5), (std::vector<int>{0, 100, 200, 300, -1}));
    EXPECT_EQ(polygonNumbers(), (std::vector<int>{0, 1, 2, 3, 4, 5}));
    EXPECT_TRUE(undo.isEmpty());

    ASSERT_EQ(removeSlot(list, undo, model, 1, PolygonNumbers::follow).edit, Message::none);
    EXPECT_EQ(firstSlots(4), (std::vector<int>{0, 200, 300, -1}));
    EXPECT_EQ(polygonNumbers(), (std::vector<int>{0, 1, 1, 2, 3, 4}));
    ASSERT_EQ(undoEdit(undo, model, list), Message::none);
    EXPECT_EQ(firstSlots(5), (std::vector<int>{0, 100, 200, 300, -1}));
    EXPECT_EQ(numbersOf(list, 1).back(), 107);
    EXPECT_EQ(polygonNumbers(), (std::vector<int>{0, 1, 2, 3, 4, 5}));

    ASSERT_EQ(removeSlot(list, undo, model, 0, PolygonNumbers::keep).edit, Message::none);
    EXPECT_EQ(polygonNumbers(), (std::vector<int>{0, 1, 2, 3, 4, 5}));
    list.clearAll();
    EXPECT_EQ(insertSlot(list, undo, model, 0, PolygonNumbers::keep).edit, Message::texturesEmpty);
    EXPECT_EQ(removeSlot(list, undo, model, 0, PolygonNumbers::keep).edit, Message::texturesEmpty);
}

TEST_F(TextureEdits, AnExtentStopsAtItsFirstEmptySlotAndStaysWithinTheList)
{
    putNumbered(list, 0, 8, 1);
    putNumbered(list, 2, 8, 1);
    EXPECT_EQ(flipTextures(list, undo, {0, true, {0, 2}}, {true, false}).edit,
              Message::texturesEmpty);
    EXPECT_EQ(numbersOf(list, 0)[0], 7);
    EXPECT_EQ(numbersOf(list, 2)[0], 0);
    EXPECT_EQ(flipTextures(list, undo, {1, false, {}}, {}).edit, Message::none)
        << "neither way, nothing is done";
    putNumbered(list, 4095, 8, 1);
    EXPECT_EQ(flipTextures(list, undo, {0, true, {4095, 4096}}, {true, false}).edit, Message::none);
    EXPECT_EQ(numbersOf(list, 4095)[0], 7);
    putNumbered(list, 1, 8, 12);
    EXPECT_EQ(turnTextures(list, undo, {1, false, {}}, TextureTurn::clockwise).edit,
              Message::textureWidthNotMultipleOf8);
    EXPECT_EQ(turnTextures(list, undo, {1, false, {}}, TextureTurn::halfTurn).edit, Message::none);
}

TEST_F(TextureEdits, EveryOtherEditIsUndoneOnce)
{
    const TransformTarget one{1, false, {}}, extent{0, true, {0, 2}};
    const auto state = [&] {
        std::vector<std::vector<int>> all;
        for (std::uint32_t i = 0; i < 3; ++i) {
            all.push_back(numbersOf(list, i));
            all.back().push_back(list.slot(i).width);
        }
        return all;
    };
    const auto expect = [&](const char* name, bool undoable, const auto& edit) {
        SCOPED_TRACE(name);
        for (std::uint32_t i = 0; i < 3; ++i)
            putNumbered(list, i, 8, 16, static_cast<int>(i) * 1000);
        const auto before = state();
        (void)deleteTexture(list, undo, 7); // which can no longer be undone then
        const EditOutcome outcome = edit();
        EXPECT_EQ(outcome.edit, Message::none);
        EXPECT_EQ(outcome.undo, Message::none);
        EXPECT_NE(state(), before);
        EXPECT_EQ(isTextureEdit(undo), undoable);
        if (!undoable) return;
        ASSERT_EQ(undoEdit(undo, model, list), Message::none);
        EXPECT_EQ(state(), before);
        EXPECT_TRUE(undo.isEmpty());
    };
    expect("deleted", true, [&] { return deleteTexture(list, undo, 1); });
    expect("turned", true, [&] { return turnTextures(list, undo, one, TextureTurn::clockwise); });
    expect("scaled", true, [&] { return scaleTextures(list, undo, one, 16, 3, Sampling::smooth); });
    expect("flipped", true, [&] { return flipTextures(list, undo, one, {true, true}); });
    expect("all flipped", true, [&] { return flipTextures(list, undo, extent, {true, false}); });
    expect("all turned", true,
           [&] { return turnTextures(list, undo, extent, TextureTurn::counterClockwise); });
    expect("all scaled", false,
           [&] { return scaleTextures(list, undo, extent, 8, 8, Sampling::nearest); });
}

} // namespace

} // namespace facetor
