#include "app/program.h"
#include "app/settings.h"

#include <windows.h>

int WINAPI WinMain(HINSTANCE instance, HINSTANCE, LPSTR, int showCommand)
{
    using namespace facetor;
    return runProgram(
        {instance, readPlatform(), showCommand, commandLineArguments(), findSettingsPath()});
}
