#pragma once

#include "engine/cell_grid.h"
#include "engine/cell_shapes.h"
#include "engine/fill_path.h"

#include <array>
#include <cstdint>

namespace facetor {

#if FACETOR_VECTOR_FILLS

/// The cells of a polygon in drawing order: what each is looked up by, where its corner 0 lies on
/// the surface, which may be outside, and its pixels.
struct CellRows {
    alignas(16) std::array<std::uint32_t, gridCells * gridCells> key;
    alignas(16) std::array<std::int32_t, gridCells * gridCells> start;
    alignas(16) std::array<std::uint32_t, gridCells * gridCells> corner; ///< column, row << 16
    std::array<CellPixels, gridCells * gridCells> list;
};

/// Which of a cell's pixels are wanted: those of a CellList, or of the mesh by the parity of its
/// corner 0.
enum class CellUse { all, mesh, once, last };

/// Fills in the keys, starts and corners of the cells between four corners, `points`, that hold
/// surface rows in y; not their lists. False when a cell is too large for CellShapes. `width` is
/// the surface's, in pixels.
bool findCells(CellRows& cells, const ScreenQuad& points, std::int32_t width, CellUse use);

#endif

} // namespace facetor
