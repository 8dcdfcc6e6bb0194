#include "base/checksum.h"

#include <array>

namespace facetor {

namespace {

constexpr std::array<std::uint32_t, 256> crcTable = [] {
    std::array<std::uint32_t, 256> table{};
    for (std::uint32_t i = 0; i < table.size(); ++i) {
        std::uint32_t value = i;
        for (int bit = 0; bit < 8; ++bit) value = value >> 1 ^ ((value & 1) ? 0xEDB88320 : 0);
        table[i] = value;
    }
    return table;
}();

} // namespace

std::uint32_t crc32(std::span<const std::byte> bytes, std::uint32_t before)
{
    std::uint32_t value = ~before;
    for (const std::byte byte : bytes)
        value = value >> 8 ^ crcTable[(value ^ static_cast<std::uint32_t>(byte)) & 0xFF];
    return ~value;
}

std::uint64_t contentHash(std::span<const std::byte> bytes)
{
    std::uint64_t hash = 14695981039346656037u;
    for (const std::byte byte : bytes)
        hash = (hash ^ static_cast<std::uint64_t>(byte)) * 1099511628211u;
    return hash;
}

} // namespace facetor
