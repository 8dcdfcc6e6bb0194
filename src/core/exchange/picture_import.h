#pragma once

#include "base/message.h"
#include "image/dither.h"
#include "image/picture.h"
#include "texture/texture_list.h"

#include <optional>

namespace facetor {

enum class PictureSize {
    asItIs, ///< a width that is a multiple of 8, 8 to 256, and a height of 1 to 256
    fitted, ///< scaled down as a whole to such a size
};

struct PictureImport {
    PictureSize size = PictureSize::asItIs;
    Dither dither = Dither::none;
    std::optional<Rgb555> transparent; ///< the colour that takes the place of the picture's alpha
};

/// Makes a picture the texture of a slot. formatNotSupported, with the size in `reason`, for one
/// of another size; outOfMemory. Needs a created list and a picture that was decoded.
Message importPicture(TextureList& list, std::uint32_t slot, const Picture& picture,
                      const PictureImport& options, Reason& reason);

} // namespace facetor
