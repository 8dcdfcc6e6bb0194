#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace facetor {

using Bytes = std::vector<std::byte>;

/// The characters of a text as they would stand in a file.
Bytes bytesOf(std::string_view text);

/// A chunk's four-character tag as it stands in the file, first character in the lowest byte.
constexpr std::uint32_t tag(const char (&text)[5])
{
    std::uint32_t value = 0;
    for (int i = 3; i >= 0; --i) value = value << 8 | static_cast<unsigned char>(text[i]);
    return value;
}

/// The tag's four characters for a message, anything unprintable as '?'.
std::string_view tagText(std::uint32_t tag, std::array<char, 4>& buffer);

class FileWindow;

/// A cursor over little-endian bytes that does all bounds checks. It fails once and stays failed:
/// after a read beyond the end, every read gives zeros or empty spans and ok() is false. Of a file
/// it holds a window in memory; of such a reader and its copies only one may be read on.
class ByteReader {
public:
    explicit ByteReader(std::span<const std::byte> bytes) : rest_(bytes), size_(bytes.size()) {}
    explicit ByteReader(FileWindow& file);

    /// The next `size` bytes, or an empty span when fewer are left. Of a file, they stand until the
    /// next call of anything.
    std::span<const std::byte> take(std::size_t size);
    /// The next `size` bytes, or as many as are left, which stay to be taken.
    std::span<const std::byte> peek(std::size_t size);
    /// Passes over the next `size` bytes.
    void skip(std::uint64_t size);
    std::uint8_t u8() { return value<std::uint8_t>(); }
    std::uint16_t u16() { return value<std::uint16_t>(); }
    std::uint32_t u32() { return value<std::uint32_t>(); }
    /// An IEEE single, any bit pattern.
    float f32() { return std::bit_cast<float>(u32()); }

    bool ok() const { return ok_; }
    std::uint64_t left() const;
    /// Bytes read so far.
    std::uint64_t offset() const { return size_ - left(); }

private:
    /// Inline for files of many small fields; take() is for what is not in memory.
    template <typename Value> Value value()
    {
        const std::byte* from = rest_.data();
        if (ok_ && sizeof(Value) <= rest_.size()) {
            rest_ = rest_.subspan(sizeof(Value));
        } else {
            const auto bytes = take(sizeof(Value));
            if (bytes.empty()) return 0;
            from = bytes.data();
        }
        Value value = 0;
        for (std::size_t i = 0; i < sizeof(Value); ++i)
            value = static_cast<Value>(value | std::to_integer<Value>(from[i]) << 8 * i);
        return value;
    }

    std::span<const std::byte> rest_; ///< in memory
    FileWindow* file_ = nullptr;      ///< where more comes from
    std::uint64_t size_;
    bool ok_ = true;
};

/// What stands before every chunk's payload: tag and payload size in bytes.
struct ChunkHeader {
    std::uint32_t tag;
    std::uint32_t size;
};

/// Reads the next 8 bytes; none, with the reader failed, when fewer are left.
std::optional<ChunkHeader> readChunkHeader(ByteReader& in);

/// Builds a little-endian file in memory.
class ByteWriter {
public:
    void u8(std::uint8_t value);
    void u16(std::uint16_t value);
    void u32(std::uint32_t value);
    void f32(float value);
    void bytes(std::span<const std::byte> values);
    void text(std::string_view characters);
    void zeros(std::size_t count);

    /// Writes the tag and a size that endChunk() fills in. Returns the payload's offset.
    std::size_t beginChunk(std::uint32_t tag);
    void endChunk(std::size_t payload);

    /// Overwrites the four bytes at `offset`. Needs offset + 4 <= size().
    void patchU32(std::size_t offset, std::uint32_t value);

    std::size_t size() const { return bytes_.size(); }
    Bytes release() { return std::move(bytes_); }

private:
    Bytes bytes_;
};

} // namespace facetor
