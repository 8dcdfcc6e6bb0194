#include "app/program_win.h"
#include "app/settings_win.h"

#include <windows.h>

int WINAPI WinMain(HINSTANCE instance, HINSTANCE, LPSTR, int showCommand)
{
    using namespace facetor;
    return runProgram(
        {instance, readPlatform(), showCommand, commandLineArguments(), findSettingsPath()});
}
