#include "session/window_place.h"

#include <algorithm>

namespace facetor {

namespace {

struct Side {
    std::int32_t least, most;
};

/// Moves a side into [least, most), keeping its length unless that is too long.
Side moveInto(Side side, Side limits)
{
    const std::int64_t room = std::int64_t{limits.most} - limits.least;
    const std::int64_t length = std::min(std::int64_t{side.most} - side.least, room);
    const std::int64_t start =
        std::clamp<std::int64_t>(side.least, limits.least, limits.least + room - length);
    return {static_cast<std::int32_t>(start), static_cast<std::int32_t>(start + length)};
}

WindowRectangle moveInto(const WindowRectangle& place, const WindowRectangle& limits)
{
    const Side x = moveInto(Side{place.left, place.right}, {limits.left, limits.right});
    const Side y = moveInto(Side{place.top, place.bottom}, {limits.top, limits.bottom});
    return {x.least, y.least, x.most, y.most};
}

/// Whether a monitor shows so much of a window's caption that the mouse can move it, in pixels.
bool showsCaption(const WindowRectangle& monitor, const WindowRectangle& place)
{
    constexpr std::int32_t least = 64, captionHeight = 24;
    const std::int32_t across =
        std::min(monitor.right, place.right) - std::max(monitor.left, place.left);
    const std::int32_t down =
        std::min(monitor.bottom, place.top + captionHeight) - std::max(monitor.top, place.top);
    return across >= std::min(least, place.right - place.left) && down > captionHeight / 2;
}

std::int64_t distance(const WindowRectangle& monitor, const WindowRectangle& place)
{
    const auto gap = [](std::int64_t least, std::int64_t most, std::int64_t at) {
        return std::max({least - at, at - most, std::int64_t{0}});
    };
    return gap(monitor.left, monitor.right, (std::int64_t{place.left} + place.right) / 2) +
           gap(monitor.top, monitor.bottom, (std::int64_t{place.top} + place.bottom) / 2);
}

} // namespace

WindowRectangle restoredPlace(const WindowRectangle& remembered, const Screen& screen,
                              const WindowRectangle& otherwise)
{
    if (remembered.right <= remembered.left || remembered.bottom <= remembered.top)
        return otherwise;
    const WindowRectangle place = moveInto(remembered, screen.bounds);
    const auto& monitors = screen.monitors;
    if (monitors.empty() || std::ranges::any_of(monitors, [&](const WindowRectangle& monitor) {
            return showsCaption(monitor, place);
        }))
        return place;
    return moveInto(place, *std::ranges::min_element(monitors, {}, [&](const WindowRectangle& m) {
                        return distance(m, place);
                    }));
}

WindowRectangle firstPlace(std::int32_t width, std::int32_t height, const WindowRectangle& toolBox,
                           const WindowRectangle& work)
{
    constexpr std::int32_t gap = 8;
    const WindowRectangle wish{toolBox.right + gap, toolBox.top, toolBox.right + gap + width,
                               toolBox.top + height};
    return restoredPlace(wish, work, wish);
}

WindowRectangle toolWindowPlace(const WindowRectangle& remembered, const WindowRectangle& present,
                                const WindowRectangle& owner, const Screen& screen)
{
    const bool known = remembered.left < remembered.right && remembered.top < remembered.bottom;
    const std::int32_t left = known ? remembered.left : owner.right;
    const std::int32_t top = known ? remembered.top : owner.top;
    return restoredPlace(
        {left, top, left + (present.right - present.left), top + (present.bottom - present.top)},
        screen, present);
}

} // namespace facetor
