#include "monitor/monitor_window.h"

#include "base/file.h"
#include "monitor/command_runner.h"
#include "monitor/monitor_ids.h"
#include "monitor/preview.h"
#include "output/received_image.h"
#include "ui/dialog.h"
#include "ui/handles.h"
#include "ui/status_bar.h"
#include "ui/window_data.h"

#include <commctrl.h>
#include <shlobj.h>

#include <array>
#include <cstdio>
#include <memory>
#include <vector>

namespace facetor {

namespace {

/// What the editor marks its data with: "TQAL", the first character in the highest byte.
constexpr ULONG_PTR imageTag = 0x5451414C;

constexpr char windowClass[] = "FacetorMonitor";
constexpr UINT commandEnded = WM_APP;      ///< lParam: a CommandRunner::Result
constexpr UINT imageReceived = WM_APP + 1; ///< wParam: the image's number
constexpr int imageList = 1, blockList = 2, outputText = 3;

std::string text(UINT number)
{
    std::array<char, 256> buffer{};
    const int length = LoadStringA(GetModuleHandleA(nullptr), number, buffer.data(),
                                   static_cast<int>(buffer.size()));
    return {buffer.data(), static_cast<std::size_t>(length)};
}

/// An image that came in, as the list shows it.
struct Entry {
    std::string time, path, result, output;
    std::uint64_t size = 0;
    ReceivedImage image;
};

struct Monitor {
    HWND window = nullptr, images = nullptr, blocks = nullptr, output = nullptr, status = nullptr;
    MonitorOptions options;
    std::string settings;
    ReceivedScene scene;
    Preview preview;
    std::vector<Entry> entries;
    std::unique_ptr<CommandRunner> runner;
    int exitStatus = 0;
};

std::string now(const char* form)
{
    SYSTEMTIME time{};
    GetLocalTime(&time);
    std::array<char, 32> buffer{};
    std::snprintf(buffer.data(), buffer.size(), form, time.wYear, time.wMonth, time.wDay,
                  time.wHour, time.wMinute, time.wSecond);
    return buffer.data();
}

int scaled(HWND window, int pixels)
{
    const WindowDc dc(window);
    return MulDiv(pixels, GetDeviceCaps(dc.get(), LOGPIXELSX), 96);
}

// --- The lists ---

HWND createList(HWND owner, int id, std::initializer_list<std::pair<UINT, int>> columns)
{
    const HWND list = CreateWindowExA(
        WS_EX_CLIENTEDGE, WC_LISTVIEWA, "",
        WS_CHILD | WS_VISIBLE | WS_TABSTOP | LVS_REPORT | LVS_SINGLESEL | LVS_SHOWSELALWAYS, 0, 0,
        1, 1, owner, reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), instanceOf(owner), nullptr);
    ListView_SetExtendedListViewStyle(list, LVS_EX_FULLROWSELECT | LVS_EX_DOUBLEBUFFER);
    int number = 0;
    for (const auto& [title, width] : columns) {
        std::string caption = text(title);
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

/// Blocks and output of the image that is selected.
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
        setCell(monitor.blocks, row, 2, block.contents ? block.contents : text(IDS_NOTHING_THERE));
        ++row;
    }
    SetWindowTextA(monitor.output, withLineEnds(entry.output).c_str());
}

void showStatus(const Monitor& monitor)
{
    std::string line = monitor.entries.empty() ? text(IDS_WAITING) : std::string();
    const auto add = [&](UINT label, const std::string& value) {
        if (value.empty()) return;
        if (!line.empty()) line += "    ";
        line += text(label) + value;
    };
    add(IDS_COPIES_TO, monitor.options.folder);
    add(IDS_RUNS, monitor.options.command);
    setStatusText(monitor.status, 0, line);
}

void setResult(Monitor& monitor, std::size_t number, const std::string& result)
{
    monitor.entries[number].result = result;
    setCell(monitor.images, static_cast<int>(number), 4, result);
    if (selectedImage(monitor) == static_cast<int>(number)) showDetails(monitor);
}

// --- What comes in ---

void writeLog(const Monitor& monitor, const Entry& entry)
{
    if (monitor.options.log.empty()) return;
    const std::string line = entry.time + '\t' + entry.path + '\t' + entry.image.contents + '\t' +
                             std::to_string(entry.size) + '\t' + entry.result + "\r\n";
    const UniqueHandle<HANDLE, CloseHandle> file(
        CreateFileA(monitor.options.log.c_str(), FILE_APPEND_DATA, FILE_SHARE_READ, nullptr,
                    OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (file.get() == INVALID_HANDLE_VALUE) {
        setStatusText(monitor.status, 0, monitor.options.log + ": " + text(IDS_NOT_COPIED));
        return;
    }
    DWORD written = 0;
    WriteFile(file.get(), line.data(), static_cast<DWORD>(line.size()), &written, nullptr);
}

/// Ends a run with MonitorOptions::once when its image is done.
void finishImage(Monitor& monitor, std::size_t number, bool good)
{
    writeLog(monitor, monitor.entries[number]);
    if (!monitor.options.once) return;
    monitor.exitStatus = good ? 0 : 1;
    DestroyWindow(monitor.window);
}

/// Checks what the editor has written and lists it. The editor waits for the answer: copies and
/// commands come later. True when it was accepted.
bool receive(Monitor& monitor, const std::string& path)
{
    Entry entry;
    entry.time = now("%04d-%02d-%02d %02d:%02d:%02d");
    entry.path = path;
    if (const auto bytes = readFile(path)) {
        entry.size = bytes->size();
        entry.image = receiveImage(monitor.scene, *bytes);
    } else {
        entry.image.reason = text(IDS_CANNOT_READ);
    }
    const bool accepted = entry.image.reason.empty();
    entry.result = accepted ? text(IDS_ACCEPTED) : text(IDS_REFUSED) + entry.image.reason;

    const int row = static_cast<int>(monitor.entries.size());
    monitor.entries.push_back(entry);
    setCell(monitor.images, row, 0, entry.time.substr(entry.time.find(' ') + 1));
    setCell(monitor.images, row, 1, path.substr(path.find_last_of('\\') + 1));
    setCell(monitor.images, row, 2, entry.image.contents);
    setCell(monitor.images, row, 3, std::to_string(entry.size));
    setCell(monitor.images, row, 4, entry.result);
    ListView_SetItemState(monitor.images, row, LVIS_SELECTED | LVIS_FOCUSED,
                          LVIS_SELECTED | LVIS_FOCUSED);
    ListView_EnsureVisible(monitor.images, row, FALSE);
    showStatus(monitor);
    if (accepted) monitor.preview.show(monitor.scene);
    PostMessageA(monitor.window, imageReceived, static_cast<WPARAM>(row), 0);
    return accepted;
}

/// Copies an accepted image and runs the command on it.
void handOn(Monitor& monitor, std::size_t number)
{
    if (number >= monitor.entries.size()) return; // the list was cleared meanwhile
    const Entry& entry = monitor.entries[number];
    if (!entry.image.reason.empty()) {
        finishImage(monitor, number, false);
        return;
    }
    std::string path = entry.path;
    if (!monitor.options.folder.empty()) {
        SYSTEMTIME time{};
        GetLocalTime(&time);
        const std::string copy =
            monitor.options.folder + '\\' +
            copyName(path, now("%04d%02d%02d-%02d%02d%02d"), time.wMilliseconds);
        if (!CopyFileA(path.c_str(), copy.c_str(), TRUE)) {
            setResult(monitor, number, text(IDS_NOT_COPIED) + copy);
            finishImage(monitor, number, false);
            return;
        }
        path = copy;
    }
    if (monitor.options.command.empty()) {
        finishImage(monitor, number, true);
        return;
    }
    setResult(monitor, number, text(IDS_RUNNING));
    monitor.runner->run(number, commandLineFor(monitor.options.command, path));
}

void endCommand(Monitor& monitor, const CommandRunner::Result& result)
{
    if (result.image >= monitor.entries.size()) return;
    Entry& entry = monitor.entries[result.image];
    entry.output = result.output;
    setResult(monitor, result.image,
              result.started ? text(IDS_FINISHED) + std::to_string(result.exitStatus)
                             : text(IDS_NOT_STARTED) + result.output);
    finishImage(monitor, result.image, result.started && result.exitStatus == 0);
}

// --- The menu ---

void keepSettings(const Monitor& monitor)
{
    if (monitor.settings.empty()) return;
    WritePrivateProfileStringA("Monitor", "Folder", monitor.options.folder.c_str(),
                               monitor.settings.c_str());
    WritePrivateProfileStringA("Monitor", "Command", monitor.options.command.c_str(),
                               monitor.settings.c_str());
}

void chooseFolder(Monitor& monitor)
{
    const std::string title = text(IDS_CHOOSE_FOLDER);
    BROWSEINFOA browse{};
    browse.hwndOwner = monitor.window;
    browse.lpszTitle = title.c_str();
    browse.ulFlags = BIF_RETURNONLYFSDIRS | BIF_NEWDIALOGSTYLE;
    const UniqueHandle<PIDLIST_ABSOLUTE, CoTaskMemFree> chosen(SHBrowseForFolderA(&browse));
    std::array<char, 3 * MAX_PATH> path{};
    if (!chosen || !SHGetPathFromIDListA(chosen.get(), path.data())) return;
    monitor.options.folder = path.data();
    keepSettings(monitor);
    showStatus(monitor);
}

INT_PTR CALLBACK commandProcedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_INITDIALOG:
        keepDialogState(dialog, lParam);
        SetDlgItemTextA(dialog, IDC_MONITOR_COMMAND, dialogState<std::string>(dialog).c_str());
        return TRUE;
    case WM_COMMAND:
        if (LOWORD(wParam) == IDOK)
            dialogState<std::string>(dialog) = windowText(GetDlgItem(dialog, IDC_MONITOR_COMMAND));
        if (LOWORD(wParam) == IDOK || LOWORD(wParam) == IDCANCEL) EndDialog(dialog, LOWORD(wParam));
        return TRUE;
    default: return FALSE;
    }
}

void chooseCommand(Monitor& monitor)
{
    std::string command = monitor.options.command;
    if (runDialog(monitor.window, MAKEINTRESOURCEA(IDD_MONITOR_COMMAND), commandProcedure,
                  reinterpret_cast<LPARAM>(&command)) != IDOK)
        return;
    monitor.options.command = command;
    keepSettings(monitor);
    showStatus(monitor);
}

void clearList(Monitor& monitor)
{
    for (const Entry& entry : monitor.entries)
        if (entry.result == text(IDS_RUNNING)) return; // its result would find no entry
    monitor.entries.clear();
    ListView_DeleteAllItems(monitor.images);
    showDetails(monitor);
    showStatus(monitor);
}

void runMenuCommand(Monitor& monitor, int command)
{
    switch (command) {
    case IDM_MONITOR_FOLDER: chooseFolder(monitor); break;
    case IDM_MONITOR_NO_FOLDER:
        monitor.options.folder.clear();
        keepSettings(monitor);
        showStatus(monitor);
        break;
    case IDM_MONITOR_COMMAND: chooseCommand(monitor); break;
    case IDM_MONITOR_CLEAR: clearList(monitor); break;
    case IDM_MONITOR_EXIT: DestroyWindow(monitor.window); break;
    default: break;
    }
}

// --- The window ---

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

/// The images above; below them the blocks, the command's output and the picture.
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

LRESULT receiveCopyData(Monitor& monitor, const COPYDATASTRUCT& data)
{
    constexpr LRESULT taken = 0, refused = 1; // the protocol's sense
    const auto* bytes = static_cast<const char*>(data.lpData);
    if (data.dwData != imageTag || !bytes || data.cbData < 2 || bytes[data.cbData - 1] != '\0')
        return refused;
    return receive(monitor, bytes) ? taken : refused;
}

LRESULT CALLBACK monitorProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_NCCREATE) {
        auto* monitor =
            static_cast<Monitor*>(reinterpret_cast<const CREATESTRUCTA*>(lParam)->lpCreateParams);
        SetWindowLongPtrA(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(monitor));
        monitor->window = window;
    }
    auto* monitor = reinterpret_cast<Monitor*>(GetWindowLongPtrA(window, GWLP_USERDATA));
    if (!monitor) return DefWindowProcA(window, message, wParam, lParam);
    switch (message) {
    case WM_CREATE: return createChildren(*monitor) ? 0 : -1;
    case WM_SIZE: placeChildren(*monitor); return 0;
    case WM_GETMINMAXINFO:
        reinterpret_cast<MINMAXINFO*>(lParam)->ptMinTrackSize = {scaled(window, 420),
                                                                 scaled(window, 320)};
        return 0;
    case WM_COPYDATA:
        return receiveCopyData(*monitor, *reinterpret_cast<const COPYDATASTRUCT*>(lParam));
    case WM_NOTIFY:
        if (const auto* note = reinterpret_cast<const NMHDR*>(lParam);
            note->idFrom == imageList && note->code == LVN_ITEMCHANGED)
            showDetails(*monitor);
        return 0;
    case WM_COMMAND: runMenuCommand(*monitor, LOWORD(wParam)); return 0;
    case WM_SETFOCUS: SetFocus(monitor->images); return 0;
    case imageReceived: handOn(*monitor, wParam); return 0;
    case commandEnded: {
        const std::unique_ptr<CommandRunner::Result> result(
            reinterpret_cast<CommandRunner::Result*>(lParam));
        endCommand(*monitor, *result);
        return 0;
    }
    case WM_DESTROY: PostQuitMessage(monitor->exitStatus); return 0;
    default: return DefWindowProcA(window, message, wParam, lParam);
    }
}

