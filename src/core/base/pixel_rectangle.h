#pragma once

#include <cstdint>

namespace facetor {

/// A rectangle of a picture or a window, y growing downwards; right and bottom are exclusive.
struct PixelRectangle {
    std::int32_t left, top, right, bottom;

    bool operator==(const PixelRectangle&) const = default;
};

} // namespace facetor
