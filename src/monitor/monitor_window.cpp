#include "monitor/monitor_window.h"

#include "monitor/monitor_ids.h"
#include "monitor/monitor_lists.h"
#include "monitor/monitor_menu.h"
#include "monitor/receiving.h"
#include "ui/window_data.h"

#include <commctrl.h>
#include <memory>

namespace facetor {

namespace {

constexpr char windowClass[] = "FacetorMonitor";

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
    case WM_INITMENUPOPUP: refreshMenu(*monitor, reinterpret_cast<HMENU>(wParam)); return 0;
    case WM_COMMAND: runMenuCommand(*monitor, LOWORD(wParam)); return 0;
    case WM_SETFOCUS: SetFocus(monitor->images); return 0;
    case imageReceived: handOn(*monitor, wParam); return 0;
    case commandBegan: beginCommand(*monitor, wParam); return 0;
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
    monitor.runner = std::make_unique<CommandRunner>(window, commandBegan, commandEnded);
    if (!options.hidden) ShowWindow(window, showCommand);
    MSG message{};
    while (GetMessageA(&message, nullptr, 0, 0) > 0) {
        if (takesKey(monitor, message)) continue;
        TranslateMessage(&message);
        DispatchMessageA(&message);
    }
    monitor.runner.reset(); // before the window's state goes
    removeTemporaries(monitor);
    return monitor.exitStatus;
}

} // namespace facetor
