#pragma once

#include "base/colour.h"
#include "base/geometry.h"
#include "base/text.h"
#include "view/view.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace facetor {

// Values of options as text. None for whatever is not exactly one value in its range: no blanks, no
// trailing characters, no number that is not finite. base/text.h has parseFloat().

/// Needs least <= most; both belong to the range.
std::optional<std::int32_t> parseInteger(std::string_view text, std::int32_t least,
                                         std::int32_t most);
/// A number above 0, as a scale is.
std::optional<float> parsePositive(std::string_view text);
/// "X,Y,Z"
std::optional<Vector3> parseVector(std::string_view text);
/// "AX,AY,AZ", each any angle
std::optional<std::array<Angle, 3>> parseAngles(std::string_view text);
/// "R,G,B", each 0-31
std::optional<Rgb555> parseColour(std::string_view text);
/// "WxH": a size that a frame surface can have, 4x1 to 640x489.
std::optional<ClientSize> parseSize(std::string_view text);
/// "WxH": the largest size of a texture, a width of 8 to 256 that is a multiple of 8 and a height
/// of 1 to 256.
std::optional<std::array<std::uint32_t, 2>> parseTextureSize(std::string_view text);
/// Degrees from 1 to 179, as angle units.
std::optional<Angle> parseViewAngle(std::string_view text);

} // namespace facetor
