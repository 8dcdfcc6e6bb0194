#pragma once

#include "engine/matrix_stack.h"
#include "model/model.h"

#include <cstdint>

namespace facetor {

// Addresses, sizes and limits of target images: docs/formats/sal.md. What writes them, what reads
// them and what warns before they are sent take them from here.

// Addresses of the console's memory.
inline constexpr std::uint32_t matricesAddress = 0x060AE000;
inline constexpr std::uint32_t scaleAddress = 0x060AFFF8;
inline constexpr std::uint32_t objectsAddress = 0x060B0000;
inline constexpr std::uint32_t textureTableAddress = 0x0602B000;
inline constexpr std::uint32_t lightDirectionAddress = 0x0602F000; ///< the scene begins here
inline constexpr std::uint32_t lightColourAddress = 0x0602F00C;
inline constexpr std::uint32_t viewAngleAddress = 0x0602F010;
inline constexpr std::uint32_t ambientColourAddress = 0x0602F014;
inline constexpr std::uint32_t backgroundAddress = 0x25E7FFFE;

// The sprite memory: Gouraud tables, and behind them the texels. What lies in it is named by 16-bit
// numbers that count units of 8 bytes from its start.
inline constexpr std::uint32_t spriteMemoryAddress = 0x25C00000;
inline constexpr std::uint32_t spriteUnit = 8;
inline constexpr std::uint32_t gouraudAddress = spriteMemoryAddress; ///< of the table numbered 0
inline constexpr std::uint32_t firstTexelOffset = 0x10000;
inline constexpr std::uint32_t texelsAddress = spriteMemoryAddress + firstTexelOffset;

/// Where the Gouraud tables begin, in units: those of light Gouraud polygons first, from here on,
/// then those of table Gouraud polygons.
inline constexpr std::uint16_t firstGouraudTable = 0x1C38;

/// What stands before a block's data in the file, in bytes: address and size.
inline constexpr std::uint32_t blockHeadSize = 8;

// Sizes of the console's records, in bytes.
inline constexpr std::uint32_t matrixSize = 48;
inline constexpr std::uint32_t objectSize = 44;
inline constexpr std::uint32_t dataHeaderSize = 24;
inline constexpr std::uint32_t pointSize = 12;
inline constexpr std::uint32_t polygonSize = 20;
inline constexpr std::uint32_t gouraudSize = 8;
inline constexpr std::uint32_t textureEntrySize = 8; ///< width, height, address, size

// What fits. A writer stays in its fields whatever it is given; beyond these the console's memory
// is overwritten or another texture is shown, without a sign.

/// Textures whose table ends before the scene.
inline constexpr std::uint32_t targetTextureLimit =
    (lightDirectionAddress - textureTableAddress) / textureEntrySize;

/// Bytes of texels that a 16-bit number of units still leads to.
inline constexpr std::uint32_t targetTexelBytes = 0x10000 * spriteUnit - firstTexelOffset;

/// Gouraud tables that end before the first texel.
inline constexpr std::uint32_t targetGouraudLimit =
    firstTexelOffset / spriteUnit - firstGouraudTable;

/// Texels of a row: those that the work buffer of 512 bytes holds.
inline constexpr std::uint32_t targetTextureWidth = 512 / 2;

/// Rows of a texture: its size word has a byte for them.
inline constexpr std::uint32_t targetTextureHeight = 0xFF;

/// Levels of the object tree: each takes two of the matrices that there are. Objects at this depth,
/// 0 being the top, and below are misplaced.
inline constexpr std::uint32_t targetDepthLimit = matrixStackDepth / 2;

static_assert(targetTextureLimit == 2048 && targetTexelBytes == 458752 &&
              targetGouraudLimit == 968);
static_assert(gouraudSize == spriteUnit && targetDepthLimit == 10);
static_assert(matricesAddress + objectCapacity * matrixSize <= scaleAddress);

} // namespace facetor
