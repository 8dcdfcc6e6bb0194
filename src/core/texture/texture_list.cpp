#include "texture/texture_list.h"

#include "base/checksum.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <utility>

namespace facetor {

namespace {

std::span<const Rgb555> texelsOf(const TextureSlot& slot)
{
    return {slot.pixels, std::size_t{slot.width} * slot.height};
}

} // namespace

bool sameTexture(const TextureSlot& a, const TextureSlot& b)
{
    return a.width == b.width && a.height == b.height &&
           (a.pixels == b.pixels || std::ranges::equal(texelsOf(a), texelsOf(b)));
}

std::uint64_t contentOf(const TextureSlot& texture)
{
    const std::array<std::uint64_t, 2> parts{
        std::uint64_t{texture.width} << 16 | texture.height,
        contentHash(
            std::as_bytes(std::span(texture.pixels, std::size_t{texture.width} * texture.height)))};
    return contentHash(std::as_bytes(std::span(parts)));
}

TextureList::~TextureList()
{
    clearAll();
}

TextureList& TextureList::operator=(const TextureList& other)
{
    if (this == &other) return *this;
    clearAll();
    current = other.current;
    if (other.slots_.size() == 0) {
        slots_ = {};
    } else if (slots_.size() != 0 || create() == Message::none) {
        current = other.current;
        const std::uint32_t used = other.usedCount();
        for (std::uint32_t i = 0; i < used; ++i)
            if (!other.isEmpty(i))
                set(i, other.slot(i).width, other.slot(i).height, other.texels(i));
    }
    return *this;
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
    TextureSlot& slot = slots_[number];
    if (Texels::isShared(slot.pixels)) {
        Texels own;
        if (!own.allocate(texelsOf(slot).size())) return {};
        std::ranges::copy(texelsOf(slot), own.begin());
        Texels::release(std::exchange(slot.pixels, own.detach()));
    }
    return {slot.pixels, std::size_t{slot.width} * slot.height};
}

Texels TextureList::texels(std::uint32_t number) const
{
    return isEmpty(number) ? Texels{} : Texels::shareOf(slots_[number].pixels);
}

void TextureList::clear(std::uint32_t number)
{
    if (isEmpty(number)) return;
    Texels::release(slots_[number].pixels);
    slots_[number] = {blankTextureSize, blankTextureSize, blankTexture()};
}

void TextureList::set(std::uint32_t number, std::uint16_t width, std::uint16_t height,
                      Texels pixels)
{
    assert(width > 0 && height > 0 && pixels.size() >= std::size_t{width} * height);
    clear(number);
    slots_[number] = {width, height, pixels.detach()};
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
