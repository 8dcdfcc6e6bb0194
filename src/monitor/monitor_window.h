#pragma once

#include "monitor/monitor_options.h"

#include <windows.h>

namespace facetor {

/// Runs the monitor until its window is closed: the window takes what the editor's Send Target
/// hands over. Returns the exit status: 0, or 1 when it cannot start or, with MonitorOptions::once,
/// when the image was refused or its command failed. `settings`: the file that folder and command
/// are kept in; empty to keep nothing.
int runMonitor(const MonitorOptions& options, const std::string& settings, int showCommand);

/// The monitor's title on this system, which the editor looks for.
std::string monitorTitle();

} // namespace facetor
