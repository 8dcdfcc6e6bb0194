#include "exchange/html_text.h"

#include <cstdint>
#include <new>

namespace facetor {

namespace {

bool isUtf8(std::string_view text)
{
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto first = static_cast<unsigned char>(text[i]);
        const std::size_t more = first < 0x80                    ? 0
                                 : first >= 0xC2 && first < 0xE0 ? 1
                                 : first >= 0xE0 && first < 0xF0 ? 2
                                 : first >= 0xF0 && first < 0xF5 ? 3
                                                                 : text.size();
        if (more >= text.size() - i) return false;
        for (std::size_t k = 1; k <= more; ++k)
            if ((static_cast<unsigned char>(text[i + k]) & 0xC0) != 0x80) return false;
        // Overlong forms, surrogates, what is beyond the last character, and control characters.
        const auto second = more > 0 ? static_cast<unsigned char>(text[i + 1]) : 0;
        if ((first == 0xE0 && second < 0xA0) || (first == 0xED && second > 0x9F) ||
            (first == 0xF0 && second < 0x90) || (first == 0xF4 && second > 0x8F) ||
            (first == 0xC2 && second < 0xA0))
            return false;
        i += more;
    }
    return true;
}

} // namespace

std::string escaped(std::string_view text)
{
    const bool isText = isUtf8(text);
    std::string result;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '&')
            result += "&amp;";
        else if (c == '<')
            result += "&lt;";
        else if (c == '>')
            result += "&gt;";
        else if (c == '"')
            result += "&quot;";
        else if (byte < 0x20 || byte == 0x7F || (byte > 0x7F && !isText))
            result += '?';
        else
            result += c;
    }
    return result;
}

std::string base64(std::span<const std::byte> bytes)
{
    constexpr std::string_view digits =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    text.reserve((bytes.size() + 2) / 3 * 4);
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        std::uint32_t word = 0;
        for (std::size_t k = 0; k < 3; ++k)
            word = word << 8 |
                   (i + k < bytes.size() ? std::to_integer<std::uint32_t>(bytes[i + k]) : 0u);
        for (std::size_t k = 0; k < 4; ++k)
            text += i + k > bytes.size() ? '=' : digits[word >> (18 - 6 * k) & 63];
    }
    return text;
}

std::string htmlImage(std::span<const std::byte> png, int width, int height,
                      const std::string& alternative)
{
    if (png.empty()) throw std::bad_alloc();
    return "<img src=\"data:image/png;base64," + base64(png) + "\" width=\"" +
           std::to_string(width) + "\" height=\"" + std::to_string(height) + "\" alt=\"" +
           escaped(alternative) + "\">";
}

std::string htmlFigure(const std::string& picture, const std::string& caption)
{
    return "<figure>" + picture + "<figcaption>" + caption + "</figcaption></figure>\n";
}

} // namespace facetor
