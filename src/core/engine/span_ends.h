#pragma once

#include "engine/engine.h"
#include "engine/fill_path.h"

#include <array>
#include <cstdint>

namespace facetor {

// The rows and span ends that the fills share. Rows here are surface rows: row r is screen row
// height - 1 - r.

/// Entries for each of the two ends: a row each, and room for the last whole vector.
inline constexpr std::size_t spanEndsCapacity = surfaceMaxHeight + 16;

/// Rows to fill, both included; none when first > last.
struct RowRange {
    std::int32_t first, last;
};

/// Where each row's span begins and ends, both included and not yet clamped to the surface;
/// indexed by surface row. A span with left > right is empty.
struct SpanEnds {
    std::int16_t* left;
    std::int16_t* right;
};

inline SpanEnds spanEndsOf(Engine& engine)
{
    return {engine.spanEnds.data(), engine.spanEnds.data() + spanEndsCapacity};
}

/// Finds the spans of a quadrilateral whose points hold surface rows in y, for the rows that lie in
/// 0 to height - 1. The ends are the smallest and largest x of the edges 0-1, 1-2, 3-2 and 0-3 at
/// each row: trunc((xb - xa) t) + xa with t = (r - ya) / (yb - ya) in single precision, an edge
/// counting at both of its ends. Ends beyond 16 bits saturate.
template <FillPath path>
RowRange findQuadSpans(const SpanEnds& ends, const std::array<ScreenPoint, 4>& point,
                       std::int32_t height);

/// The same of a triangle with the edges 0-1, 1-2 and 0-2.
template <FillPath path>
RowRange findTriangleSpans(const SpanEnds& ends, const std::array<ScreenPoint, 3>& point,
                           std::int32_t height);

} // namespace facetor
