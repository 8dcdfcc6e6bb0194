#include "commands.h"

#include "input_file.h"

#include <cstdio>

namespace facetor {

int runCheck(const std::vector<std::string>& paths)
{
    int status = exitDone;
    for (const std::string& path : paths) {
        InputFile file;
        if (const Message message = readInputFile(file, path); message != Message::none)
            status = reportFailure(path, message, file.reason);
        else
            std::printf("%s: ok\n", path.c_str());
        std::fflush(stdout); // the two streams in the order of the files, where both are one
    }
    return finishOutput(status);
}

} // namespace facetor
