#pragma once

#include <cstdint>

// FACETOR_VECTOR_FILLS tells whether the fills' vector loops are compiled. They need SSE2, the
// least that the program is built for on x86; FACETOR_PLAIN_FILLS leaves them out on any machine.
#if defined(__SSE2__) && !defined(FACETOR_PLAIN_FILLS)
#define FACETOR_VECTOR_FILLS 1
#else
#define FACETOR_VECTOR_FILLS 0
#endif

namespace facetor {

/// How the fills compute. Both give the same pixels.
enum class FillPath : std::uint8_t {
    plain,  ///< one pixel after the other, as the rules read
    vector, ///< rows and pixels side by side, small cells of textures from a table of shapes
};

/// The faster path of those that are compiled.
inline constexpr FillPath fastestFillPath =
    FACETOR_VECTOR_FILLS != 0 ? FillPath::vector : FillPath::plain;

} // namespace facetor
