#pragma once

#include "engine/texture_slot.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace facetor {

/// What the information box says of a slot; `width` and `height` are the words for its sizes.
std::string textureInformation(std::uint32_t slot, const TextureSlot& texture,
                               std::string_view width, std::string_view height);

/// A menu item's text as the tool tip of its button: without "&" and "...", the key in parentheses.
std::string tipOfMenuItem(std::string_view item);

} // namespace facetor
