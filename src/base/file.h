#pragma once

#include "base/bytes.h"
#include "base/message.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace facetor {

/// The largest file that is read, in bytes: about twice a full list of the largest textures that
/// the editor makes. An everyday list is some megabytes.
inline constexpr std::uint64_t largestFile = 1024u * 1024 * 1024;

/// The whole file. None when it cannot be opened or read, is larger than `largest` bytes or no
/// regular file, and when memory is short. Paths are bytes in the process's code page (UTF-8
/// wherever the system offers it).
std::optional<Bytes> readFile(const std::string& path, std::uint64_t largest = largestFile);

/// The file's first bytes, at most `count`; none when it cannot be opened.
std::optional<Bytes> readFileStart(const std::string& path, std::size_t count);

/// Puts a file in its place, complete or not at all: writes beside the target under a name of its
/// own, then renames it over the target. cannotCreateFile when any step fails; what stood there
/// before then still stands, and nothing is left beside it. Through a symbolic link the file that
/// it leads to is written. A device or a pipe is not replaced but written to.
Message writeFile(const std::string& path, std::span<const std::byte> bytes);

} // namespace facetor
