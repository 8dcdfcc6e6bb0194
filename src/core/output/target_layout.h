#pragma once

#include <cstdint>

namespace facetor {

// Addresses and sizes of target images: docs/formats/sal.md.

// Addresses of the console's memory.
inline constexpr std::uint32_t matricesAddress = 0x060AE000;
inline constexpr std::uint32_t scaleAddress = 0x060AFFF8;
inline constexpr std::uint32_t objectsAddress = 0x060B0000;
inline constexpr std::uint32_t gouraudAddress = 0x25C00000; ///< of table 0; each has 8 bytes
inline constexpr std::uint32_t textureTableAddress = 0x0602B000;
inline constexpr std::uint32_t texelsAddress = 0x25C10000; ///< of the first texture
inline constexpr std::uint32_t lightDirectionAddress = 0x0602F000;
inline constexpr std::uint32_t lightColourAddress = 0x0602F00C;
inline constexpr std::uint32_t viewAngleAddress = 0x0602F010;
inline constexpr std::uint32_t ambientColourAddress = 0x0602F014;
inline constexpr std::uint32_t backgroundAddress = 0x25E7FFFE;

// Sizes of the console's records, in bytes.
inline constexpr std::uint32_t matrixSize = 48;
inline constexpr std::uint32_t objectSize = 44;
inline constexpr std::uint32_t dataHeaderSize = 24;
inline constexpr std::uint32_t pointSize = 12;
inline constexpr std::uint32_t polygonSize = 20;
inline constexpr std::uint32_t gouraudSize = 8;
inline constexpr std::uint32_t textureEntrySize = 8; ///< width, height, address, size

} // namespace facetor
