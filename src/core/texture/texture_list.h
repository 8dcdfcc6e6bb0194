#pragma once

#include "base/colour.h"
#include "base/message.h"
#include "base/pages.h"
#include "engine/texture_slot.h"
#include "model/polygon_attribute.h"
#include "texture/texels.h"

#include <cstdint>
#include <span>

namespace facetor {

inline constexpr std::uint32_t textureSlotCount = textureSlots; ///< what polygons can name

/// Whether two slots show the same: size and every texel.
bool sameTexture(const TextureSlot& a, const TextureSlot& b);

/// What tells textures apart: a hash of size and texels.
std::uint64_t contentOf(const TextureSlot& texture);

/// A texture list: 4096 slots that polygons refer to by number. A slot is empty exactly when it
/// shows the blank texture; it owns its pixels otherwise, which copies of the list share with it.
class TextureList {
public:
    TextureList() = default;
    ~TextureList();
    /// A copy for which memory is short has no table, as before create().
    TextureList(const TextureList& other) { *this = other; }
    TextureList& operator=(const TextureList& other);

    /// Allocates the table and makes every slot empty. outOfMemory when memory is short.
    Message create();

    /// The table as the engine takes it; empty before create().
    std::span<const TextureSlot> slots() const { return {slots_.data(), slots_.size()}; }

    /// Needs number < textureSlotCount.
    const TextureSlot& slot(std::uint32_t number) const { return slots_[number]; }
    /// The slot's pixels, for edits in place: its own from then on. None when memory is short.
    /// Needs a slot that is not empty.
    std::span<Rgb555> pixels(std::uint32_t number);
    /// A share of the slot's pixels, which set() takes; nothing for an empty slot.
    Texels texels(std::uint32_t number) const;
    bool isEmpty(std::uint32_t number) const { return slots_[number].pixels == blankTexture(); }

    /// Makes the slot empty.
    void clear(std::uint32_t number);
    /// Makes the slot own `pixels`, which hold width x height texels, in place of what it held.
    /// Needs both sizes in 1-65535: nothing downstream takes a texture without texels.
    void set(std::uint32_t number, std::uint16_t width, std::uint16_t height, Texels pixels);
    /// Moves a texture, or an empty slot's state, to a slot that is empty; `from` is empty
    /// afterwards.
    void moveTexture(std::uint32_t from, std::uint32_t to);
    /// Makes every slot empty.
    void clearAll();

    /// Slots up to and including the highest one that is not empty; empty ones below it count.
    std::uint32_t usedCount() const;

    /// The slot that imports and transforms act on, 0 to 4095.
    std::uint32_t current = 0;

private:
    PageArray<TextureSlot> slots_;
};

} // namespace facetor
