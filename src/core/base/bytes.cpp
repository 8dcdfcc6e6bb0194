#include "base/bytes.h"

#include "base/file_window.h"

#include <algorithm>
#include <bit>
#include <cassert>

namespace facetor {

Bytes bytesOf(std::string_view text)
{
    const auto bytes = std::as_bytes(std::span(text));
    return {bytes.begin(), bytes.end()};
}

std::string_view tagText(std::uint32_t tag, std::array<char, 4>& buffer)
{
    for (char& character : buffer) {
        const auto byte = static_cast<unsigned char>(tag & 0xFF);
        character = byte >= 0x20 && byte < 0x7F ? static_cast<char>(byte) : '?';
        tag >>= 8;
    }
    return {buffer.data(), buffer.size()};
}

ByteReader::ByteReader(FileWindow& file) : file_(&file), size_(file.left()) {}

std::uint64_t ByteReader::left() const
{
    return rest_.size() + (file_ ? file_->left() : 0);
}

std::span<const std::byte> ByteReader::peek(std::size_t size)
{
    if (!ok_) return {};
    if (file_ && size > rest_.size()) rest_ = file_->more(rest_, size);
    return rest_.first(std::min(size, rest_.size()));
}

void ByteReader::skip(std::uint64_t size)
{
    constexpr std::uint64_t step = 64 * 1024;
    for (; ok_ && size > 0; size -= std::min(size, step))
        (void)take(static_cast<std::size_t>(std::min(size, step)));
}

std::span<const std::byte> ByteReader::take(std::size_t size)
{
    // What cannot be there is not asked for: memory is had for no more than the file holds.
    if (ok_ && file_ && size > rest_.size() && size <= left()) rest_ = file_->more(rest_, size);
    if (!ok_ || size > rest_.size()) { // sizes compared: an offset plus a size could wrap
        ok_ = false;
        return {};
    }
    const auto taken = rest_.first(size);
    rest_ = rest_.subspan(size);
    return taken;
}

std::optional<ChunkHeader> readChunkHeader(ByteReader& in)
{
    const ChunkHeader header{in.u32(), in.u32()}; // braces: read from left to right
    if (!in.ok()) return std::nullopt;
    return header;
}

void ByteWriter::u8(std::uint8_t value)
{
    bytes_.push_back(std::byte{value});
}

void ByteWriter::u16(std::uint16_t value)
{
    u8(static_cast<std::uint8_t>(value & 0xFF));
    u8(static_cast<std::uint8_t>(value >> 8));
}

void ByteWriter::u32(std::uint32_t value)
{
    u16(static_cast<std::uint16_t>(value & 0xFFFF));
    u16(static_cast<std::uint16_t>(value >> 16));
}

void ByteWriter::f32(float value)
{
    u32(std::bit_cast<std::uint32_t>(value));
}

void ByteWriter::bytes(std::span<const std::byte> values)
{
    bytes_.insert(bytes_.end(), values.begin(), values.end());
}

void ByteWriter::text(std::string_view characters)
{
    bytes(std::as_bytes(std::span(characters)));
}

void ByteWriter::zeros(std::size_t count)
{
    bytes_.resize(bytes_.size() + count);
}

std::size_t ByteWriter::beginChunk(std::uint32_t tag)
{
    u32(tag);
    u32(0);
    return size();
}

void ByteWriter::endChunk(std::size_t payload)
{
    patchU32(payload - 4, static_cast<std::uint32_t>(size() - payload));
}

void ByteWriter::patchU32(std::size_t offset, std::uint32_t value)
{
    assert(offset + 4 <= size());
    for (std::size_t i = 0; i < 4; ++i)
        bytes_[offset + i] = static_cast<std::byte>(value >> (8 * i) & 0xFF);
}

} // namespace facetor
