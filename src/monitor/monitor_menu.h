#pragma once

#include "monitor/monitor.h"

namespace facetor {

/// Does what an item of the monitor's menu says.
void runMenuCommand(Monitor& monitor, int command);

} // namespace facetor
