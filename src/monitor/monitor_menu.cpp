#include "monitor/monitor_menu.h"

#include "monitor/monitor_ids.h"
#include "monitor/monitor_lists.h"
#include "ui/dialog.h"
#include "ui/handles.h"
#include "ui/window_data.h"

#include <array>
#include <shlobj.h>

namespace facetor {

namespace {

void chooseFolder(Monitor& monitor)
{
    const std::string title = resourceText(IDS_CHOOSE_FOLDER);
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

} // namespace

void refreshMenu(const Monitor& monitor, HMENU menu)
{
    EnableMenuItem(menu, IDM_MONITOR_LEAVE, monitor.running ? MF_ENABLED : MF_GRAYED);
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
    case IDM_MONITOR_LEAVE:
        if (monitor.running) monitor.runner->leave(*monitor.running);
        break;
    case IDM_MONITOR_CLEAR: clearList(monitor); break;
    case IDM_MONITOR_EXIT: DestroyWindow(monitor.window); break;
    default: break;
    }
}

} // namespace facetor
