#include "ui/menu.h"

namespace facetor {

namespace {

/// The menu and position of the item that opens `submenu`; false when it is not below `menu`.
bool findOpener(HMENU menu, HMENU submenu, HMENU& holder, int& position)
{
    const int count = GetMenuItemCount(menu);
    for (int i = 0; i < count; ++i) {
        const HMENU candidate = GetSubMenu(menu, i);
        if (candidate == submenu) {
            holder = menu;
            position = i;
            return true;
        }
        if (candidate && findOpener(candidate, submenu, holder, position)) return true;
    }
    return false;
}

} // namespace

HMENU findMenuWith(HMENU menu, UINT command)
{
    if (positionIn(menu, command) >= 0) return menu;
    const int count = GetMenuItemCount(menu);
    for (int position = 0; position < count; ++position)
        if (const HMENU submenu = GetSubMenu(menu, position))
            if (const HMENU found = findMenuWith(submenu, command)) return found;
    return nullptr;
}

int positionIn(HMENU menu, UINT command)
{
    const int count = GetMenuItemCount(menu);
    for (int position = 0; position < count; ++position)
        if (GetMenuItemID(menu, position) == command) return position;
    return -1;
}

void enableSubmenuWith(HMENU menu, UINT command, bool enabled)
{
    HMENU holder = nullptr;
    int position = 0;
    if (findOpener(menu, findMenuWith(menu, command), holder, position))
        EnableMenuItem(holder, static_cast<UINT>(position),
                       MF_BYPOSITION | (enabled ? MF_ENABLED : MF_GRAYED));
}

} // namespace facetor
