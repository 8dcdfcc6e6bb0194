#pragma once

#include "view/view.h"

#include <cstdint>

namespace facetor {

// The rectangle in the view in which a picture lies that is to be sliced. Right and bottom lie just
// outside it. The mouse drags it by its inside and sizes it by its edges and corners.

/// Where a picture is put at first: in the middle of the view, as large as fits into half of it
/// with the picture's proportions. Needs a size of at least 1 x 1.
InclusiveRectangle startPlacement(ClientSize client, std::int32_t width, std::int32_t height);

/// A part of the rectangle: the sides that move when it is dragged, as bits.
enum PlacementSide : unsigned {
    placementLeft = 1,
    placementTop = 2,
    placementRight = 4,
    placementBottom = 8,
    placementInside = placementLeft | placementTop | placementRight | placementBottom,
};

/// How far from an edge it is still taken, in pixels.
inline constexpr std::int32_t placementReach = 4;

/// The sides that a drag from a point moves: an edge's, two at a corner, all within; 0 elsewhere.
unsigned placementSidesAt(const InclusiveRectangle& place, ScreenPoint point);

/// The rectangle after a drag of some of its sides. It is never turned about nor smaller than
/// smallestPlacement, and its middle stays within the view.
inline constexpr std::int32_t smallestPlacement = 8;
InclusiveRectangle draggedPlacement(const InclusiveRectangle& place, unsigned sides,
                                    std::int32_t dx, std::int32_t dy, ClientSize client);

} // namespace facetor
