#include "app/program.h"
#include "app/settings.h"

#include <windows.h>

int WINAPI WinMain(HINSTANCE instance, HINSTANCE, LPSTR, int showCommand)
{
    using namespace facetor;
    const std::string settingsPath = findSettingsPath();
    return runProgram({instance, readPlatform(), showCommand, commandLineArguments(), settingsPath,
                       findKeepFolder(settingsPath), true});
}
