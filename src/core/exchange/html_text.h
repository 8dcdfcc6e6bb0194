#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace facetor {

/// A text of an HTML page, also of an attribute's value in double quotes. Names are bytes; what is
/// no UTF-8 in them is shown by question marks.
std::string escaped(std::string_view text);

/// Bytes as the data of a "base64" URL.
std::string base64(std::span<const std::byte> bytes);

/// A picture that is part of the page, in CSS pixels. An empty `png` is one that could not be
/// encoded: throws std::bad_alloc.
std::string htmlImage(std::span<const std::byte> png, int width, int height,
                      const std::string& alternative);

/// A picture with a caption, both HTML.
std::string htmlFigure(const std::string& picture, const std::string& caption);

} // namespace facetor
