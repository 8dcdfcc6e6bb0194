#include "monitor/monitor_lists.h"

#include "monitor/image_words.h"
#include "monitor/monitor_ids.h"
#include "ui/handles.h"
#include "ui/status_bar.h"
#include "ui/window_data.h"

#include <array>
#include <commctrl.h>
#include <cstdio>

namespace facetor {

namespace {

HWND createList(HWND owner, int id, std::initializer_list<std::pair<UINT, int>> columns)
{
    const HWND list = CreateWindowExA(
        WS_EX_CLIENTEDGE, WC_LISTVIEWA, "",
        WS_CHILD | WS_VISIBLE | WS_TABSTOP | LVS_REPORT | LVS_SINGLESEL | LVS_SHOWSELALWAYS, 0, 0,
        1, 1, owner, reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), instanceOf(owner), nullptr);
    ListView_SetExtendedListViewStyle(list, LVS_EX_FULLROWSELECT | LVS_EX_DOUBLEBUFFER);
    int number = 0;
    for (const auto& [title, width] : columns) {
        std::string caption = resourceText(title);
        LVCOLUMNA column{};
        column.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_FMT;
        column.fmt =
            title == IDS_COLUMN_SIZE || title == IDS_COLUMN_BYTES ? LVCFMT_RIGHT : LVCFMT_LEFT;
        column.cx = scaled(owner, width);
        column.pszText = caption.data();
        SendMessageA(list, LVM_INSERTCOLUMNA, static_cast<WPARAM>(number++),
                     reinterpret_cast<LPARAM>(&column));
    }
    return list;
}

void setCell(HWND list, int row, int column, const std::string& value)
{
    std::string copy = value;
    LVITEMA item{};
    item.mask = LVIF_TEXT;
    item.iItem = row;
    item.iSubItem = column;
    item.pszText = copy.data();
    SendMessageA(list,
                 column == 0 && row == ListView_GetItemCount(list) ? LVM_INSERTITEMA : LVM_SETITEMA,
                 0, reinterpret_cast<LPARAM>(&item));
}

int selectedImage(const Monitor& monitor)
{
    return ListView_GetNextItem(monitor.images, -1, LVNI_SELECTED);
}

/// A text with the line ends that an edit control shows.
std::string withLineEnds(const std::string& lines)
{
    std::string converted;
    for (const char c : lines) {
        if (c == '\n' && (converted.empty() || converted.back() != '\r')) converted += '\r';
        converted += c;
    }
    return converted;
}

} // namespace

bool createChildren(Monitor& monitor)
{
    const HWND window = monitor.window;
    monitor.images = createList(window, imageList,
                                {{IDS_COLUMN_TIME, 64},
                                 {IDS_COLUMN_FILE, 100},
                                 {IDS_COLUMN_CONTENTS, 110},
                                 {IDS_COLUMN_SIZE, 70},
                                 {IDS_COLUMN_RESULT, 240}});
    monitor.blocks =
        createList(window, blockList,
                   {{IDS_COLUMN_ADDRESS, 84}, {IDS_COLUMN_BYTES, 64}, {IDS_COLUMN_BLOCK, 140}});
    monitor.output = CreateWindowExA(
        WS_EX_CLIENTEDGE, "EDIT", "",
        WS_CHILD | WS_VISIBLE | WS_TABSTOP | WS_VSCROLL | ES_MULTILINE | ES_READONLY, 0, 0, 1, 1,
        window, reinterpret_cast<HMENU>(static_cast<INT_PTR>(outputText)), instanceOf(window),
        nullptr);
    const std::array<int, 1> edges{-1};
    monitor.status = createStatusBar(window, edges);
    if (!monitor.images || !monitor.blocks || !monitor.output || !monitor.status ||
        !monitor.preview.create(window))
        return false;
    SendMessageA(monitor.output, WM_SETFONT, SendMessageA(monitor.images, WM_GETFONT, 0, 0), FALSE);
    showStatus(monitor);
    return true;
}

