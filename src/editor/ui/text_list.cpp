#include "ui/text_list.h"

#include "base/text.h"
#include "ui/window_data.h"

#include <windows.h>

#include <commctrl.h>

#include <algorithm>

namespace facetor {

namespace {

constexpr int leastColumn = 40; // in pixels, of the last one

} // namespace

void prepareTextList(HWND list, std::initializer_list<ListColumn> columns)
{
    SendMessageA(list, LVM_SETEXTENDEDLISTVIEWSTYLE, 0,
                 LVS_EX_FULLROWSELECT | LVS_EX_DOUBLEBUFFER | LVS_EX_LABELTIP);
    addListColumns(list, columns);
    fitLastColumn(list);
}

void fitLastColumn(HWND list)
{
    const auto header = reinterpret_cast<HWND>(SendMessageA(list, LVM_GETHEADER, 0, 0));
    const int last = static_cast<int>(SendMessageA(header, HDM_GETITEMCOUNT, 0, 0)) - 1;
    if (last < 0) return;
    RECT client{}; // without the scroll bar
    GetClientRect(list, &client);
    LONG left = client.right;
    for (int column = 0; column < last; ++column)
        left -= static_cast<LONG>(
            SendMessageA(list, LVM_GETCOLUMNWIDTH, static_cast<WPARAM>(column), 0));
    SendMessageA(list, LVM_SETCOLUMNWIDTH, static_cast<WPARAM>(last),
                 std::max(left, LONG{leastColumn}));
}

void setTextRows(HWND list, std::size_t rows, std::optional<std::size_t> chosen)
{
    const auto choose = [&](WPARAM row, UINT state) {
        LVITEMA item{};
        item.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
        item.state = state;
        SendMessageA(list, LVM_SETITEMSTATE, row, reinterpret_cast<LPARAM>(&item));
    };
    if (chosenTextRow(list) != chosen) choose(static_cast<WPARAM>(-1), 0);
    SendMessageA(list, LVM_SETITEMCOUNT, rows, LVSICF_NOSCROLL);
    if (chosen && chosenTextRow(list) != chosen) choose(*chosen, LVIS_SELECTED | LVIS_FOCUSED);
    fitLastColumn(list); // a scroll bar may have come or gone
    InvalidateRect(list, nullptr, FALSE);
}

std::optional<std::size_t> chosenTextRow(HWND list)
{
    const LRESULT row = SendMessageA(list, LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_SELECTED);
    return row < 0 ? std::nullopt : std::optional(static_cast<std::size_t>(row));
}

bool answerTextList(LPARAM notification,
                    const std::function<std::string(std::size_t row, int column)>& textOf)
{
    if (reinterpret_cast<const NMHDR*>(notification)->code != LVN_GETDISPINFOA) return false;
    LVITEMA& item = reinterpret_cast<NMLVDISPINFOA*>(notification)->item;
    if ((item.mask & LVIF_TEXT) == 0 || item.iItem < 0 || item.cchTextMax <= 0) return true;
    const std::string text = textOf(static_cast<std::size_t>(item.iItem), item.iSubItem);
    const std::string_view fitting = cutText(text, static_cast<std::size_t>(item.cchTextMax) - 1);
    item.pszText[fitting.copy(item.pszText, fitting.size())] = '\0';
    return true;
}

std::optional<std::size_t> rowChosenBy(LPARAM notification)
{
    const UINT code = reinterpret_cast<const NMHDR*>(notification)->code;
    if (code == NM_CLICK || code == LVN_ITEMACTIVATE) { // maybe the one that is chosen already
        const int row = reinterpret_cast<const NMITEMACTIVATE*>(notification)->iItem;
        return row < 0 ? std::nullopt : std::optional(static_cast<std::size_t>(row));
    }
    const auto& change = *reinterpret_cast<const NMLISTVIEW*>(notification);
    if (change.hdr.code != LVN_ITEMCHANGED || change.iItem < 0 ||
        (change.uNewState & LVIS_SELECTED) == 0 || (change.uOldState & LVIS_SELECTED) != 0)
        return std::nullopt;
    return static_cast<std::size_t>(change.iItem);
}

} // namespace facetor
