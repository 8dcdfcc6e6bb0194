#pragma once

#include "base/text_writer.h"

#include <cstdint>
#include <string_view>

namespace facetor {

// Pieces of the C sources that are written for the console, appended to a text. None of them goes
// through the C library's formatting: on 32-bit Windows that works in the x87 unit, whose precision
// the editor lowers, and it would be several times slower.

/// As printf("% 8.4f"): a blank before what is not negative, at least eight columns, four decimals,
/// the exact value rounded half to even. What is not finite is written as zero, which compiles.
void appendFixed(TextWriter& text, float value);

/// Three of them, separated by commas.
void appendFixed(TextWriter& text, float x, float y, float z);

/// As printf("%*ld"): right-aligned in at least `columns`.
void appendNumber(TextWriter& text, std::uint32_t value, std::size_t columns = 1);

/// As printf("0x%04x").
void appendHex16(TextWriter& text, std::uint16_t value);

/// The comment that heads a source: its first lines, with the file's title; a line that counts
/// something, also of other comments; its last line.
void appendHeaderStart(TextWriter& text, std::string_view title);
void appendCountLine(TextWriter& text, std::string_view label, std::uint32_t count);
void appendHeaderEnd(TextWriter& text);

/// The line that opens a table: type, tab, prefix_name[] = {
void appendTableStart(TextWriter& text, std::string_view type, std::string_view prefix,
                      std::string_view name);

/// The line that closes a table, and a blank one.
void appendTableEnd(TextWriter& text);

/// The name of a file without its folder, at most 64 characters, as the header comment shows it.
std::string_view fileTitle(std::string_view path);

} // namespace facetor
