#include "option_values.h"

#include <charconv>
#include <cmath>
#include <limits>

namespace facetor {

namespace {

/// The three parts of "A,B,C"; none when there are more or fewer.
std::optional<std::array<std::string_view, 3>> splitTriple(std::string_view text)
{
    const std::size_t first = text.find(',');
    if (first == std::string_view::npos) return std::nullopt;
    const std::size_t second = text.find(',', first + 1);
    if (second == std::string_view::npos) return std::nullopt;
    // A third comma stays in the last part, which is no number then.
    return {{text.substr(0, first), text.substr(first + 1, second - first - 1),
             text.substr(second + 1)}};
}

std::optional<std::array<std::int32_t, 3>> parseIntegers(std::string_view text, std::int32_t least,
                                                         std::int32_t most)
{
    const auto parts = splitTriple(text);
    if (!parts) return std::nullopt;
    std::array<std::int32_t, 3> values;
    for (std::size_t i = 0; i < 3; ++i) {
        const auto value = parseInteger((*parts)[i], least, most);
        if (!value) return std::nullopt;
        values[i] = *value;
    }
    return values;
}

} // namespace

std::optional<std::int32_t> parseInteger(std::string_view text, std::int32_t least,
                                         std::int32_t most)
{
    const std::optional<std::int32_t> value = parseWhole(text);
    return value && *value >= least && *value <= most ? value : std::nullopt;
}

std::optional<float> parsePositive(std::string_view text)
{
    const std::optional<float> value = parseFloat(text);
    return value && *value > 0 ? value : std::nullopt;
}

std::optional<Vector3> parseVector(std::string_view text)
{
    const auto parts = splitTriple(text);
    if (!parts) return std::nullopt;
    const auto x = parseFloat((*parts)[0]), y = parseFloat((*parts)[1]),
               z = parseFloat((*parts)[2]);
    if (!x || !y || !z) return std::nullopt;
    return Vector3{*x, *y, *z};
}

std::optional<std::array<Angle, 3>> parseAngles(std::string_view text)
{
    return parseIntegers(text, std::numeric_limits<Angle>::min(),
                         std::numeric_limits<Angle>::max());
}

std::optional<Rgb555> parseColour(std::string_view text)
{
    const auto components = parseIntegers(text, 0, 31);
    if (!components) return std::nullopt;
    return rgb555((*components)[0], (*components)[1], (*components)[2]);
}

std::optional<ClientSize> parseSize(std::string_view text)
{
    const std::size_t cross = text.find('x');
    if (cross == std::string_view::npos) return std::nullopt;
    const auto width = parseInteger(text.substr(0, cross), 4, surfaceMaxWidth);
    const auto height = parseInteger(text.substr(cross + 1), 1, surfaceMaxHeight);
    if (!width || !height) return std::nullopt;
    return ClientSize{*width, *height};
}

std::optional<std::array<std::uint32_t, 2>> parseTextureSize(std::string_view text)
{
    const std::size_t cross = text.find('x');
    if (cross == std::string_view::npos) return std::nullopt;
    const auto width = parseInteger(text.substr(0, cross), 8, 256);
    const auto height = parseInteger(text.substr(cross + 1), 1, 256);
    if (!width || !height || *width % 8 != 0) return std::nullopt;
    return {{static_cast<std::uint32_t>(*width), static_cast<std::uint32_t>(*height)}};
}

std::optional<Angle> parseViewAngle(std::string_view text)
{
    const auto degrees = parseFloat(text);
    if (!degrees || *degrees < 1.0f || *degrees > 179.0f) return std::nullopt;
    return degreesToAngle(*degrees);
}

} // namespace facetor
