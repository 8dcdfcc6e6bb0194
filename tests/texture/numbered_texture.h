#pragma once

#include "texture/texture_list.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace facetor {

/// Puts a texture of opaque texels that count from `first` on into a slot.
inline void putNumbered(TextureList& list, std::uint32_t slot, std::uint16_t width,
                        std::uint16_t height, int first = 0)
{
    Texels pixels;
    ASSERT_TRUE(pixels.allocate(std::size_t{width} * height));
    for (int i = 0; i < width * height; ++i)
        pixels[static_cast<std::size_t>(i)] = static_cast<Rgb555>(0x8000 | (first + i));
    list.set(slot, width, height, std::move(pixels));
}

/// A slot's texels without their opaque bits.
inline std::vector<int> numbersOf(const TextureList& list, std::uint32_t slot)
{
    const TextureSlot& texture = list.slot(slot);
    std::vector<int> numbers;
    for (int i = 0; i < texture.width * texture.height; ++i)
        numbers.push_back(texture.pixels[i] & 0x7FFF);
    return numbers;
}

} // namespace facetor
