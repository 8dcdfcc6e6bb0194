#pragma once

#include <windows.h>

#include <condition_variable>
#include <deque>
#include <mutex>
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
        DWORD exitStatus;
        std::string output; ///< standard output and error output, at most `longestOutput` bytes
    };
    static constexpr std::size_t longestOutput = 64 * 1024;

    /// Results are posted to `window` as `message`, whose lParam is a Result that it then owns.
    CommandRunner(HWND window, UINT message);
    /// Commands that have not begun are dropped; the one that runs is left to itself.
    ~CommandRunner();
    CommandRunner(const CommandRunner&) = delete;
    CommandRunner& operator=(const CommandRunner&) = delete;

    void run(std::size_t image, const std::string& commandLine);

private:
    struct Job {
        std::size_t image;
        std::string commandLine;
    };
    void work();

    HWND window_;
    UINT message_;
    std::mutex mutex_;
    std::condition_variable wake_;
    std::deque<Job> jobs_;
    bool ends_ = false;
    HANDLE stop_;
    std::thread thread_;
};

} // namespace facetor
