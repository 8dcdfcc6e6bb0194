#pragma once

#include "base/colour.h"

#include <cstdint>
#include <cstring>

namespace facetor {

/// Stores `count` pixels of one colour; none when count <= 0. Short runs are written as two
/// overlapping stores of the widest size that fits, so that a row of a small polygon costs no loop.
inline void storeSolid(Rgb555* to, std::int32_t count, Rgb555 colour)
{
    std::uint64_t four = colour;
    four |= four << 16;
    four |= four << 32;
    if (count >= 8) {
        const std::uint64_t eight[2] = {four, four};
        for (std::int32_t at = 0; at + 8 <= count; at += 8)
            std::memcpy(to + at, eight, sizeof eight);
        std::memcpy(to + count - 8, eight, sizeof eight);
    } else if (count >= 4) {
        std::memcpy(to, &four, 8);
        std::memcpy(to + count - 4, &four, 8);
    } else if (count >= 2) {
        std::memcpy(to, &four, 4);
        std::memcpy(to + count - 2, &four, 4);
    } else if (count == 1) {
        *to = colour;
    }
}

} // namespace facetor
