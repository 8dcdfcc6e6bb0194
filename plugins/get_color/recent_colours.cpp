#include "get_color/recent_colours.h"

#include <algorithm>

namespace facetor {

std::span<const Rgb555> inUse(const RecentColours& recent)
{
    return std::span(recent.colours)
        .first(std::min<std::size_t>(recent.count, recent.colours.size()));
}

void remember(RecentColours& recent, Rgb555 colour)
{
    colour &= ~opaqueBit;
    const std::size_t count = inUse(recent).size();
    auto last = std::find(recent.colours.begin(), recent.colours.begin() + count, colour);
    if (last == recent.colours.end()) --last;
    recent.count =
        std::max<std::uint32_t>(static_cast<std::uint32_t>(count),
                                static_cast<std::uint32_t>(last - recent.colours.begin()) + 1);
    std::move_backward(recent.colours.begin(), last, last + 1);
    recent.colours.front() = colour;
}

} // namespace facetor
