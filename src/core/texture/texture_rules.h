#pragma once

#include "base/message.h"
#include "texture/texture_transforms.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace facetor {

// What the dialogs of the texture list window refuse when they are confirmed.

/// A message, and the texts that replace "^1" and "^2" in it.
struct InputFault {
    Message message;
    Word word1{}, word2{}; ///< what fills "^1" and "^2"
};

/// Message 40 about what is out of its range.
InputFault outOf(Word what);

/// A first slot above the last one or below 0, or a last one of 4097 and more.
std::optional<InputFault> extentFault(SlotExtent extent);

/// A width that is no multiple of 8; a width or a height outside 1 to 256.
std::optional<InputFault> textureSizeFault(std::int32_t width, std::int32_t height);

/// A texture's new size after a press of the size dialog's buttons: doubled or halved, the width
/// cut to a multiple of 8, 8 to 256 wide and 1 to 256 high. Any numbers are taken.
struct TextureSize {
    std::int32_t width, height;

    bool operator==(const TextureSize&) const = default;
};
TextureSize doubledSize(TextureSize size);
TextureSize halvedSize(TextureSize size);

} // namespace facetor
