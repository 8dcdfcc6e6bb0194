#include "texture/texture_edits.h"

#include "base/bytes.h"
#include "texture/bitmap_conversion.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <new>
#include <utility>

namespace facetor {

namespace {

constexpr std::uint32_t textureReplaced = tag("TXED");
constexpr std::uint32_t textureTransformed = tag("TXSZ");
constexpr std::uint32_t slotInserted = tag("TXis");
constexpr std::uint32_t slotRemoved = tag("TXbs");
constexpr std::uint32_t texturesFlipped = tag("TXFL");
constexpr std::uint32_t texturesTurned = tag("TXRT");

/// A texture as the undo slot holds it, before its texels.
struct SavedTexture {
    std::uint32_t slot;
    std::uint16_t width, height;
    bool empty; ///< the slot was empty; no texels follow
};

struct SavedFlip {
    SlotExtent extent;
    TextureFlip flip;
};

struct SavedTurn {
    SlotExtent extent;
    TextureTurn turn;
};

/// The texture numbers of the whole attribute pool.
using TextureNumbers = std::array<std::uint16_t, polygonCapacity>;

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

/// A slot's texels as bytes; none of an empty slot.
std::span<std::byte> texelBytes(TextureList& list, std::uint32_t slot)
{
    if (list.isEmpty(slot)) return {};
    return std::as_writable_bytes(list.pixels(slot));
}

Message rememberTexture(TextureList& list, UndoSlot& undo, std::uint32_t kind, std::uint32_t slot)
{
    SavedTexture saved = describe(list, slot);
    return undoRemember(undo, kind, {bytesOf(saved), texelBytes(list, slot)});
}

Message rememberSlotChange(TextureList& list, UndoSlot& undo, std::uint32_t kind, Model& model,
                           std::uint32_t slot)
{
    TextureNumbers numbers;
    std::ranges::transform(model.attributes, numbers.begin(), &PolygonAttribute::texture);
    SavedTexture saved = describe(list, slot);
    UndoPieces pieces{bytesOf(numbers), bytesOf(saved)};
    if (kind == slotRemoved) pieces.push_back(texelBytes(list, slot));
    return undoRemember(undo, kind, pieces);
}

/// Keeps one transformed texture; `extentKind` and `settings` for an extent of them.
template <typename Settings>
Message rememberTransform(TextureList& list, UndoSlot& undo, const TransformTarget& target,
                          std::uint32_t extentKind, Settings settings)
{
    if (!target.useExtent) return rememberTexture(list, undo, textureTransformed, target.current);
    return undoRemember(undo, extentKind, {bytesOf(settings)});
}

SlotExtent extentOf(const TransformTarget& target)
{
    const auto current = static_cast<std::int32_t>(target.current);
    return target.useExtent ? target.extent : SlotExtent{current, current};
}

/// Moves the textures of slots first to last, both included, one slot up; the one above `last`
/// needs to be empty, and `first` is afterwards.
void moveUp(TextureList& list, std::uint32_t first, std::uint32_t last)
{
    for (std::uint32_t i = last + 1; i > first; --i) list.moveTexture(i - 1, i);
}

/// Moves the textures of slots first to last, both included, one slot down; the one below `first`
/// needs to be empty, and `last` is afterwards.
void moveDown(TextureList& list, std::uint32_t first, std::uint32_t last)
{
    for (std::uint32_t i = first; i <= last; ++i) list.moveTexture(i, i - 1);
}

/// Puts a saved texture, whose texels are the rest of `block`, back into its slot.
Message bringBack(TextureList& list, std::span<const std::byte> block, const SavedTexture& saved)
{
    if (saved.empty) {
        list.clear(saved.slot);
        return Message::none;
    }
    PageArray<Rgb555> pixels;
    if (!pixels.allocate(std::size_t{saved.width} * saved.height)) return Message::outOfUndoMemory;
    std::memcpy(pixels.data(), block.data(), block.size());
    list.set(saved.slot, saved.width, saved.height, std::move(pixels));
    return Message::none;
}

void bringBack(Model& model, const TextureNumbers& numbers)
{
    for (std::uint32_t i = 0; i < polygonCapacity; ++i) model.attributes[i].texture = numbers[i];
}

void shiftNumbers(Model& model, std::uint32_t from, int by)
{
    for (PolygonAttribute& attribute : std::span(model.attributes.data(), model.totalPolygonCount))
        if (attribute.texture >= from && attribute.texture < textureSlotCount)
            attribute.texture = static_cast<std::uint16_t>(
                std::min<int>(attribute.texture + by, textureSlotCount - 1));
}

Message undoInsert(TextureList& list, std::span<const std::byte> block, Model& model)
{
    const auto numbers = takeFrom<TextureNumbers>(block);
    const std::uint32_t slot = takeFrom<SavedTexture>(block).slot;
    list.clear(slot);
    if (const std::uint32_t used = list.usedCount(); used > slot + 1)
        moveDown(list, slot + 1, used - 1);
    bringBack(model, numbers);
    return Message::none;
}

Message undoRemove(TextureList& list, std::span<const std::byte> block, Model& model)
{
    const auto numbers = takeFrom<TextureNumbers>(block);
    const auto saved = takeFrom<SavedTexture>(block);
    if (const std::uint32_t used = list.usedCount(); used > saved.slot) {
        if (used == textureSlotCount) list.clear(textureSlotCount - 1);
        moveUp(list, saved.slot, std::min(used, textureSlotCount - 1) - 1);
    }
    if (const Message message = bringBack(list, block, saved); message != Message::none) {
        if (const std::uint32_t used = list.usedCount(); used > saved.slot + 1)
            moveDown(list, saved.slot + 1, used - 1);
        return message;
    }
    bringBack(model, numbers);
    return Message::none;
}

} // namespace

EditOutcome replaceTexture(TextureList& list, UndoSlot& undo, std::uint32_t slot,
                           std::uint16_t width, std::uint16_t height, PageArray<Rgb555> pixels)
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
    PageArray<Rgb555> texels;
    if (!texels.allocate(static_cast<std::size_t>(width) * static_cast<std::size_t>(height)))
        return {Message::none, Message::outOfMemory};
    (void)convertBitmap(bitmap, transparentColour, {texels.data(), texels.size()}); // it can
    return replaceTexture(list, undo, slot, static_cast<std::uint16_t>(width),
                          static_cast<std::uint16_t>(height), std::move(texels));
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

bool isTextureEdit(const UndoSlot& undo)
{
    const std::uint32_t kinds[] = {textureReplaced, textureTransformed, slotInserted,
                                   slotRemoved,     texturesFlipped,    texturesTurned};
    return std::ranges::count(kinds, undo.kind) > 0;
}

Message undoTextureEdit(TextureList& list, UndoSlot& undo, Model& model)
{
    std::span<const std::byte> block = undo.block;
    Message message = Message::none;
    switch (undo.kind) {
    case textureReplaced:
    case textureTransformed: {
        const auto saved = takeFrom<SavedTexture>(block);
        message = bringBack(list, block, saved);
        break;
    }
    case slotInserted: message = undoInsert(list, block, model); break;
    case slotRemoved: message = undoRemove(list, block, model); break;
    case texturesFlipped: {
        const auto saved = takeFrom<SavedFlip>(block);
        message = forEachSlot(
            saved.extent, [&](std::uint32_t slot) { return flipTexture(list, slot, saved.flip); });
        break;
    }
    case texturesTurned: {
        const auto saved = takeFrom<SavedTurn>(block);
        message = forEachSlot(saved.extent, [&](std::uint32_t slot) {
            return turnTexture(list, slot, opposite(saved.turn));
        });
        break;
    }
    default: break;
    }
    undoClear(undo);
    return message;
}

} // namespace facetor
