#include "document/texture_undo.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace facetor {

namespace {

template <typename T> std::span<std::byte> bytesOf(T& value)
{
    return std::as_writable_bytes(std::span(&value, 1));
}

/// Takes a T from the front of a block; needs one there.
template <typename T> T takeFrom(std::span<const std::byte>& block)
{
    T value;
    std::memcpy(&value, block.data(), sizeof value);
    block = block.subspan(sizeof value);
    return value;
}

SavedTexture describe(const TextureList& list, std::uint32_t slot)
{
    const TextureSlot& texture = list.slot(slot);
    return {slot, texture.width, texture.height, list.isEmpty(slot)};
}

/// Puts a saved texture back into its slot.
void bringBack(TextureList& list, const SavedTexture& saved, const Texels& texels)
{
    if (saved.empty)
        list.clear(saved.slot);
    else
        list.set(saved.slot, saved.width, saved.height, texels);
}

void bringBack(Model& model, const TextureNumbers& numbers)
{
    for (std::uint32_t i = 0; i < polygonCapacity; ++i) model.attributes[i].texture = numbers[i];
}

/// Takes over what the slot holds, which is empty from then on.
UndoSlot takeSlot(UndoSlot& undo)
{
    return std::exchange(undo, UndoSlot{});
}

} // namespace

Message rememberTexture(const TextureList& list, UndoSlot& undo, std::uint32_t kind,
                        std::uint32_t slot)
{
    SavedTexture saved = describe(list, slot);
    const Message message = undoRemember(undo, kind, {bytesOf(saved)});
    if (message == Message::none) undo.texels = list.texels(slot);
    return message;
}

Message rememberSlotChange(const TextureList& list, UndoSlot& undo, std::uint32_t kind,
                           const Model& model, std::uint32_t slot)
{
    TextureNumbers numbers;
    std::ranges::transform(model.attributes, numbers.begin(), &PolygonAttribute::texture);
    SavedTexture saved = describe(list, slot);
    const Message message = undoRemember(undo, kind, {bytesOf(numbers), bytesOf(saved)});
    if (message == Message::none && kind == slotRemoved) undo.texels = list.texels(slot);
    return message;
}

void moveUp(TextureList& list, std::uint32_t first, std::uint32_t last)
{
    for (std::uint32_t i = last + 1; i > first; --i) list.moveTexture(i - 1, i);
}

void moveDown(TextureList& list, std::uint32_t first, std::uint32_t last)
{
    for (std::uint32_t i = first; i <= last; ++i) list.moveTexture(i, i - 1);
}

Message undoTexture(UndoSlot& undo, Model&, TextureList& list)
{
    const UndoSlot held = takeSlot(undo);
    std::span<const std::byte> block = held.block;
    bringBack(list, takeFrom<SavedTexture>(block), held.texels);
    return Message::none;
}

Message undoInsert(UndoSlot& undo, Model& model, TextureList& list)
{
    const UndoSlot held = takeSlot(undo);
    std::span<const std::byte> block = held.block;
    const auto numbers = takeFrom<TextureNumbers>(block);
    const std::uint32_t slot = takeFrom<SavedTexture>(block).slot;
    list.clear(slot);
    if (const std::uint32_t used = list.usedCount(); used > slot + 1)
        moveDown(list, slot + 1, used - 1);
    bringBack(model, numbers);
    return Message::none;
}

Message undoRemove(UndoSlot& undo, Model& model, TextureList& list)
{
    const UndoSlot held = takeSlot(undo);
    std::span<const std::byte> block = held.block;
    const auto numbers = takeFrom<TextureNumbers>(block);
    const auto saved = takeFrom<SavedTexture>(block);
    if (const std::uint32_t used = list.usedCount(); used > saved.slot) {
        if (used == textureSlotCount) list.clear(textureSlotCount - 1);
        moveUp(list, saved.slot, std::min(used, textureSlotCount - 1) - 1);
    }
    bringBack(list, saved, held.texels);
    bringBack(model, numbers);
    return Message::none;
}

Message undoFlips(UndoSlot& undo, Model&, TextureList& list)
{
    const UndoSlot held = takeSlot(undo);
    std::span<const std::byte> block = held.block;
    const auto saved = takeFrom<SavedFlip>(block);
    return forEachSlot(saved.extent,
                       [&](std::uint32_t slot) { return flipTexture(list, slot, saved.flip); });
}

Message undoTurns(UndoSlot& undo, Model&, TextureList& list)
{
    const UndoSlot held = takeSlot(undo);
    std::span<const std::byte> block = held.block;
    const auto saved = takeFrom<SavedTurn>(block);
    return forEachSlot(saved.extent, [&](std::uint32_t slot) {
        return turnTexture(list, slot, opposite(saved.turn));
    });
}

} // namespace facetor
