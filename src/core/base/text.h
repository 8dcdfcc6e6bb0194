#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace facetor {

/// The path cut at its last "."; unchanged when it has none. As simple as it sounds: a "." in a
/// folder's name counts too.
std::string_view cutExtension(std::string_view path);

/// The text after the last "."; empty when there is none.
std::string_view extensionOf(std::string_view path);

/// True when the two ASCII texts are equal but for case.
bool equalIgnoringCase(std::string_view a, std::string_view b);

/// The shortest decimal text that reads back as the same single. Independent of the x87 control
/// word, which printf() of the 32-bit Windows run-time is not.
std::string formatShortest(float value);

/// What stands before a number that is not negative.
enum class PositiveSign { none, blank };

/// As printf("%*.*f"), or printf("% *.*f") for a blank: right-aligned in at least `columns`, the
/// exact value rounded half to even. "nan" or "inf" with its sign for what is not finite.
/// Independent of the x87 control word like formatShortest(). Needs decimals <= 8.
std::string formatFixed(float value, int decimals, std::size_t columns, PositiveSign positive);

/// A whole number in decimal, perhaps with "-" before it, and nothing else. None for everything
/// else, and for one outside 32 bits.
std::optional<std::int32_t> parseWhole(std::string_view text);

/// The text as a decimal number, perhaps with an exponent; none when it is anything else, also
/// blanks, a "+" in front, nan and infinity, or when a single cannot hold it.
std::optional<float> parseFloat(std::string_view text);

/// The text without the blanks around it.
std::string_view trimmed(std::string_view text);

/// The first `size` bytes of a text at most, in UTF-8 never a part of a character.
std::string_view cutText(std::string_view text, std::size_t size);

} // namespace facetor
