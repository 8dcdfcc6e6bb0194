#include "engine/texture_slot.h"

namespace facetor {

namespace {

constexpr Rgb555 orange = 0xFDE0;
constexpr Rgb555 green = 0x83E0;

/// Cells of 2 x 2 texels, the top left one orange.
Rgb555 blankPixels[blankTextureSize * blankTextureSize] = {
    orange, orange, green,  green,  orange, orange, green,  green,  // row 0
    orange, orange, green,  green,  orange, orange, green,  green,  //
    green,  green,  orange, orange, green,  green,  orange, orange, // row 2
    green,  green,  orange, orange, green,  green,  orange, orange, //
    orange, orange, green,  green,  orange, orange, green,  green,  // row 4
    orange, orange, green,  green,  orange, orange, green,  green,  //
    green,  green,  orange, orange, green,  green,  orange, orange, // row 6
    green,  green,  orange, orange, green,  green,  orange, orange, //
};

} // namespace

Rgb555* blankTexture()
{
    return blankPixels;
}

} // namespace facetor
