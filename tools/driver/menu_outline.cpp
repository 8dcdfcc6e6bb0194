#include "driver/menu_outline.h"

#include <array>

namespace facetor {

std::string menuOutline(HMENU menu)
{
    std::string outline;
    for (int position = 0; position < GetMenuItemCount(menu); ++position) {
        std::array<char, 128> text{};
        const auto index = static_cast<UINT>(position);
        GetMenuStringA(menu, index, text.data(), static_cast<int>(text.size()), MF_BYPOSITION);
        outline += position == 0 ? "" : ", ";
        std::string item = text.data();
        const UINT state = GetMenuState(menu, index, MF_BYPOSITION);
        if (const HMENU submenu = GetSubMenu(menu, position))
            item += " {" + menuOutline(submenu) + "}";
        else if (state & MF_SEPARATOR)
            item = "-";
        else
            item += "=" + std::to_string(GetMenuItemID(menu, position));
        outline += state & MF_GRAYED && item != "-" ? "(" + item + ")" : item;
    }
    return outline;
}

} // namespace facetor
