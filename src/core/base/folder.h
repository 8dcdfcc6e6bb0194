#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace facetor {

/// The path of a name in a folder, with the system's separator between them.
std::string pathIn(const std::string& folder, std::string_view name);

/// Makes a folder and those that it lies in. Empty, or why it cannot be in a few words.
std::string makeFolder(const std::string& folder);

/// The names of the regular files in a folder, in no order; none when it cannot be read.
std::vector<std::string> namesIn(const std::string& folder);

/// When a file was last written, in seconds since 1970 by the system's clock; 0 when that is not
/// known.
std::int64_t writtenAt(const std::string& path);

/// Removes a file. False when one still stands there.
bool removeFile(const std::string& path);

} // namespace facetor
