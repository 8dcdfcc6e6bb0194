#include "base/bitmap_header.h"

namespace facetor {

BitmapHeader bitmapHeader(std::uint32_t width, std::uint32_t height, std::uint16_t bitCount,
                          std::uint32_t imageSize)
{
    BitmapHeader header;
    header.width = static_cast<std::int32_t>(width);
    header.height = static_cast<std::int32_t>(height);
    header.bitCount = bitCount;
    header.imageSize = imageSize;
    return header;
}

std::array<std::byte, bitmapHeaderSize> bitmapHeaderBytes(const BitmapHeader& header)
{
    const std::array<std::uint32_t, bitmapHeaderSize / 4> words{
        header.headerSize,
        static_cast<std::uint32_t>(header.width),
        static_cast<std::uint32_t>(header.height),
        header.planes | std::uint32_t{header.bitCount} << 16,
        header.compression,
        header.imageSize,
        static_cast<std::uint32_t>(header.xPixelsPerMetre),
        static_cast<std::uint32_t>(header.yPixelsPerMetre),
        header.coloursUsed,
        header.coloursImportant};
    std::array<std::byte, bitmapHeaderSize> bytes;
    for (std::size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<std::byte>(words[i / 4] >> i % 4 * 8);
    return bytes;
}

BitmapHeader readBitmapHeader(ByteReader& in)
{
    ByteReader fields{in.take(bitmapHeaderSize)};
    BitmapHeader header;
    header.headerSize = fields.u32();
    header.width = static_cast<std::int32_t>(fields.u32());
    header.height = static_cast<std::int32_t>(fields.u32());
    header.planes = fields.u16();
    header.bitCount = fields.u16();
    header.compression = fields.u32();
    header.imageSize = fields.u32();
    header.xPixelsPerMetre = static_cast<std::int32_t>(fields.u32());
    header.yPixelsPerMetre = static_cast<std::int32_t>(fields.u32());
    header.coloursUsed = fields.u32();
    header.coloursImportant = fields.u32();
    return header;
}

} // namespace facetor
