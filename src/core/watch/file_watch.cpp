#include "watch/file_watch.h"

#include <algorithm>
#include <utility>

namespace facetor {

template <typename Deed> void FileWatch::forChanged(const WatchAction& action, const Deed& deed)
{
    for (File& file : filesOf(action.part)) {
        const auto changed = std::ranges::find(action.changed, file.path, &ChangedFile::path);
        if (changed != action.changed.end()) deed(file, changed->seen);
    }
}

void FileWatch::watch(WatchedPart part, std::vector<WatchedFile> files)
{
    std::vector<File>& watched = filesOf(part);
    if (part != WatchedPart::pictures) {
        std::vector<WatchedFile>& before = left(part);
        for (const File& file : watched) before.push_back({file.path, file.known});
        std::erase_if(before, [&](const WatchedFile& file) {
            return std::ranges::find(files, file.path, &WatchedFile::path) != files.end();
        });
    }
    watched.clear();
    for (WatchedFile& file : files) {
        File& added = watched.emplace_back();
        added.path = std::move(file.path);
        added.known = added.seen = file.known;
    }
    places_.clear();
    for (std::size_t i = 0; i < files_.size(); ++i)
        for (std::size_t k = 0; k < files_[i].size(); ++k)
            places_.emplace(files_[i][k].path, std::pair(i, k));
}

std::vector<WatchedFile>& FileWatch::left(WatchedPart part)
{
    return left_[static_cast<std::size_t>(part)];
}

std::vector<std::string> FileWatch::paths() const
{
    std::vector<std::string> all;
    for (const std::vector<File>& part : files_)
        for (const File& file : part) all.push_back(file.path);
    std::ranges::sort(all);
    all.erase(std::unique(all.begin(), all.end()), all.end());
    return all;
}

std::vector<WatchedFile> FileWatch::files(WatchedPart part) const
{
    std::vector<WatchedFile> all;
    for (const File& file : files_[static_cast<std::size_t>(part)])
        all.push_back({file.path, file.known});
    return all;
}

void FileWatch::see(const std::string& path, const FileStamp& stamp, std::uint64_t now)
{
    const auto [first, end] = places_.equal_range(path);
    for (auto place = first; place != end; ++place) {
        File& file = files_[place->second.first][place->second.second];
        file.seenAt = now;
        if (file.seen == stamp) continue;
        file.seen = stamp;
        file.since = now;
        file.retryAt = 0;
        file.attempts = 0;
        file.agreed = false;
    }
}

bool FileWatch::isPending() const
{
    return std::ranges::any_of(files_, [](const std::vector<File>& part) {
        return std::ranges::any_of(part, &File::hasChanged);
    });
}

/// It has to have been seen again after it settled: one look may be older than what was done to the
/// file here.
bool FileWatch::isDue(const File& file, std::uint64_t now)
{
    return file.hasChanged() && file.seenAt - file.since >= watchSettling && now >= file.retryAt;
}

std::optional<WatchAction> FileWatch::next(const WatchFacts& facts, std::uint64_t now) const
{
    if (!facts.isIdle) return std::nullopt;
    for (std::size_t i = 0; i < files_.size(); ++i) {
        WatchAction action{static_cast<WatchedPart>(i), facts.isEdited[i], {}};
        const bool eachByItself = action.part == WatchedPart::pictures;
        bool waits = false, agreed = true;
        for (const File& file : files_[i]) {
            if (file.isMissing() && now - file.since < watchPatience) waits = true;
            if (!file.hasChanged()) continue;
            if (isDue(file, now))
                action.changed.push_back({file.path, file.seen});
            else
                waits = true;
            agreed = agreed && file.agreed;
            // What stands there now comes in place of a document that no file has held.
            if (!file.known.exists && action.part != WatchedPart::source) action.asks = true;
        }
        if (action.changed.empty() || (waits && !eachByItself)) continue;
        if (agreed || eachByItself) action.asks = false;
        return action;
    }
    return std::nullopt;
}

void FileWatch::agree(const WatchAction& action)
{
    forChanged(action, [](File& file, const FileStamp&) { file.agreed = true; });
}

void FileWatch::decline(const WatchAction& action)
{
    forChanged(action, [](File& file, const FileStamp& seen) { file.known = seen; });
}

bool FileWatch::fail(const WatchAction& action, std::uint64_t now)
{
    bool isLast = false;
    forChanged(action, [&](File& file, const FileStamp& seen) {
        file.retryAt = now + watchRetryPause;
        if (++file.attempts < watchAttempts) return;
        file.known = seen;
        isLast = true;
    });
    return isLast;
}

} // namespace facetor
