#include "commands.h"

#include "input_file.h"

#include <cstdio>

namespace facetor {

int runCheck(Run& run, const std::vector<std::string>& paths)
{
    int status = exitDone;
    ProgressLine line(run.progress, "files", paths.size());
    for (std::size_t i = 0; i < paths.size(); ++i) {
        const std::string& path = paths[i];
        InputFile file;
        const Message message = readInputFile(run, file, path);
        line.clear();
        if (message != Message::none)
            status = reportFailure(run, path, message, file.reason);
        else
            std::printf("%s: ok\n", path == standardStream ? "stdin" : path.c_str());
        // The two streams in the order of the files, where both are one.
        if (finishReport(run, stdout, exitDone) != exitDone) return exitFailed;
        line.show(i + 1);
    }
    return finishReport(run, stdout, status);
}

} // namespace facetor