void placeChildren(Monitor& monitor)
{
    SendMessageA(monitor.status, WM_SIZE, 0, 0);
    RECT client{}, bar{};
    GetClientRect(monitor.window, &client);
    GetWindowRect(monitor.status, &bar);
    const int gap = scaled(monitor.window, 4);
    const int bottom = client.bottom - (bar.bottom - bar.top);
    const int middle = bottom * 2 / 5, right = client.right * 9 / 20;
    const int blocksBottom = middle + gap + (bottom - middle - gap) * 3 / 5;
    MoveWindow(monitor.images, 0, 0, client.right, middle, TRUE);
    MoveWindow(monitor.blocks, 0, middle + gap, right, blocksBottom - middle - gap, TRUE);
    MoveWindow(monitor.output, 0, blocksBottom + gap, right, bottom - blocksBottom - gap, TRUE);
    ListView_SetColumnWidth(monitor.images, 4, LVSCW_AUTOSIZE_USEHEADER);
    ListView_SetColumnWidth(monitor.blocks, 2, LVSCW_AUTOSIZE_USEHEADER);
    monitor.preview.place({right + gap, middle + gap, client.right, bottom});
}

void showNewImage(Monitor& monitor)
{
    const int row = static_cast<int>(monitor.entries.size()) - 1;
    const Entry& entry = monitor.entries.back();
    setCell(monitor.images, row, 0, entry.time.substr(entry.time.find(' ') + 1));
    setCell(monitor.images, row, 1, entry.path.substr(entry.path.find_last_of('\\') + 1));
    setCell(monitor.images, row, 2, imageWords(entry.image.contents));
    setCell(monitor.images, row, 3, std::to_string(entry.size));
    setCell(monitor.images, row, 4, entry.result);
    ListView_SetItemState(monitor.images, row, LVIS_SELECTED | LVIS_FOCUSED,
                          LVIS_SELECTED | LVIS_FOCUSED);
    ListView_EnsureVisible(monitor.images, row, FALSE);
    showStatus(monitor);
}

void setResult(Monitor& monitor, std::size_t number, const std::string& result)
{
    Entry* const entry = findEntry(monitor, number);
    if (!entry) return;
    entry->result = result;
    const int row = static_cast<int>(entry - monitor.entries.data());
    setCell(monitor.images, row, 4, result);
    if (selectedImage(monitor) == row) showDetails(monitor);
}

void showDetails(const Monitor& monitor)
{
    ListView_DeleteAllItems(monitor.blocks);
    const int selected = selectedImage(monitor);
    if (selected < 0) {
        SetWindowTextA(monitor.output, "");
        return;
    }
    const Entry& entry = monitor.entries[static_cast<std::size_t>(selected)];
    int row = 0;
    for (const ReceivedBlock& block : entry.image.blocks) {
        std::array<char, 16> address{};
        std::snprintf(address.data(), address.size(), "0x%08X", block.address);
        setCell(monitor.blocks, row, 0, address.data());
        setCell(monitor.blocks, row, 1, std::to_string(block.size));
        setCell(monitor.blocks, row, 2,
                block.contents ? imageWords(block.contents) : resourceText(IDS_NOTHING_THERE));
        ++row;
    }
    SetWindowTextA(monitor.output, withLineEnds(entry.output).c_str());
}

void showStatus(const Monitor& monitor)
{
    std::string line = monitor.entries.empty() ? resourceText(IDS_WAITING) : std::string();
    const auto add = [&](UINT label, const std::string& value) {
        if (value.empty()) return;
        if (!line.empty()) line += "    ";
        line += resourceText(label) + value;
    };
    add(IDS_COPIES_TO, monitor.options.folder);
    add(IDS_RUNS, monitor.options.command);
    setStatusText(monitor.status, 0, line);
}

void clearList(Monitor& monitor)
{
    for (std::size_t i = monitor.entries.size(); i-- > 0;) {
        if (!monitor.entries[i].isDone) continue;
        ListView_DeleteItem(monitor.images, static_cast<int>(i));
        monitor.entries.erase(monitor.entries.begin() + static_cast<std::ptrdiff_t>(i));
    }
    showDetails(monitor);
    showStatus(monitor);
}

} // namespace facetor
