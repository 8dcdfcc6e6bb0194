#pragma once

#include "base/file_stamp.h"
#include "ui/handles.h"

#include <windows.h>

#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace facetor {

/// Looks at files on a thread of its own, whatever a disk or a network takes for it: when the
/// system says that something happens in their folders, every two seconds in any case, and when
/// asked to. After a look it posts a message without arguments to a window.
class FileLooker {
public:
    using Stamps = std::map<std::string, FileStamp>; ///< by path

    FileLooker() = default;
    ~FileLooker() { stop(); }
    FileLooker(const FileLooker&) = delete;
    FileLooker& operator=(const FileLooker&) = delete;

    /// Looks at these files from now on; starts the thread when there is none. False when the
    /// system has none: then nothing is looked at.
    bool watch(std::vector<std::string> paths, HWND window, UINT message);
    /// Whether there is a thread.
    bool isRunning() const { return thread_.joinable(); }
    /// Looks soon.
    void look();
    /// What the last look saw.
    Stamps stamps();
    /// Ends the thread. Waits for a look that is under way.
    void stop();

private:
    /// A folder and the system's notices of what happens in it; none while the folder is missing.
    struct Folder {
        std::string path;
        UniqueHandle<HANDLE, FindCloseChangeNotification> notices;
    };
    void run(HWND window, UINT message);
    bool lookNow();
    void followFolders();

    std::thread thread_;
    UniqueHandle<HANDLE, CloseHandle> wake_; ///< an event: look, or end
    std::mutex mutex_;                       ///< of what follows
    std::vector<std::string> paths_;
    Stamps stamps_;
    bool ends_ = false;

    std::vector<Folder> folders_; ///< of the thread alone
};

} // namespace facetor
