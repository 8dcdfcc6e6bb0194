#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <span>
#include <string>

namespace facetor {

/// Files are opened through the C library, which takes the bytes as they are. Where the standard
/// library's paths have to be used the bytes are read as UTF-8, which on Windows it does only when
/// told so; a name that is none (bytes of another code page on an old Windows) has no such path.
std::optional<std::filesystem::path> toPath(const std::string& bytes);
std::string toBytes(const std::filesystem::path& path);

/// A new file that is to take the place of another in the same folder. Its name is short, whatever
/// the target's, and drawn by lot. Unless it has taken that place it is removed in the end.
class BesideFile {
public:
    BesideFile() = default;
    ~BesideFile();
    BesideFile(const BesideFile&) = delete;
    BesideFile& operator=(const BesideFile&) = delete;

    // Each returns 0 or the errno value that says why not.

    /// Creates it, never through what stands there already, with the rights of `target` if that
    /// exists, else with those of any new file.
    int create(const std::string& target);
    /// Writes all of it and waits until the disk has it.
    int write(std::span<const std::byte> bytes);
    /// Puts it into the target's place.
    int replace(const std::string& target);

    /// Whether it has vanished: another process took it for one that was left behind.
    bool isGone() const;

private:
    int close();

    std::string path_;
    int descriptor_ = -1;
};

/// Removes what processes that were ended by force have left in the folder of `target`, once for
/// each folder that is written to. What a running process still writes stays.
void removeAbandonedFiles(const std::string& target);

} // namespace facetor
