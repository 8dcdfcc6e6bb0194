#pragma once

#include "base/colour.h"
#include "engine/rasteriser.h"

#include <cstdint>

namespace facetor {

// What the blend modes do to one surface pixel, before light. Taking the low bit of each component
// away first keeps the components apart while a whole pixel is shifted.

inline constexpr std::uint32_t withoutLowBits = 0x7BDE;

constexpr Rgb555 halved(Rgb555 colour)
{
    return static_cast<Rgb555>((colour & withoutLowBits) >> 1);
}

constexpr Rgb555 averaged(Rgb555 a, Rgb555 b)
{
    return static_cast<Rgb555>(((a & withoutLowBits) + (b & withoutLowBits)) >> 1);
}

/// The surface pixel `d` under the source colour `s`.
template <PixelMode mode> constexpr Rgb555 blended(Rgb555 d, Rgb555 s)
{
    if constexpr (mode == PixelMode::shadow) return halved(d);
    if constexpr (mode == PixelMode::half) return halved(s);
    if constexpr (mode == PixelMode::translucent) return averaged(d, s);
    if constexpr (mode == PixelMode::count) return static_cast<Rgb555>(d + 1);
    return s;
}

/// Whether what a mode makes of a pixel depends on what was there.
constexpr bool readsSurface(PixelMode mode)
{
    return mode == PixelMode::shadow || mode == PixelMode::translucent || mode == PixelMode::count;
}

/// Calls `fill.template operator()<mode, choice>()` for a mode and a choice, like mesh or not, that
/// are known only at run time: the one branch before loops that have none.
template <typename Fill> void dispatchPixelMode(PixelMode mode, bool choice, Fill&& fill)
{
    const auto withChoice = [&]<PixelMode fixedMode>() {
        if (choice)
            fill.template operator()<fixedMode, true>();
        else
            fill.template operator()<fixedMode, false>();
    };
    switch (mode) {
    case PixelMode::replace: withChoice.template operator()<PixelMode::replace>(); break;
    case PixelMode::shadow: withChoice.template operator()<PixelMode::shadow>(); break;
    case PixelMode::half: withChoice.template operator()<PixelMode::half>(); break;
    case PixelMode::translucent: withChoice.template operator()<PixelMode::translucent>(); break;
    case PixelMode::lit: withChoice.template operator()<PixelMode::lit>(); break;
    case PixelMode::count: withChoice.template operator()<PixelMode::count>(); break;
    }
}

/// Calls `fill.template operator()<path>()` for a path known only at run time.
template <typename Fill> void dispatchFillPath(FillPath path, Fill&& fill)
{
    if (path == FillPath::vector)
        fill.template operator()<fastestFillPath>();
    else
        fill.template operator()<FillPath::plain>();
}

/// The quadrilateral with surface rows in y, as the fills work.
inline ScreenQuad toSurfaceRows(const ScreenQuad& quad, std::int32_t height)
{
    ScreenQuad result = quad;
    for (ScreenPoint& point : result) point.y = height - 1 - point.y;
    return result;
}

} // namespace facetor
