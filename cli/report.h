#pragma once

#include "base/message.h"

#include <chrono>
#include <cstddef>
#include <string>

namespace facetor {

// Exit statuses of every command.
inline constexpr int exitDone = 0;
inline constexpr int exitFailed = 1;
inline constexpr int exitWrongCommandLine = 2;

/// How much a command says about work that goes well.
enum class Progress { shown, silent };

/// Writes "facetor-cli: PATH: TEXT" to the error stream, with " (reason)" behind it when there is
/// one. Returns exitFailed.
int reportFailure(const std::string& path, Message message, const std::string& reason = {});

/// Writes "facetor-cli: TEXT" to the error stream. Returns exitWrongCommandLine.
int reportWrongCommandLine(const std::string& text);

/// For commands whose result is what they print: `status`, or exitFailed after a line on the error
/// stream when the standard output did not take all of it.
int finishOutput(int status);

/// Says that a file was written.
void reportWritten(const std::string& path, Progress progress);

/// A line on the terminal that counts the steps of long work and is gone at its end. It appears
/// only where the error stream is a terminal and the work has already taken half a second.
class ProgressLine {
public:
    /// `work` names the steps, like "files"; `total` of them make the whole.
    ProgressLine(Progress progress, std::string work, std::size_t total);
    ~ProgressLine();
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    /// Says that so many steps are done. Cheap: most calls write nothing.
    void show(std::size_t done);
    /// Takes the line away, for output that is to stand in its place.
    void clear();

private:
    using Clock = std::chrono::steady_clock;
    bool shown_;
    std::string work_;
    std::size_t total_;
    std::size_t width_ = 0; ///< characters of the line as it stands
    Clock::time_point next_;
};

} // namespace facetor
