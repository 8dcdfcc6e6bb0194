#include "depfile.h"

#include <algorithm>

namespace facetor {

namespace {

enum class Side { target, prerequisite };

/// What make would take for its own gets a backslash before it. Backslashes that stand before such
/// a character are doubled, all others are mere characters. Make has no way to write a line break,
/// a semicolon in a prerequisite or an equals sign.
std::string escaped(std::string_view path, Side side)
{
    // On Windows a colon ends the drive. Only prerequisites are sure to be there when make looks
    // for what a pattern of file names fits. A target with a percent sign is a pattern of make's.
#ifdef _WIN32
    static constexpr std::string_view special = " \t#";
#else
    static constexpr std::string_view special = " \t#:";
#endif
    const std::string_view specialOnSide = side == Side::prerequisite ? "|*?[" : "%";
    const auto isSpecial = [=](char c) {
        return special.find(c) != std::string_view::npos ||
               specialOnSide.find(c) != std::string_view::npos;
    };
    std::string text = path.starts_with('~') ? "./" : ""; // else somebody's home
    std::size_t backslashes = 0;                          // that end the text
    for (const char c : path) {
        if (isSpecial(c)) text.append(backslashes + 1, '\\');
        if (c == '$') text += '$';
        text += c;
        backslashes = c == '\\' ? backslashes + 1 : 0;
    }
    return text;
}

} // namespace

Bytes formatMakeRule(std::span<const std::string> filesRead, std::span<const Output> outputs)
{
    std::string text;
    for (const Output& output : outputs)
        if (output.path != standardStream)
            text += (text.empty() ? "" : " ") + escaped(output.path, Side::target);
    text += ':';
    for (std::size_t i = 0; i < filesRead.size(); ++i)
        if (std::find(filesRead.begin(), filesRead.begin() + static_cast<std::ptrdiff_t>(i),
                      filesRead[i]) == filesRead.begin() + static_cast<std::ptrdiff_t>(i))
            text += " \\\n  " + escaped(filesRead[i], Side::prerequisite);
    text += '\n';
    return bytesOf(text);
}

} // namespace facetor
