#include "output/source_text.h"

#include "base/data_file.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstring>

namespace facetor {

namespace {

constexpr std::size_t headerStars = 46; ///< in the first and the last line of the header

constexpr std::size_t fixedColumns = 8;
constexpr std::size_t titleCapacity = 64;

/// Below this, ten thousand times a single is a whole number of at most 53 bits and a fraction that
/// a double holds without loss: 24 bits times 14.
constexpr float scaledLimit = 1e9f;

/// "00" to "99", so that digits are made two at a time.
constexpr std::array<char, 200> makeDigitPairs()
{
    std::array<char, 200> pairs{};
    for (std::size_t i = 0; i < 100; ++i) {
        pairs[2 * i] = static_cast<char>('0' + i / 10);
        pairs[2 * i + 1] = static_cast<char>('0' + i % 10);
    }
    return pairs;
}
constexpr std::array<char, 200> digitPairs = makeDigitPairs();

/// Writes the digits of a number so that they end before `end`; returns where they begin.
char* writeDigits(char* end, std::uint32_t value)
{
    for (; value >= 100; value /= 100) std::memcpy(end -= 2, &digitPairs[value % 100 * 2], 2);
    if (value >= 10)
        std::memcpy(end -= 2, &digitPairs[value * 2], 2);
    else
        *--end = static_cast<char>('0' + value);
    return end;
}

/// The text between two places, right-aligned.
void appendAligned(TextWriter& text, const char* first, const char* last, std::size_t columns)
{
    const auto size = static_cast<std::size_t>(last - first);
    if (size < columns) text.append(' ', columns - size);
    text.append(std::string_view(first, size));
}

/// What most models hold, below 100: exactly eight columns, written in place.
void appendShortFixed(TextWriter& text, char sign, std::uint32_t whole, std::uint32_t fraction)
{
    char* const to = text.room(fixedColumns);
    to[0] = whole < 10 ? ' ' : sign;
    to[1] = whole < 10 ? sign : digitPairs[whole * 2];
    to[2] = digitPairs[whole * 2 + 1];
    to[3] = '.';
    std::memcpy(to + 4, &digitPairs[fraction / 100 * 2], 2);
    std::memcpy(to + 6, &digitPairs[fraction % 100 * 2], 2);
    text.advance(fixedColumns);
}

} // namespace

void appendFixed(TextWriter& text, float value)
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
    // The product is exact, and the conversion rounds half to even as the system always does.
    const auto scaled = static_cast<std::uint64_t>(std::llrint(std::fabs(double{value}) * 10000.0));
    const auto whole = static_cast<std::uint32_t>(scaled / 10000); // below scaledLimit
    const auto fraction = static_cast<std::uint32_t>(scaled % 10000);
    if (whole < 100) return appendShortFixed(text, sign, whole, fraction);
    std::memcpy(end - 2, &digitPairs[fraction % 100 * 2], 2);
    std::memcpy(end - 4, &digitPairs[fraction / 100 * 2], 2);
    end[-5] = '.';
    char* at = writeDigits(end - 5, whole);
    *--at = sign;
    appendAligned(text, at, end, fixedColumns);
}

void appendFixed(TextWriter& text, float x, float y, float z)
{
    appendFixed(text, x);
    text.append(',');
    appendFixed(text, y);
    text.append(',');
    appendFixed(text, z);
}

void appendNumber(TextWriter& text, std::uint32_t value, std::size_t columns)
{
    if (value < 100 && columns == 2) { // most indices and every colour component, in place
        char* const to = text.room(2);
        std::memcpy(to, &digitPairs[value * 2], 2);
        if (value < 10) to[0] = ' ';
        text.advance(2);
        return;
    }
    std::array<char, 16> buffer;
    char* const end = buffer.data() + buffer.size();
    appendAligned(text, writeDigits(end, value), end, columns);
}

void appendHex16(TextWriter& text, std::uint16_t value)
{
    text.append("0x");
    for (int shift = 12; shift >= 0; shift -= 4)
        text.append("0123456789abcdef"[value >> shift & 15]);
}

void appendHeaderStart(TextWriter& text, std::string_view title)
{
    text.append('/');
    text.append('*', headerStars);
    text.append("\r\n *\t");
    text.append(dataFileBanner);
    text.append("\r\n *\t");
    text.append(title);
    text.append("\r\n");
}

void appendCountLine(TextWriter& text, std::string_view label, std::uint32_t count)
{
    text.append(" *\t");
    text.append(label);
    appendNumber(text, count);
    text.append("\r\n");
}

void appendHeaderEnd(TextWriter& text)
{
    text.append(' ');
    text.append('*', headerStars);
    text.append("/\r\n\r\n");
}

void appendTableStart(TextWriter& text, std::string_view type, std::string_view prefix,
                      std::string_view name)
{
    text.append(type);
    text.append('\t');
    text.append(prefix);
    text.append('_');
    text.append(name);
    text.append("[] = {\r\n");
}

void appendTableEnd(TextWriter& text)
{
    text.append("};\r\n\r\n");
}

std::string_view fileTitle(std::string_view path)
{
    const std::size_t folder = path.find_last_of("/\\:");
    if (folder != std::string_view::npos) path.remove_prefix(folder + 1);
    return path.substr(0, titleCapacity);
}

} // namespace facetor