/// Tab goes from list to list, Del clears.
bool takesKey(Monitor& monitor, MSG& message)
{
    if (message.message == WM_KEYDOWN && message.wParam == VK_DELETE &&
        message.hwnd == monitor.images) {
        clearList(monitor);
        return true;
    }
    return IsDialogMessageA(monitor.window, &message) != FALSE;
}

} // namespace

std::string monitorTitle()
{
    OSVERSIONINFOA version{};
    version.dwOSVersionInfoSize = sizeof version;
    GetVersionExA(&version);
    return loadCatalogueText(nullptr, version.dwPlatformId == VER_PLATFORM_WIN32_WINDOWS
                                          ? Word::monitorTitleConsumer
                                          : Word::monitorTitleNt);
}

int runMonitor(const MonitorOptions& options, const std::string& settings, int showCommand)
{
    const std::string title = monitorTitle();
    if (const HWND running = FindWindowA(windowClass, nullptr)) { // one is enough
        SetForegroundWindow(running);
        return 1;
    }
    INITCOMMONCONTROLSEX controls{sizeof controls, ICC_LISTVIEW_CLASSES | ICC_BAR_CLASSES};
    InitCommonControlsEx(&controls);
    Monitor monitor;
    monitor.options = options;
    monitor.settings = settings;
    if (createReceivedScene(monitor.scene) != Message::none) return 1;
    const HINSTANCE instance = GetModuleHandleA(nullptr);
    WNDCLASSA description{};
    description.lpfnWndProc = monitorProcedure;
    description.hInstance = instance;
    description.hIcon = LoadIconA(instance, MAKEINTRESOURCEA(IDI_MONITOR));
    description.hCursor = LoadCursorA(nullptr, IDC_ARROW);
    description.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_3DFACE + 1);
    description.lpszMenuName = MAKEINTRESOURCEA(IDR_MONITOR_MENU);
    description.lpszClassName = windowClass;
    RegisterClassA(&description);
    constexpr int width = 760, height = 560;
    const HWND window =
        CreateWindowExA(0, windowClass, title.c_str(), WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN,
                        CW_USEDEFAULT, CW_USEDEFAULT, scaled(nullptr, width),
                        scaled(nullptr, height), nullptr, nullptr, instance, &monitor);
    if (!window) return 1;
    monitor.runner = std::make_unique<CommandRunner>(window, commandEnded);
    if (!options.hidden) ShowWindow(window, showCommand);
    MSG message{};
    while (GetMessageA(&message, nullptr, 0, 0) > 0) {
        if (takesKey(monitor, message)) continue;
        TranslateMessage(&message);
        DispatchMessageA(&message);
    }
    monitor.runner.reset(); // before the window's state goes
    return monitor.exitStatus;
}

} // namespace facetor
