#include "gui/command_line_tool.h"

#include "driver/running_editor.h"

#include <windows.h>

namespace facetor {

int runCommandLineTool(const std::string& arguments)
{
    std::string commandLine = "\"" FACETOR_CLI "\" " + arguments;
    STARTUPINFOA start{};
    start.cb = sizeof start;
    PROCESS_INFORMATION process{};
    if (!CreateProcessA(nullptr, commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                        &start, &process))
        return -1;
    DWORD status = static_cast<DWORD>(-1);
    if (WaitForSingleObject(process.hProcess, longestWait) == WAIT_OBJECT_0)
        GetExitCodeProcess(process.hProcess, &status);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    return static_cast<int>(status);
}

} // namespace facetor
