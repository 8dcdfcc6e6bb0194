#include "report.h"

#include <cstdio>

namespace facetor {

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

} // namespace facetor
