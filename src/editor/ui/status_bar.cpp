#include "ui/status_bar.h"

#include "ui/window_data.h"

#include <windows.h>

#include <commctrl.h>

namespace facetor {

HWND createStatusBar(HWND owner, std::span<const int> partEdges)
{
    const INITCOMMONCONTROLSEX classes{sizeof classes, ICC_BAR_CLASSES};
    if (!InitCommonControlsEx(&classes)) return nullptr;
    const HWND statusBar =
        CreateWindowExA(0, STATUSCLASSNAMEA, "", WS_CHILD | WS_VISIBLE | SBARS_SIZEGRIP, 0, 0, 0, 0,
                        owner, nullptr, instanceOf(owner), nullptr);
    if (!statusBar) return nullptr;
    SendMessageA(statusBar, SB_SETPARTS, partEdges.size(),
                 reinterpret_cast<LPARAM>(partEdges.data()));
    return statusBar;
}

void setStatusText(HWND statusBar, int part, const std::string& text)
{
    SendMessageA(statusBar, SB_SETTEXTA, static_cast<WPARAM>(part),
                 reinterpret_cast<LPARAM>(text.c_str()));
}

void showStatusMessage(HWND statusBar, const std::string& text)
{
    if (!text.empty()) // SB_SIMPLEID stands for the bar as one
        SendMessageA(statusBar, SB_SETTEXTA, SB_SIMPLEID | SBT_NOBORDERS,
                     reinterpret_cast<LPARAM>(text.c_str()));
    SendMessageA(statusBar, SB_SIMPLE, !text.empty(), 0);
}

} // namespace facetor
