#pragma once

#include <string>

namespace facetor {

/// What the core says in English of an image, in the user's language: what it holds, the contents
/// of a block, or why it cannot work. What is not known stays as it is.
std::string imageWords(const std::string& english);

} // namespace facetor
