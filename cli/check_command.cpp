#include "commands.h"

#include "input_file.h"

#include <cstdio>

namespace facetor {

int runCheck(const std::vector<std::string>& paths, Progress progress)
{
    int status = exitDone;
    ProgressLine line(progress, "files", paths.size());
    for (std::size_t i = 0; i < paths.size(); ++i) {
        const std::string& path = paths[i];
        InputFile file;
        const Message message = readInputFile(file, path);
        line.clear();
        if (message != Message::none)
            status = reportFailure(path, message, file.reason);
        else
            std::printf("%s: ok\n", path.c_str());
        std::fflush(stdout); // the two streams in the order of the files, where both are one
        line.show(i + 1);
    }
    return finishOutput(status);
}

} // namespace facetor
