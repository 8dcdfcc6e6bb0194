#include "report.h"

#include "base/file.h"
#include "json.h"

#include <cerrno>
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

void writeError(const Json& error)
{
    std::fputs((toText({{"error", error}}) + '\n').c_str(), stderr);
}

bool errorsGoToTerminal()
{
#ifdef _WIN32
    return _isatty(_fileno(stderr)) != 0;
#else
    return isatty(STDERR_FILENO) != 0;
#endif
}

} // namespace

int reportFailure(const Run& run, const std::string& path, Message message, const Reason& reason,
                  const std::string& detail)
{
    if (run.errors == ErrorFormat::json) {
        writeError(failureToJson(path, message, reason, detail));
        return exitFailed;
    }
    const std::string text = expandPlaceholders(catalogueText(message), detail, {});
    std::string line = "facetor-cli: " + displayName(path) + ": " + text;
    if (!reason.text.empty()) line += " (" + reason.text + ")";
    std::fputs((line + '\n').c_str(), stderr);
    return exitFailed;
}

int reportWrongCommandLine(const Run& run, const std::string& text)
{
    if (run.errors == ErrorFormat::json)
        writeError({{"message", nullptr}, {"text", text}});
    else
        std::fputs(("facetor-cli: " + text + '\n').c_str(), stderr);
    return exitWrongCommandLine;
}

int finishReport(const Run& run, std::FILE* stream, int status)
{
    errno = 0;
    if (std::fflush(stream) == 0 && std::ferror(stream) == 0) return status;
    return reportFailure(run, "standard output", Message::cannotCreateFile,
                         {systemReason(errno != 0 ? errno : EIO), {}});
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
