#include "slice/slice_placement.h"

#include <algorithm>
#include <cstdlib>

namespace facetor {

InclusiveRectangle startPlacement(ClientSize client, std::int32_t width, std::int32_t height)
{
    client = clampedClient(client);
    const std::int64_t roomX = std::max(client.width / 2, smallestPlacement);
    const std::int64_t roomY = std::max(client.height / 2, smallestPlacement);
    const bool wide = std::int64_t{width} * roomY > std::int64_t{height} * roomX;
    const std::int64_t shownWidth = wide ? roomX : roomY * width / height;
    const std::int64_t shownHeight = wide ? roomX * height / width : roomY;
    const auto x = static_cast<std::int32_t>(std::max<std::int64_t>(shownWidth, 1));
    const auto y = static_cast<std::int32_t>(std::max<std::int64_t>(shownHeight, 1));
    const std::int32_t left = (client.width - x) / 2, top = (client.height - y) / 2;
    return {left, top, left + x, top + y};
}

unsigned placementSidesAt(const InclusiveRectangle& place, ScreenPoint point)
{
    const auto isNear = [](std::int32_t a, std::int32_t b) {
        return std::abs(a - b) <= placementReach;
    };
    const auto isWithin = [](std::int32_t at, std::int32_t first, std::int32_t last) {
        return at >= first - placementReach && at <= last + placementReach;
    };
    if (!isWithin(point.x, place.left, place.right) || !isWithin(point.y, place.top, place.bottom))
        return 0;
    // The far edges first: what lies near both of a narrow rectangle's edges makes it wider.
    unsigned sides = 0;
    if (isNear(point.x, place.right))
        sides |= placementRight;
    else if (isNear(point.x, place.left))
        sides |= placementLeft;
    if (isNear(point.y, place.bottom))
        sides |= placementBottom;
    else if (isNear(point.y, place.top))
        sides |= placementTop;
    return sides != 0 ? sides : unsigned{placementInside};
}

namespace {

/// Both ends of the rectangle along one axis after a drag.
void dragAxis(std::int32_t& first, std::int32_t& last, bool dragFirst, bool dragLast,
              std::int32_t by, std::int32_t view)
{
    if (dragFirst && dragLast) {
        const std::int32_t middle = (first + last) / 2;
        by = std::clamp(middle + by, 0, view) - middle;
        first += by;
        last += by;
    } else if (dragFirst) {
        first = std::min(first + by, last - smallestPlacement);
    } else if (dragLast) {
        last = std::max(last + by, first + smallestPlacement);
    }
}

} // namespace

InclusiveRectangle draggedPlacement(const InclusiveRectangle& place, unsigned sides,
                                    std::int32_t dx, std::int32_t dy, ClientSize client)
{
    InclusiveRectangle dragged = place;
    dragAxis(dragged.left, dragged.right, (sides & placementLeft) != 0,
             (sides & placementRight) != 0, dx, client.width);
    dragAxis(dragged.top, dragged.bottom, (sides & placementTop) != 0,
             (sides & placementBottom) != 0, dy, client.height);
    return dragged;
}

} // namespace facetor
