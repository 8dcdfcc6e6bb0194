#include "ui/list_columns.h"

#include "ui/window_data.h"

#include <commctrl.h>

#include <string>

namespace facetor {

void addListColumns(HWND list, std::initializer_list<ListColumn> columns)
{
    for (int index = 0; const ListColumn& column : columns) {
        RECT units{0, 0, column.width, 0};
        MapDialogRect(GetParent(list), &units);
        std::string title = loadCatalogueText(list, column.title);
        LVCOLUMNA description{};
        description.mask = LVCF_TEXT | LVCF_WIDTH;
        description.cx = units.right;
        description.pszText = title.data();
        SendMessageA(list, LVM_INSERTCOLUMNA, static_cast<WPARAM>(index++),
                     reinterpret_cast<LPARAM>(&description));
    }
}

} // namespace facetor
