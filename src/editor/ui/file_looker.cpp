#include "ui/file_looker.h"

#include <algorithm>
#include <set>
#include <system_error>
#include <utility>

namespace facetor {

namespace {

constexpr DWORD longestPause = 2000; ///< milliseconds from one look to the next
constexpr DWORD shortestPause = 50;  ///< likewise, in a folder where much happens

/// Folders whose notices are heard; of others only the regular looks know.
constexpr std::size_t mostFolders = MAXIMUM_WAIT_OBJECTS - 1;

constexpr DWORD watchedChanges =
    FILE_NOTIFY_CHANGE_FILE_NAME | FILE_NOTIFY_CHANGE_SIZE | FILE_NOTIFY_CHANGE_LAST_WRITE;

std::set<std::string> foldersOf(const std::vector<std::string>& paths)
{
    std::set<std::string> folders;
    for (const std::string& path : paths)
        if (const std::size_t end = path.find_last_of("\\/"); end != std::string::npos)
            folders.insert(path.substr(0, end + 1));
    return folders;
}

} // namespace

bool FileLooker::watch(std::vector<std::string> paths, HWND window, UINT message)
{
    {
        const std::lock_guard lock(mutex_);
        paths_ = std::move(paths);
    }
    if (!wake_) wake_.reset(CreateEventA(nullptr, FALSE, FALSE, nullptr));
    if (!wake_) return false;
    if (!thread_.joinable()) try {
            thread_ = std::thread([this, window, message] { run(window, message); });
        } catch (const std::system_error&) {
            return false;
        }
    look();
    return true;
}

void FileLooker::look()
{
    if (wake_) SetEvent(wake_.get());
}

FileLooker::Stamps FileLooker::stamps()
{
    const std::lock_guard lock(mutex_);
    return stamps_;
}

void FileLooker::stop()
{
    if (!thread_.joinable()) return;
    {
        const std::lock_guard lock(mutex_);
        ends_ = true;
    }
    look();
    thread_.join();
    ends_ = false;
}

/// Hears of the folders of what is watched. One that was missing may be there again.
void FileLooker::followFolders()
{
    std::set<std::string> wanted;
    {
        const std::lock_guard lock(mutex_);
        wanted = foldersOf(paths_);
    }
    std::erase_if(folders_, [&](const Folder& folder) { return !wanted.contains(folder.path); });
    for (const std::string& path : wanted)
        if (std::ranges::find(folders_, path, &Folder::path) == folders_.end() &&
            folders_.size() < mostFolders)
            folders_.push_back({path, nullptr});
    for (Folder& folder : folders_) {
        if (folder.notices) continue;
        const HANDLE notices =
            FindFirstChangeNotificationA(folder.path.c_str(), FALSE, watchedChanges);
        if (notices != INVALID_HANDLE_VALUE) folder.notices.reset(notices);
    }
}

/// Looks at all files. False when the thread is to end.
bool FileLooker::lookNow()
{
    std::vector<std::string> paths;
    {
        const std::lock_guard lock(mutex_);
        if (ends_) return false;
        paths = paths_;
    }
    Stamps stamps;
    for (const std::string& path : paths) stamps[path] = stampOf(path);
    const std::lock_guard lock(mutex_);
    // What comes or goes may have taken its folder along: the notices are those of the older one.
    for (const auto& [path, stamp] : stamps) {
        const auto before = stamps_.find(path);
        if (before == stamps_.end() || before->second.exists == stamp.exists) continue;
        for (Folder& folder : folders_)
            if (path.starts_with(folder.path)) folder.notices.reset();
    }
    stamps_ = std::move(stamps);
    return !ends_;
}

void FileLooker::run(HWND window, UINT message)
{
    for (;;) {
        followFolders();
        if (!lookNow()) return;
        PostMessageA(window, message, 0, 0);
        Sleep(shortestPause);
        std::vector<HANDLE> handles{wake_.get()};
        std::vector<Folder*> heard;
        for (Folder& folder : folders_)
            if (folder.notices) {
                handles.push_back(folder.notices.get());
                heard.push_back(&folder);
            }
        const DWORD woken = WaitForMultipleObjects(static_cast<DWORD>(handles.size()),
                                                   handles.data(), FALSE, longestPause);
        if (woken > WAIT_OBJECT_0 && woken < WAIT_OBJECT_0 + handles.size()) {
            Folder& folder = *heard[woken - WAIT_OBJECT_0 - 1];
            // A folder that is gone can be heard of no more, and cannot be made anew before this.
            if (!FindNextChangeNotification(folder.notices.get())) folder.notices.reset();
        } else if (woken == WAIT_FAILED) {
            for (Folder& folder : folders_) folder.notices.reset();
            Sleep(longestPause);
        }
    }
}

} // namespace facetor
