#pragma once

#include "texture/texels.h"
#include "texture/texture_rules.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>

namespace facetor {

/// One image file and what reads it, a plug-in for instance. They are called in the order in
/// which they stand here, and what they answer is not trusted. An empty one is a reader that is no
/// longer there.
struct ImageSource {
    std::function<bool()> check; ///< whether the file is of the reader's kind
    /// Pixels; any numbers, left alone when there is no answer.
    std::function<void(std::int32_t& width, std::int32_t& height)> size;
    std::function<int()> depth; ///< bits a pixel of the image buffer
    /// Fills the image buffer (image/bitmap_conversion.h); false when it cannot.
    std::function<bool(std::span<std::byte> buffer)> bits;
};

/// A texture from an image. `pixels` holds width x height texels when there is no fault.
struct ImportedImage {
    std::optional<InputFault> fault;
    std::uint16_t width = 0, height = 0;
    Texels pixels;
};

/// Reads an image as a texture; a texel of the transparent colour is transparent. The faults, in
/// this order: noPlugIn for a function that is missing, formatNotSupported for another kind of
/// file, what textureSizeFault() says of the size, colourModeNotSupported for a depth without an
/// image buffer, outOfMemory, cannotOpenFile when the buffer cannot be filled.
ImportedImage importImage(const ImageSource& source, Rgb555 transparentColour);

} // namespace facetor
