#pragma once

#include "state/editor.h"

#include <windows.h>

#include <string>
#include <vector>

namespace facetor {

/// What the program is started with.
struct Start {
    HINSTANCE instance;
    Platform platform;
    int showCommand;                    ///< how the main window is to appear first
    std::vector<std::string> arguments; ///< without the program's name
    std::string settingsPath;           ///< empty: no settings are read or written
    std::string keepFolder;             ///< of earlier versions; empty: none are kept
    bool watchesFiles = false; ///< that other programs write, unless the user does not want that
};

/// The platform identifier that the operating system reports.
Platform readPlatform();

/// The command line's arguments without the program's name, in the process's code page.
std::vector<std::string> commandLineArguments();

/// Runs the editor on the calling thread until its main window is closed; returns the exit code.
/// The first argument is opened as File > Open would, a texture list into the list; so is a second
/// one, usually the texture list that belongs to the model.
int runProgram(const Start& start);

} // namespace facetor
