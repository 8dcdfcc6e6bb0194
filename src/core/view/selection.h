#pragma once

#include "engine/engine.h"
#include "model/model.h"

#include <cstdint>
#include <optional>
#include <span>

namespace facetor {

// Selection marks (the picked bit of polygon attributes): picking with the mouse, and the commands.
// What reads positions needs a frame that was listed and sorted for the model as it is.

enum class Mark { set, clear };

/// The listed polygon under a point of the client area: the nearest for `skip` 0, the one just
/// behind it for 1. The result is an index into engine.entries. A point belongs to a polygon by the
/// winding rule; of two polygons side by side, a shared edge belongs to one.
std::optional<std::uint32_t> hitTest(const Engine& engine, ScreenPoint point, std::uint32_t skip);

/// A rectangle that is being drawn up with the mouse.
struct RubberBand {
    bool open = false;
    ScreenPoint start{};
    InclusiveRectangle rectangle{}; ///< left <= right, top <= bottom; both sides belong to it
};

/// The mouse and the keys held with it, at one moment of picking.
struct PickInput {
    ScreenPoint cursor;
    bool buttonHeld;
    bool shift; ///< whole objects
    bool ctrl;  ///< clears marks instead of setting them
    bool tab;   ///< the polygon behind the nearest one; Shift then has no effect
};

/// One step of the selection tool. With the button held over a polygon, marks it, or with Shift its
/// object, and returns the pool index of its attribute. Beside all polygons it opens the rubber
/// band, which follows the cursor; when the button is released, every listed polygon with all four
/// corners within it is marked, or with Shift its object, and the band closes.
std::optional<std::uint32_t> pickPolygons(Model& model, const Engine& engine, RubberBand& band,
                                          const PickInput& input);

enum class Neighbour { next, previous };

/// Picking without a mouse: marks the listed polygon that comes after the marked ones in the order
/// of the attribute pool, or before them, around the end of the pool if need be. Takes the other
/// marks away unless `keepMarks`. Returns the pool index of its attribute; none, with nothing
/// changed, when no polygon is listed.
std::optional<std::uint32_t> pickNeighbour(Model& model, const Engine& engine, Neighbour neighbour,
                                           bool keepMarks);

/// Marks every polygon of the objects that have a marked one, or clears all their marks.
void selectModel(Model& model, Mark mark);

/// For each marked polygon, marks (or unmarks) all textured polygons with its texture number and
/// all untextured ones with its colour. Bit 15 of colours does not count. outOfMemory, with nothing
/// changed, when memory is short.
Message selectMaterial(Model& model, Mark mark);

/// Marks or unmarks every polygon.
void selectAll(Model& model, Mark mark);

/// Marks these polygons, given by the pool indices of their attributes, and no others.
void selectOnly(Model& model, std::span<const std::uint32_t> attributes);

/// How many polygons are marked.
std::uint32_t countPicked(const Model& model);

bool isAnyPicked(const Model& model);

} // namespace facetor
