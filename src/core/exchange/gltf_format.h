#pragma once

#include "base/bytes.h"

#include <cstddef>
#include <cstdint>

namespace facetor::gltf {

// The numbers of glTF 2.0 and of its binary form, as its reader and its writer know them.

// A binary file: header, a chunk of JSON, perhaps a chunk of data.
inline constexpr std::uint32_t fileTag = tag("glTF");
inline constexpr std::uint32_t binaryVersion = 2;
inline constexpr std::uint32_t jsonChunk = tag("JSON"), binaryChunk = tag("BIN\0");
inline constexpr std::size_t headerSize = 12, chunkHeaderSize = 8; ///< bytes

// Types of an accessor's components.
inline constexpr unsigned signedByte = 5120, unsignedByte = 5121, signedShort = 5122,
                          unsignedShort = 5123, unsignedInteger = 5125, single = 5126;

// What a buffer view is for.
inline constexpr unsigned vertexData = 34962, indexData = 34963;

// Samplers.
inline constexpr unsigned nearest = 9728, repeat = 10497, clampToEdge = 33071,
                          mirroredRepeat = 33648;

// Modes of a primitive; those below are points and lines.
inline constexpr unsigned triangles = 4, triangleStrip = 5, triangleFan = 6;

} // namespace facetor::gltf
