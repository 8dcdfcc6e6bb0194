#include "base/text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace facetor {

std::string_view cutExtension(std::string_view path)
{
    return path.substr(0, path.rfind('.'));
}

std::string_view extensionOf(std::string_view path)
{
    const std::size_t dot = path.rfind('.');
    return dot == std::string_view::npos ? std::string_view{} : path.substr(dot + 1);
}

bool equalIgnoringCase(std::string_view a, std::string_view b)
{
    const auto lower = [](char c) {
        return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    };
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [&](char x, char y) { return lower(x) == lower(y); });
}

std::string formatShortest(float value)
{
    std::array<char, 32> buffer;
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
    return {buffer.data(), result.ptr};
}

std::string formatFixed(float value, int decimals, std::size_t columns, PositiveSign positive)
{
    std::array<char, 64> buffer; // 39 digits, sign, point and decimals
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                      std::chars_format::fixed, decimals);
    std::string text(buffer.data(), result.ptr);
    if (positive == PositiveSign::blank && !std::signbit(value)) text.insert(0, 1, ' ');
    if (text.size() < columns) text.insert(0, columns - text.size(), ' ');
    return text;
}

std::optional<std::int32_t> parseWhole(std::string_view text)
{
    std::int32_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc{} || end != text.data() + text.size()) return std::nullopt;
    return value;
}

std::optional<float> parseFloat(std::string_view text)
{
    float value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc{} || end != text.data() + text.size() || !std::isfinite(value))
        return std::nullopt;
    return value;
}

std::string_view trimmed(std::string_view text)
{
    const std::size_t first = text.find_first_not_of(' ');
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(' ') + 1 - first);
}

std::string_view cutText(std::string_view text, std::size_t size)
{
    if (text.size() <= size) return text;
    const auto isInside = [](char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; };
    std::size_t end = size;
    while (end > 0 && size - end < 3 && isInside(text[end])) --end;
    return text.substr(0, isInside(text[end]) ? size : end); // what is no UTF-8 is cut anywhere
}

} // namespace facetor
