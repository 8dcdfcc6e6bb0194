#include "document/texture_edits.h"

#include "base/bytes.h"
#include "document/texture_undo.h"
#include "image/bitmap_conversion.h"

#include <algorithm>
#include <utility>

namespace facetor {

namespace {

/// Keeps one transformed texture; `extentKind` and `settings` for an extent of them.
template <typename Settings>
Message rememberTransform(TextureList& list, UndoSlot& undo, const TransformTarget& target,
                          std::uint32_t extentKind, Settings settings)
{
    if (!target.useExtent) return rememberTexture(list, undo, textureTransformed, target.current);
    return undoRemember(undo, extentKind, {std::as_writable_bytes(std::span(&settings, 1))});
}

SlotExtent extentOf(const TransformTarget& target)
{
    const auto current = static_cast<std::int32_t>(target.current);
    return target.useExtent ? target.extent : SlotExtent{current, current};
}

void shiftNumbers(Model& model, std::uint32_t from, int by)
{
    for (PolygonAttribute& attribute : std::span(model.attributes.data(), model.totalPolygonCount))
        if (attribute.texture >= from && attribute.texture < textureSlotCount)
            attribute.texture = static_cast<std::uint16_t>(
                std::min<int>(attribute.texture + by, textureSlotCount - 1));
}

} // namespace

EditOutcome replaceTexture(TextureList& list, UndoSlot& undo, std::uint32_t slot,
                           std::uint16_t width, std::uint16_t height, Texels pixels)
{
    const Message message = rememberTexture(list, undo, textureReplaced, slot);
    list.set(slot, width, height, std::move(pixels));
    return {message, Message::none};
}

EditOutcome pasteBitmap(TextureList& list, UndoSlot& undo, std::uint32_t slot,
                        std::span<const std::byte> bitmap, Rgb555 transparentColour)
{
    const auto [width, height] = packedBitmapSize(bitmap);
    if (width % 8 != 0) return {Message::none, Message::textureWidthNotMultipleOf8};
    if (!isConvertible(bitmap)) return {Message::none, Message::clipboardTypeNotSupported};
    Texels texels;
    if (!texels.allocate(static_cast<std::size_t>(width) * static_cast<std::size_t>(height)))
        return {Message::none, Message::outOfMemory};
    (void)convertBitmap(bitmap, transparentColour, {texels.data(), texels.size()}); // it can
    return replaceTexture(list, undo, slot, static_cast<std::uint16_t>(width),
                          static_cast<std::uint16_t>(height), std::move(texels));
}

void replaceTextures(TextureList& list, const TextureList& other)
{
    for (std::uint32_t slot = 0; slot < textureSlotCount; ++slot) {
        const TextureSlot& texture = other.slot(slot);
        if (!other.isEmpty(slot))
            list.set(slot, texture.width, texture.height, other.texels(slot));
        else if (!list.isEmpty(slot))
            list.clear(slot);
    }
}

EditOutcome deleteTexture(TextureList& list, UndoSlot& undo, std::uint32_t slot)
{
    const Message message = rememberTexture(list, undo, textureReplaced, slot);
    list.clear(slot);
    return {message, Message::none};
}

EditOutcome insertSlot(TextureList& list, UndoSlot& undo, Model& model, std::uint32_t slot,
                       PolygonNumbers numbers)
{
    std::uint32_t used = list.usedCount();
    if (used == 0) return {Message::none, Message::texturesEmpty};
    if (used == textureSlotCount) list.clear(--used);
    const Message message = rememberSlotChange(list, undo, slotInserted, model, slot);
    if (used > slot) moveUp(list, slot, used - 1);
    if (numbers == PolygonNumbers::follow) shiftNumbers(model, slot, 1);
    return {message, Message::none};
}

EditOutcome removeSlot(TextureList& list, UndoSlot& undo, Model& model, std::uint32_t slot,
                       PolygonNumbers numbers)
{
    const std::uint32_t used = list.usedCount();
    if (used == 0) return {Message::none, Message::texturesEmpty};
    const Message message = rememberSlotChange(list, undo, slotRemoved, model, slot);
    list.clear(slot);
    if (used > slot + 1) moveDown(list, slot + 1, used - 1);
    if (numbers == PolygonNumbers::follow) shiftNumbers(model, slot + 1, -1);
    return {message, Message::none};
}

EditOutcome flipTextures(TextureList& list, UndoSlot& undo, const TransformTarget& target,
                         TextureFlip flip)
{
    if (!flip.horizontal && !flip.vertical) return {};
    const Message message =
        rememberTransform(list, undo, target, texturesFlipped, SavedFlip{target.extent, flip});
    return {message, forEachSlot(extentOf(target), [&](std::uint32_t slot) {
                return flipTexture(list, slot, flip);
            })};
}

EditOutcome turnTextures(TextureList& list, UndoSlot& undo, const TransformTarget& target,
                         TextureTurn turn)
{
    if (turn != TextureTurn::halfTurn && list.slot(target.current).height % 8 != 0)
        return {Message::none, Message::textureWidthNotMultipleOf8};
    const Message message =
        rememberTransform(list, undo, target, texturesTurned, SavedTurn{target.extent, turn});
    return {message, forEachSlot(extentOf(target), [&](std::uint32_t slot) {
                return turnTexture(list, slot, turn);
            })};
}

EditOutcome scaleTextures(TextureList& list, UndoSlot& undo, const TransformTarget& target,
                          std::uint16_t width, std::uint16_t height, Sampling sampling)
{
    Message message = Message::none;
    if (target.useExtent)
        undoClear(undo);
    else
        message = rememberTexture(list, undo, textureTransformed, target.current);
    return {message, forEachSlot(extentOf(target), [&](std::uint32_t slot) {
                return scaleTexture(list, slot, width, height, sampling);
            })};
}

} // namespace facetor
