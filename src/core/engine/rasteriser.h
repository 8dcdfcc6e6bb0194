#pragma once

#include "engine/engine.h"

#include <array>
#include <cstdint>

namespace facetor {

// The fills of one quadrilateral. All take corners in screen positions within +-2^28, in order
// around the polygon; what lies outside the surface is cut off, and degenerate input draws nothing.
// Light levels are -16 to 16. The texels of a texture, of at least 1 x 1, must stay as they are
// until resetFrame().

/// What happens to a pixel: the blend modes of the console, and lit texels. `count` adds one to it,
/// whatever would be drawn, so that it tells how often it is written.
enum class PixelMode : std::uint8_t { replace, shadow, half, translucent, lit, count };

/// The blend mode in an attribute's flags, unless the settings are to count: shadow wins over half,
/// half over translucent.
PixelMode flatPixelMode(const EngineSettings& settings, std::uint32_t flags);
/// The same for textured fills: lit with useLight and none of the blend modes.
PixelMode texturePixelMode(const EngineSettings& settings, std::uint32_t flags);

/// Texture flip of an attribute: 0 none, 1 horizontal, 2 vertical, 3 both.
int textureFlip(std::uint32_t flags);

/// Fills with one colour. With useLight in `flags` the colour goes through the colour-with-light
/// rule at `level` first.
void fillFlat(Engine& engine, const ScreenQuad& quad, Rgb555 colour, int level,
              std::uint32_t flags);

/// Fills with a colour that four Gouraud colours brighten or darken from corner to corner: a
/// component of 16 changes nothing.
void fillGouraud(Engine& engine, const ScreenQuad& quad, Rgb555 colour,
                 const std::array<Rgb555, 4>& gouraud, std::uint32_t flags);

/// Fills with a texture laid over the corners. `level` is what half and translucent texels are lit
/// with, and with useLight in `flags` others, too: without useLight it must be 16.
void fillTextured(Engine& engine, const ScreenQuad& quad, const TextureSlot& texture, int level,
                  std::uint32_t flags);

/// fillTextured() with a Gouraud step added to each texel's components.
void fillTexturedGouraud(Engine& engine, const ScreenQuad& quad, const TextureSlot& texture,
                         const std::array<Rgb555, 4>& gouraud, std::uint32_t flags);

/// The edges 0-1, 0-3, 2-1 and 2-3 as lines of one pixel's width.
void drawOutline(FrameSurface& surface, const ScreenQuad& quad, Rgb555 colour);
/// A line with both of its ends, one pixel for each step of the longer axis. A pixel half-way
/// between two is the one further on, so the pixels depend on the line's direction. The ends may
/// lie off the surface, apart by at most 2^29 pixels on each axis.
void drawLine(FrameSurface& surface, ScreenPoint from, ScreenPoint to, Rgb555 colour);
/// Sets one pixel; outside the surface it does nothing.
void plot(FrameSurface& surface, ScreenPoint at, Rgb555 colour);

} // namespace facetor
