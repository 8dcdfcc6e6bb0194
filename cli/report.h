#pragma once

#include "base/message.h"
#include "run.h"

#include <chrono>
#include <cstddef>
#include <cstdio>
#include <string>

namespace facetor {

// Exit statuses of every command.
inline constexpr int exitDone = 0;
inline constexpr int exitFailed = 1;
inline constexpr int exitWrongCommandLine = 2;

/// Writes "facetor-cli: PATH: TEXT" to the error stream, with " (reason)" behind it when there is
/// one, or the same as a JSON object. `detail` fills the message's placeholder. Returns exitFailed.
int reportFailure(const Run& run, const std::string& path, Message message,
                  const Reason& reason = {}, const std::string& detail = {});

/// Writes "facetor-cli: TEXT" to the error stream, or the same as a JSON object. Returns
/// exitWrongCommandLine.
int reportWrongCommandLine(const Run& run, const std::string& text);

/// For commands whose result is what they print: `status`, or exitFailed after a line on the error
/// stream when `stream` did not take all of it.
int finishReport(const Run& run, std::FILE* stream, int status);

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
