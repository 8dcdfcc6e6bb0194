#include "texture/texture_list.h"

#include <cassert>
#include <utility>

namespace facetor {

namespace {

constexpr Rgb555 orange = 0xFDE0;
constexpr Rgb555 green = 0x83E0;

/// Cells of 2 x 2 texels, the top left one orange.
Rgb555 blankPixels[blankTextureSize * blankTextureSize] = {
    orange, orange, green,  green,  orange, orange, green,  green,  // row 0
    orange, orange, green,  green,  orange, orange, green,  green,  //
    green,  green,  orange, orange, green,  green,  orange, orange, // row 2
    green,  green,  orange, orange, green,  green,  orange, orange, //
    orange, orange, green,  green,  orange, orange, green,  green,  // row 4
    orange, orange, green,  green,  orange, orange, green,  green,  //
    green,  green,  orange, orange, green,  green,  orange, orange, // row 6
    green,  green,  orange, orange, green,  green,  orange, orange, //
};

} // namespace

Rgb555* blankTexture()
{
    return blankPixels;
}

TextureList::~TextureList()
{
    clearAll();
}

Message TextureList::create()
{
    clearAll();
    if (!slots_.allocate(textureSlotCount)) return Message::outOfMemory;
    for (TextureSlot& slot : slots_) slot = {blankTextureSize, blankTextureSize, blankTexture()};
    current = 0;
    return Message::none;
}

std::span<Rgb555> TextureList::pixels(std::uint32_t number)
{
    assert(!isEmpty(number));
    const TextureSlot& slot = slots_[number];
    return {slot.pixels, std::size_t{slot.width} * slot.height};
}

void TextureList::clear(std::uint32_t number)
{
    if (Rgb555* const pixels = releasePixels(number)) freePages(pixels);
}

Rgb555* TextureList::releasePixels(std::uint32_t number)
{
    if (isEmpty(number)) return nullptr;
    TextureSlot& slot = slots_[number];
    Rgb555* const pixels = slot.pixels;
    slot = {blankTextureSize, blankTextureSize, blankTexture()};
    return pixels;
}

void TextureList::set(std::uint32_t number, std::uint16_t width, std::uint16_t height,
                      PageArray<Rgb555> pixels)
{
    assert(width > 0 && height > 0 && pixels.size() >= std::size_t{width} * height);
    clear(number);
    slots_[number] = {width, height, pixels.release()};
}

void TextureList::moveTexture(std::uint32_t from, std::uint32_t to)
{
    assert(isEmpty(to));
    std::swap(slots_[from], slots_[to]);
}

void TextureList::clearAll()
{
    const std::uint32_t used = usedCount();
    for (std::uint32_t number = 0; number < used; ++number) clear(number);
}

std::uint32_t TextureList::usedCount() const
{
    const Rgb555* blank = blankTexture();
    const TextureSlot* const first = slots_.data();
    const TextureSlot* end = first + slots_.size();
    while (end != first && end[-1].pixels == blank) --end;
    return static_cast<std::uint32_t>(end - first);
}

} // namespace facetor
