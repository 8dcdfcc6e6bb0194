#pragma once

#include "engine/engine.h"

namespace facetor {

// One polygon of a frame's list, as drawPolygons() draws each.

/// Whether it is drawn as lines: what is in its attribute counts as a whole only without the draw
/// flags.
bool isOutline(std::uint32_t drawFlags, const PolygonAttribute& attribute);

/// Whether it is left out because of the side that it shows.
bool isHidden(std::uint32_t drawFlags, const PolygonEntry& entry,
              const PolygonAttribute& attribute);

/// Draws it without its mark, as `attribute` says in place of its own.
void drawPlain(Engine& engine, const Model& model, const PolygonEntry& entry,
               const PolygonAttribute& attribute);

} // namespace facetor
