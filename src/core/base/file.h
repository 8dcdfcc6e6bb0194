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
/// regular file, and when memory is short; `reason`, when given, then says which in a few words.
/// Paths are bytes in the process's code page (UTF-8 wherever the system offers it).
std::optional<Bytes> readFile(const std::string& path, std::uint64_t largest = largestFile,
                              std::string* reason = nullptr);

/// Opening a folder succeeds on Linux, and a pipe would block: only regular files are read. Says
/// what else stands there; empty for a regular file and for nothing.
std::string unreadableKind(const std::string& path);

/// The file's first bytes, at most `count`; none when it cannot be opened.
std::optional<Bytes> readFileStart(const std::string& path, std::size_t count);

/// Puts a file in its place, complete or not at all: writes beside the target under a name of its
/// own, has the system store it, then renames it over the target. cannotCreateFile when any step
/// fails, with the cause in `reason`, when given, in a few words; what stood there before then
/// still stands, and nothing is left beside it. What a run that was ended by force has left in that
/// folder is removed. The file has its target's access rights from the start. Through a symbolic
/// link the file that it leads to is written. A device or a pipe is not replaced but written to.
Message writeFile(const std::string& path, std::span<const std::byte> bytes,
                  std::string* reason = nullptr);

struct FileToWrite {
    std::string path;
    std::span<const std::byte> bytes;
};

/// writeFile() of several files: none takes its place before all of them are on the disk. `failed`,
/// when given, receives the index of the one that could not be written.
Message writeFiles(std::span<const FileToWrite> files, std::size_t* failed = nullptr,
                   std::string* reason = nullptr);

/// Why the system refused something, in a few words like "missing" or "disk full"; `error` is a
/// value of errno.
std::string systemReason(int error);

} // namespace facetor
