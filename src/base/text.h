#pragma once

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

} // namespace facetor
