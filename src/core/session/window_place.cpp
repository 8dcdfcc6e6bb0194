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

} // namespace

WindowRectangle restoredPlace(const WindowRectangle& remembered, const WindowRectangle& screen,
                              const WindowRectangle& otherwise)
{
    if (remembered.right <= remembered.left || remembered.bottom <= remembered.top)
        return otherwise;
    const Side x = moveInto({remembered.left, remembered.right}, {screen.left, screen.right});
    const Side y = moveInto({remembered.top, remembered.bottom}, {screen.top, screen.bottom});
    return {x.least, y.least, x.most, y.most};
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
                                const WindowRectangle& owner, const WindowRectangle& screen)
{
    const bool known = remembered.left < remembered.right && remembered.top < remembered.bottom;
    const std::int32_t left = known ? remembered.left : owner.right;
    const std::int32_t top = known ? remembered.top : owner.top;
    return restoredPlace(
        {left, top, left + (present.right - present.left), top + (present.bottom - present.top)},
        screen, present);
}

} // namespace facetor
