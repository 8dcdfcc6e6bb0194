#pragma once

#include "model/polygon_attribute.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace facetor {

inline constexpr std::size_t packedAttributeSize = 12;
using PackedAttribute = std::array<std::byte, packedAttributeSize>;

/// The console's own record of an attribute, its 16-bit fields big-endian: plane, sort and options
/// (a byte each), texture number, drawing mode, colour, Gouraud table, kind. A Gouraud polygon
/// takes the next table of its sort: the counter that is used, in units of 8 bytes of video memory,
/// goes on by one. They start at firstGouraudTable and at firstGouraudTable + GouraudCounts::light.
PackedAttribute packAttribute(const PolygonAttribute& attribute, std::uint16_t& lightTable,
                              std::uint16_t& tableTable);

} // namespace facetor
