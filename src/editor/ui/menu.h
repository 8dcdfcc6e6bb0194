#pragma once

#include <windows.h>

namespace facetor {

// Menus are found by what they hold, so that an item more or less moves nothing else.

/// The innermost menu below `menu` that holds a command's item; nullptr when none does.
HMENU findMenuWith(HMENU menu, UINT command);

/// Where a command's item stands in a menu itself, from 0; -1 when it is not there.
int positionIn(HMENU menu, UINT command);

/// Enables or greys the item that opens the submenu which holds a command's item.
void enableSubmenuWith(HMENU menu, UINT command, bool enabled);

} // namespace facetor
