#include "output/target_reader.h"

#include "base/bytes.h"

#include <utility>

namespace facetor {

namespace {

constexpr std::uint32_t textureTableAddress = 0x0602B000;
constexpr std::uint32_t texelAddress = 0x25C10000; ///< of the first texture's texels
constexpr std::size_t tableEntrySize = 8;          ///< width, height, address, size

/// In the console's byte order.
std::uint16_t wordAt(std::span<const std::byte> bytes, std::size_t offset)
{
    return static_cast<std::uint16_t>(std::to_integer<unsigned>(bytes[offset]) << 8 |
                                      std::to_integer<unsigned>(bytes[offset + 1]));
}

} // namespace

Message readTextureImage(TextureList& list, std::span<const std::byte> image, Reason& reason)
{
    const auto fail = [&](const std::string& what) {
        reason.text = what;
        return Message::formatNotSupported;
    };
    std::span<const std::byte> table, texels;
    for (ByteReader in{image}; in.left() > 0;) {
        const std::uint32_t address = in.u32(), size = in.u32();
        if (!in.ok() || size > in.left()) return fail("a block is cut");
        const auto block = in.take(size);
        if (address == textureTableAddress) table = block;
        if (address == texelAddress) texels = block;
    }
    const std::size_t count = table.size() / tableEntrySize;
    if (count == 0) return fail("it holds no textures");
    if (count > textureSlotCount)
        return fail(std::to_string(count) + " textures where " + std::to_string(textureSlotCount) +
                    " fit");
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint16_t width = wordAt(table, i * tableEntrySize);
        const std::uint16_t height = wordAt(table, i * tableEntrySize + 2);
        const std::size_t size = std::size_t{width} * height;
        if (size == 0 || size > texels.size() / 2)
            return fail("texture " + std::to_string(i) + " has no texels or more than there are");
        Texels own;
        if (!own.allocate(size)) return Message::outOfMemory;
        for (std::size_t k = 0; k < size; ++k) {
            const Rgb555 texel = wordAt(texels, k * 2);
            // toConsoleColour() exchanges red and blue; it is its own inverse.
            own[k] = (texel & opaqueBit) != 0 ? toConsoleColour(texel) : Rgb555{0};
        }
        texels = texels.subspan(size * 2);
        list.set(static_cast<std::uint32_t>(i), width, height, std::move(own));
    }
    return Message::none;
}

} // namespace facetor
