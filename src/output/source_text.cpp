#include "output/source_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace facetor {

namespace {

constexpr std::size_t fixedColumns = 8;
constexpr std::size_t titleCapacity = 64;

/// Below this, ten thousand times a single is a whole number of at most 53 bits and a fraction that
/// a double holds without loss: 24 bits times 14.
constexpr float scaledLimit = 1e9f;

/// The text of digits and sign, right-aligned.
void appendAligned(std::string& text, const char* first, const char* last, std::size_t columns)
{
    const auto size = static_cast<std::size_t>(last - first);
    if (size < columns) text.append(columns - size, ' ');
    text.append(first, last);
}

} // namespace

void appendFixed(std::string& text, float value)
{
    if (!std::isfinite(value)) value = 0.0f;
    std::array<char, 64> buffer;
    char* const end = buffer.data() + buffer.size();
    const char sign = std::signbit(value) ? '-' : ' ';
    if (std::fabs(value) >= scaledLimit) {
        buffer[0] = sign;
        const auto result = std::to_chars(buffer.data() + 1, end, std::fabs(double{value}),
                                          std::chars_format::fixed, 4);
        appendAligned(text, buffer.data(), result.ptr, fixedColumns);
        return;
    }
    // The run-time's rounding to an integer is half to even, and the product is exact.
    auto scaled = static_cast<std::uint64_t>(std::llrint(std::fabs(double{value}) * 10000.0));
    char* at = end;
    for (int digit = 0; digit < 4; ++digit, scaled /= 10)
        *--at = static_cast<char>('0' + scaled % 10);
    *--at = '.';
    do {
        *--at = static_cast<char>('0' + scaled % 10);
        scaled /= 10;
    } while (scaled != 0);
    *--at = sign;
    appendAligned(text, at, end, fixedColumns);
}

void appendFixed(std::string& text, float x, float y, float z)
{
    appendFixed(text, x);
    text += ',';
    appendFixed(text, y);
    text += ',';
    appendFixed(text, z);
}

void appendNumber(std::string& text, std::uint32_t value, std::size_t columns)
{
    std::array<char, 16> buffer;
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
    appendAligned(text, buffer.data(), result.ptr, columns);
}

void appendHex16(std::string& text, std::uint16_t value)
{
    text += "0x";
    for (int shift = 12; shift >= 0; shift -= 4) text += "0123456789abcdef"[value >> shift & 15];
}

void appendColour(std::string& text, Rgb555 colour)
{
    text += "C_RGB(";
    appendNumber(text, static_cast<std::uint32_t>(redOf(colour)), 2);
    text += ',';
    appendNumber(text, static_cast<std::uint32_t>(greenOf(colour)), 2);
    text += ',';
    appendNumber(text, static_cast<std::uint32_t>(blueOf(colour)), 2);
    text += ')';
}

void appendTableStart(std::string& text, std::string_view type, std::string_view prefix,
                      std::string_view name)
{
    text += type;
    text += '\t';
    text += prefix;
    text += '_';
    text += name;
    text += "[] = {\r\n";
}

void appendTableEnd(std::string& text)
{
    text += "};\r\n\r\n";
}

std::string_view fileTitle(std::string_view path)
{
    const std::size_t folder = path.find_last_of("/\\:");
    if (folder != std::string_view::npos) path.remove_prefix(folder + 1);
    return path.substr(0, titleCapacity);
}

} // namespace facetor
