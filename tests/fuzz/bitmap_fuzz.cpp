// libFuzzer target of the conversion of packed bitmaps, which come from the clipboard.

#include "texture/bitmap_conversion.h"

#include <cstdlib>
#include <vector>

namespace {

using namespace facetor;

void require(bool holds)
{
    if (!holds) std::abort(); // what the fuzzer reports as a finding
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto bitmap = std::as_bytes(std::span(data, size));
    const auto [width, height] = packedBitmapSize(bitmap);
    if (!isConvertible(bitmap)) return 0;
    // One that is taken holds all its rows, so its size is no lie.
    require(width > 0 && height > 0 && width * std::int64_t{height} <= std::int64_t(size) * 2);
    std::vector<Rgb555> texels(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    require(convertBitmap(bitmap, 0x1234, texels));

    // What is copied and pasted again is the same but for the low bits that mark holes.
    const TextureSlot slot{static_cast<std::uint16_t>(width), static_cast<std::uint16_t>(height),
                           texels.data()};
    std::vector<std::byte> packed(packedTextureSize(slot));
    packTexture(slot, packed);
    std::vector<Rgb555> again(texels.size());
    require(convertBitmap(packed, 0x1234, again));
    for (std::size_t i = 0; i < texels.size(); ++i) require(((texels[i] ^ again[i]) & 0x7FFF) == 0);
    return 0;
}
