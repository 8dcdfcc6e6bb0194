#include "texture/texture_rules.h"

#include <algorithm>

namespace facetor {

namespace {

/// A last slot from here on is refused. 4096 itself is taken, and means the end of the list.
constexpr std::int32_t refusedLastSlot = 4097;

TextureSize clamped(std::int64_t width, std::int64_t height)
{
    constexpr std::int64_t largest = largestTextureSide;
    return {static_cast<std::int32_t>(std::clamp<std::int64_t>(width & 0x7FF8, 8, largest)),
            static_cast<std::int32_t>(std::clamp<std::int64_t>(height, 1, largest))};
}

} // namespace

InputFault outOf(Word what)
{
    return {Message::outOf, {}, what};
}

std::optional<InputFault> extentFault(SlotExtent extent)
{
    if (extent.first > extent.last) return InputFault{Message::dataError, Word::fromBehindTo};
    if (extent.last >= refusedLastSlot || extent.first < 0) return outOf(Word::polygons);
    return std::nullopt;
}

std::optional<InputFault> textureSizeFault(std::int32_t width, std::int32_t height)
{
    if (width % 8 != 0) return InputFault{Message::textureWidthNotMultipleOf8};
    if (width > largestTextureSide || width < 1) return outOf(Word::width);
    if (height > largestTextureSide || height < 1) return outOf(Word::height);
    return std::nullopt;
}

TextureSize doubledSize(TextureSize size)
{
    return clamped(std::int64_t{size.width} * 2, std::int64_t{size.height} * 2);
}

TextureSize halvedSize(TextureSize size)
{
    return clamped(size.width / 2, size.height / 2);
}

} // namespace facetor
