#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace facetor {

/// CRC-32 with the polynomial 0xEDB88320, as PNG and ZIP have it: finds what a disk or a stranger
/// has changed. `before` is that of the bytes in front, for what is not in one piece.
std::uint32_t crc32(std::span<const std::byte> bytes, std::uint32_t before = 0);

/// FNV-1a of 64 bits: tells contents apart that nobody has made to look alike.
std::uint64_t contentHash(std::span<const std::byte> bytes);

} // namespace facetor
