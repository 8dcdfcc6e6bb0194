#pragma once

#include "session/settings_text.h"

#include <windows.h>

#include <array>
#include <string>

namespace facetor {

struct Editor;

// The settings file, for which the windows keep their places, colours and recent files.

/// Where this installation keeps its settings.
std::string findSettingsPath();

/// Where this installation keeps earlier versions and recovery files, given findSettingsPath();
/// empty when there is no such folder.
std::string findKeepFolder(const std::string& settingsPath);

/// The folders for files that outlive a run: the Windows directory and, where that cannot be
/// written, the user's own folder for this program.
std::array<std::string, 2> sharedFolders();

/// Reads the settings into editor.settings and applies those of the main window, the view and the
/// recent files. False, with everything as it is, when there are none or they cannot be read.
bool applySettings(Editor& editor);

/// Opens the windows that were open at the end of the last run.
void reopenWindows(Editor& editor);

/// Writes what a later run needs. When that fails no settings are left: a later run then starts
/// from its own.
void writeSettings(Editor& editor);

} // namespace facetor
