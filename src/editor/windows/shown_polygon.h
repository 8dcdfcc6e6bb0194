#pragma once

#include <cstdint>
#include <span>

namespace facetor {

struct Editor;

// Picking polygons that a window names, by the pool indices of their attributes, and no others.
// Those that the model does not have any more are passed over. The attribute window shows the
// first one.

void pickOnly(Editor& editor, std::span<const std::uint32_t> attributes);

/// The same, and turns the view if need be so that the first one is seen.
void pickAndShow(Editor& editor, std::span<const std::uint32_t> attributes);

} // namespace facetor
