// libFuzzer target of the texture list file's reader and writer.

#include "texture/texture_file.h"

#include <cstdlib>

namespace {

using namespace facetor;

void require(bool holds)
{
    if (!holds) std::abort(); // what the fuzzer reports as a finding
}

/// Every texel that the list claims to hold is read, so that the sanitizer sees the claim.
std::uint32_t sumOfTexels(const TextureList& list)
{
    std::uint32_t sum = 0;
    const std::uint32_t used = list.usedCount();
    for (std::uint32_t number = 0; number < used; ++number) {
        if (list.isEmpty(number)) continue;
        const TextureSlot& slot = list.slot(number);
        for (std::size_t i = 0; i < std::size_t{slot.width} * slot.height; ++i)
            sum += slot.pixels[i];
    }
    return sum;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static TextureList list;
    static const bool created = list.create() == Message::none;
    require(created);
    list.clearAll();
    const auto file = std::as_bytes(std::span(data, size));
    const bool read = readTextures(list, file) == Message::none;
    const std::uint32_t sum = sumOfTexels(list);
    require(list.usedCount() <= textureSlotCount);
    if (!read) return 0;

    const Bytes written = writeTextures(list);
    list.clearAll();
    require(readTextures(list, written) == Message::none);
    require(sumOfTexels(list) == sum);
    require(writeTextures(list) == written);
    return 0;
}
