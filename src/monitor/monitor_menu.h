#pragma once

#include "monitor/monitor.h"

namespace facetor {

/// Greys what there is nothing for, before a menu is shown.
void refreshMenu(const Monitor& monitor, HMENU menu);

/// Does what an item of the monitor's menu says.
void runMenuCommand(Monitor& monitor, int command);

} // namespace facetor
