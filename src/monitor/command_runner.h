#pragma once

#include "ui/handles.h"

#include <windows.h>

#include <condition_variable>
#include <deque>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

namespace facetor {

/// Runs commands one after the other on a thread of its own, so that whoever sends an image never
/// waits for them.
class CommandRunner {
public:
    /// What became of a command.
    struct Result {
        std::size_t image; ///< the number that it was given with
        bool started;      ///< false: `output` says why not
        bool left;         ///< it goes on by itself
        DWORD exitStatus;
        std::string output; ///< standard output and error output, at most `longestOutput` bytes
    };
    static constexpr std::size_t longestOutput = 64 * 1024;

    /// Posts to `window` when a command begins, with the image as wParam of `began`, and when it
    /// ends: the lParam of `ended` is a Result that the window then owns.
    CommandRunner(HWND window, UINT began, UINT ended);
    /// Commands that have not begun are dropped; the one that runs is left to itself.
    ~CommandRunner();
    CommandRunner(const CommandRunner&) = delete;
    CommandRunner& operator=(const CommandRunner&) = delete;

    void run(std::size_t image, const std::string& commandLine);
    /// Lets the command on an image go on by itself, if it runs now: what it writes from here on is
    /// lost, and the next command begins.
    void leave(std::size_t image);

private:
    struct Job {
        std::size_t image;
        std::string commandLine;
    };
    void work();
    void runCommand(Result& result, std::string commandLine) const;

    HWND window_;
    UINT began_, ended_;
    std::mutex mutex_;
    std::condition_variable wake_;
    std::deque<Job> jobs_;
    std::optional<std::size_t> running_; ///< the image of the command that runs
    bool ends_ = false;
    UniqueHandle<HANDLE, CloseHandle> stop_, leave_; ///< events
    std::thread thread_;
};

} // namespace facetor
