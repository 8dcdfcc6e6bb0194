#pragma once

#include "base/file_stamp.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace facetor {

/// What of a document comes from files that other programs may write.
enum class WatchedPart : std::uint8_t {
    model,    ///< its model file
    textures, ///< its texture list file
    source,   ///< another program's model that it was imported from, with all that this one names
    pictures, ///< images that slots were imported from, each by itself
};
inline constexpr std::size_t watchedPartCount = 4;

/// A file as it stood when the document had its contents.
struct WatchedFile {
    std::string path;
    FileStamp known;

    bool operator==(const WatchedFile&) const = default;
};

/// How long nothing may have changed any more before a file is read, in milliseconds: another
/// program writes in several steps.
inline constexpr std::uint64_t watchSettling = 300;
/// How long a file of several that is missing is waited for: some programs put theirs in place one
/// after the other.
inline constexpr std::uint64_t watchPatience = 2000;
/// From one attempt to read a file that cannot be read to the next, and how many there are.
inline constexpr std::uint64_t watchRetryPause = 500;
inline constexpr unsigned watchAttempts = 10;

/// A file that has changed, and what was seen of it.
struct ChangedFile {
    std::string path;
    FileStamp seen;
};

/// What is to be done now.
struct WatchAction {
    WatchedPart part;
    bool asks = false; ///< before it reads: something would be lost
    std::vector<ChangedFile> changed;
};

/// What a decision rests on.
struct WatchFacts {
    bool isIdle = true; ///< no alert, dialog, menu, drag or change is under way
    std::array<bool, watchedPartCount> isEdited{}; ///< the part has changes that its files have not
};

/// Decides what becomes of files that another program writes: when one is read again, and whether
/// the user is asked first, once for each change. `now` is a clock in milliseconds that only goes
/// forward. A file that goes away is nothing to act on; one that comes back is.
class FileWatch {
public:
    /// Watches these files of a part, in place of those before, which stay known.
    void watch(WatchedPart part, std::vector<WatchedFile> files);
    /// The files that a part was watched for before, but for pictures, as they were known when it
    /// went to others: a document that comes back has contents of that time.
    std::vector<WatchedFile>& left(WatchedPart part);
    /// All files that are watched, each once in ascending order.
    std::vector<std::string> paths() const;
    /// Those of a part as they are known, in the order in which they were given.
    std::vector<WatchedFile> files(WatchedPart part) const;

    /// What stands at a path now.
    void see(const std::string& path, const FileStamp& stamp, std::uint64_t now);
    /// Something has changed that is not done with: look again soon.
    bool isPending() const;

    std::optional<WatchAction> next(const WatchFacts& facts, std::uint64_t now) const;

    // How an action ends; one that was read is watched anew.

    /// The user wants what stands there now: nothing of it is asked again, also when it takes some
    /// attempts to read it.
    void agree(const WatchAction& action);
    /// He does not. Until the next change that is all; one that came while he was asked is the
    /// next.
    void decline(const WatchAction& action);
    /// It could not be read, perhaps because it is still being written. True for the last attempt:
    /// then the next change is waited for.
    bool fail(const WatchAction& action, std::uint64_t now);

private:
    struct File {
        std::string path;
        FileStamp known, seen;
        std::uint64_t since = 0;   ///< when `seen` was seen first
        std::uint64_t seenAt = 0;  ///< and last
        std::uint64_t retryAt = 0; ///< not to be read before
        unsigned attempts = 0;
        bool agreed = false;

        bool hasChanged() const { return seen.exists && seen != known; }
        bool isMissing() const { return known.exists && !seen.exists; }
    };
    std::vector<File>& filesOf(WatchedPart part) { return files_[static_cast<std::size_t>(part)]; }
    template <typename Deed> void forChanged(const WatchAction& action, const Deed& deed);
    static bool isDue(const File& file, std::uint64_t now);

    std::array<std::vector<File>, watchedPartCount> files_;
    std::array<std::vector<WatchedFile>, watchedPartCount> left_; ///< each path once
    /// Part and place of each path: a list may have thousands of pictures, all of which are looked
    /// at while one changes.
    std::unordered_multimap<std::string, std::pair<std::size_t, std::size_t>> places_;
};

} // namespace facetor
