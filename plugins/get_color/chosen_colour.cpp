#include "get_color/chosen_colour.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <system_error>

namespace facetor {

namespace {

constexpr int mostStep = channelSteps - 1;
constexpr float sectors = 6; ///< of the hue circle, each between two of its pure colours

int bitsBelow(Channel channel)
{
    return 10 - 5 * static_cast<int>(channel);
}

/// A channel's share, 0-1, where its pure colour lies `centre` sectors into the circle.
float hueShare(float hue, float centre)
{
    float distance = std::abs(hue * sectors - centre);
    distance = std::min(distance, sectors - distance); // the other way round the circle
    return std::clamp(2 - distance, 0.0f, 1.0f);
}

std::string hexDigits(std::uint32_t value, int digits)
{
    std::string text;
    while (digits-- > 0) text += "0123456789ABCDEF"[value >> 4 * digits & 15];
    return text;
}

/// A number of at most so many hexadecimal digits.
std::optional<std::uint32_t> parseHexDigits(std::string_view text, std::size_t most)
{
    for (const std::string_view prefix : {"0x", "0X", "#"})
        if (text.starts_with(prefix)) {
            text.remove_prefix(prefix.size());
            break;
        }
    std::uint32_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, 16);
    if (text.size() > most || error != std::errc{} || end != text.data() + text.size())
        return std::nullopt;
    return value;
}

} // namespace

Hsv toHsv(Rgb555 colour)
{
    const int red = redOf(colour), green = greenOf(colour), blue = blueOf(colour);
    const int most = std::max({red, green, blue}), least = std::min({red, green, blue});
    const auto range = static_cast<float>(most - least);
    Hsv hsv{0, 0, static_cast<float>(most) / mostStep};
    if (most == least) return hsv;
    hsv.saturation = range / static_cast<float>(most);
    float sector = static_cast<float>(green - blue) / range; // beside red
    if (most == green)
        sector = 2 + static_cast<float>(blue - red) / range;
    else if (most == blue)
        sector = 4 + static_cast<float>(red - green) / range;
    if (sector < 0) sector += sectors;
    hsv.hue = sector / sectors;
    return hsv;
}

Rgb555 toRgb555(const Hsv& hsv)
{
    const float hue = hsv.hue - std::floor(hsv.hue);
    const auto step = [&](float centre) {
        const float share = 1 - hsv.saturation * (1 - hueShare(hue, centre));
        return static_cast<int>(std::lround(hsv.value * share * mostStep));
    };
    return rgb555(step(0), step(2), step(4));
}

int channelOf(Rgb555 colour, Channel channel)
{
    return colour >> bitsBelow(channel) & mostStep;
}

Rgb555 withChannel(Rgb555 colour, Channel channel, int step)
{
    const int bits = bitsBelow(channel);
    return static_cast<Rgb555>((colour & ~(mostStep << bits)) | std::clamp(step, 0, mostStep)
                                                                    << bits);
}

std::optional<int> parseStep(std::string_view text)
{
    if (text.empty() || text.find_first_not_of("0123456789") != text.npos) return std::nullopt;
    int step = 0;
    for (const char digit : text) step = std::min(10 * step + (digit - '0'), mostStep);
    return step;
}

std::string formatWord(Rgb555 colour)
{
    return hexDigits(colour & ~std::uint32_t{opaqueBit}, 4);
}

std::string formatHex(Rgb555 colour)
{
    const auto [red, green, blue] = toScreenColour(colour);
    return hexDigits(std::uint32_t{red} << 16 | std::uint32_t{green} << 8 | blue, 6);
}

std::optional<Rgb555> parseWord(std::string_view text)
{
    const auto value = parseHexDigits(text, 4);
    return value ? std::optional(static_cast<Rgb555>(*value & ~std::uint32_t{opaqueBit}))
                 : std::nullopt;
}

std::optional<Rgb555> parseHex(std::string_view text)
{
    const auto value = parseHexDigits(text, 6);
    if (!value) return std::nullopt;
    const auto component = [&](int shift) { return static_cast<int>(*value >> shift & 31); };
    return rgb555(component(19), component(11), component(3));
}

void choose(ChosenColour& chosen, Rgb555 colour)
{
    chosen.colour = colour & ~opaqueBit;
    Hsv hsv = toHsv(chosen.colour);
    if (hsv.saturation == 0) hsv.hue = chosen.hsv.hue;
    if (hsv.value == 0) hsv.saturation = chosen.hsv.saturation;
    chosen.hsv = hsv;
}

void choose(ChosenColour& chosen, const Hsv& hsv)
{
    chosen.hsv = hsv;
    chosen.colour = toRgb555(hsv);
}

} // namespace facetor
