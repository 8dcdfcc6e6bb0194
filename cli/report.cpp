#include "report.h"

#include <cstdio>
#include <utility>

#ifdef _WIN32
#include <io.h>
#else
#include <unistd.h>
#endif

namespace facetor {

namespace {

constexpr auto firstPause = std::chrono::milliseconds(500); // shorter work needs no line
constexpr auto nextPause = std::chrono::milliseconds(100);  // more often nobody can read it

bool errorsGoToTerminal()
{
#ifdef _WIN32
    return _isatty(_fileno(stderr)) != 0;
#else
    return isatty(STDERR_FILENO) != 0;
#endif
}

} // namespace

int reportFailure(const std::string& path, Message message, const std::string& reason)
{
    std::string line = "facetor-cli: " + path + ": ";
    line += expandPlaceholders(catalogueText(message), {}, {});
    if (!reason.empty()) line += " (" + reason + ")";
    line += '\n';
    std::fputs(line.c_str(), stderr);
    return exitFailed;
}

int reportWrongCommandLine(const std::string& text)
{
    std::fputs(("facetor-cli: " + text + '\n').c_str(), stderr);
    return exitWrongCommandLine;
}

int finishOutput(int status)
{
    if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0) return status;
    return reportFailure("standard output", Message::cannotCreateFile);
}

void reportWritten(const std::string& path, Progress progress)
{
    if (progress == Progress::shown) std::printf("wrote %s\n", path.c_str());
}

ProgressLine::ProgressLine(Progress progress, std::string work, std::size_t total)
    : shown_(progress == Progress::shown && errorsGoToTerminal()), work_(std::move(work)),
      total_(total), next_(Clock::now() + firstPause)
{
}

ProgressLine::~ProgressLine()
{
    clear();
}

void ProgressLine::show(std::size_t done)
{
    if (!shown_ || Clock::now() < next_) return;
    const std::string line = std::to_string(done) + " of " + std::to_string(total_) + ' ' + work_;
    std::fputs(('\r' + line).c_str(), stderr); // the count only grows, and so does the line
    std::fflush(stderr);
    width_ = line.size();
    next_ = Clock::now() + nextPause;
}

void ProgressLine::clear()
{
    if (width_ == 0) return;
    std::fputs(('\r' + std::string(width_, ' ') + '\r').c_str(), stderr);
    std::fflush(stderr);
    width_ = 0;
}

} // namespace facetor
