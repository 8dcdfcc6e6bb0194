#pragma once

#include "base/colour.h"

#include <optional>
#include <string>
#include <string_view>

namespace facetor {

/// A colour by hue, saturation and value.
struct Hsv {
    float hue;        ///< share of the circle from red over green and blue, 0 <= hue < 1
    float saturation; ///< 0-1
    float value;      ///< 0-1
};

/// Exact enough that toRgb555() gives every colour back. Grey has hue 0, black saturation 0 as
/// well.
Hsv toHsv(Rgb555 colour);

/// The nearest 15-bit colour, bit 15 clear. Takes any hue; needs the other two in 0-1.
Rgb555 toRgb555(const Hsv& hsv);

/// Steps of a channel, and of the value strip.
inline constexpr int channelSteps = 32;

enum class Channel { red, green, blue };

/// A channel of a colour, 0-31.
int channelOf(Rgb555 colour, Channel channel);

/// The colour with one channel set to `step`, which is clamped to 0-31. Keeps bit 15.
Rgb555 withChannel(Rgb555 colour, Channel channel, int step);

/// The step that a text of digits names, 31 for a greater number; none for any other text.
std::optional<int> parseStep(std::string_view text);

// A colour as a text of hexadecimal digits, in large letters, as the programmer has it in a source:
// the word as the editor holds it, 4 digits with red in its high bits and bit 15 clear, and 6
// digits of 8 bits each of red, green and blue. Read, both may have "0x" or "#" before them, any
// case, and fewer digits; bit 15 and the low three bits of a component of 8 do not count. None for
// any other text.
std::string formatWord(Rgb555 colour);
std::string formatHex(Rgb555 colour);
std::optional<Rgb555> parseWord(std::string_view text);
std::optional<Rgb555> parseHex(std::string_view text);

/// The colour that the user works on. Hue, saturation and value are kept beside the 15-bit colour,
/// since they do not follow from it where it is grey or black.
struct ChosenColour {
    Rgb555 colour = 0; ///< bit 15 clear
    Hsv hsv{};
};

/// Chooses a 15-bit colour (bit 15 is dropped). A grey keeps the hue chosen before, and black also
/// the saturation.
void choose(ChosenColour& chosen, Rgb555 colour);

/// Chooses by hue, saturation and value.
void choose(ChosenColour& chosen, const Hsv& hsv);

} // namespace facetor
