#pragma once

#include "base/colour.h"
#include "base/text_writer.h"
#include "model/polygon_attribute.h"

#include <cstdint>
#include <string>

namespace facetor {

/// "C_RGB(%2d,%2d,%2d)" with red, green and blue.
void appendColour(TextWriter& text, Rgb555 colour);

/// The eight arguments of an attribute's C source entry, separated by ", ": plane, sort, texture,
/// colour, Gouraud, mode, direction, option. A Gouraud polygon takes the next index of its sort,
/// `lightIndex` (GRreal) or `tableIndex` (GRtbl), which goes on by one; both start at 0 and count
/// over all objects.
void appendAttribute(TextWriter& text, const PolygonAttribute& attribute, std::uint32_t& lightIndex,
                     std::uint32_t& tableIndex);

/// appendAttribute() as a text of its own.
std::string formatAttribute(const PolygonAttribute& attribute, std::uint32_t& lightIndex,
                            std::uint32_t& tableIndex);

} // namespace facetor
