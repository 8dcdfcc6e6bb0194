#include "ui/tool_bar.h"

#include "ui/window_data.h"

#include <algorithm>
#include <array>
#include <string>
#include <vector>

namespace facetor {

namespace {

/// What the bitmaps show where the button's face is to be seen.
constexpr COLORREF faceColour = RGB(192, 192, 192);

} // namespace

HWND createToolBar(HWND owner, std::span<const ToolBarEntry> entries, const ToolBarImages& images,
                   DWORD style)
{
    const INITCOMMONCONTROLSEX classes{sizeof classes, ICC_BAR_CLASSES};
    if (!InitCommonControlsEx(&classes)) return nullptr;
    const HINSTANCE instance = instanceOf(owner);
    const HWND bar =
        CreateWindowExA(0, TOOLBARCLASSNAMEA, "", WS_CHILD | WS_VISIBLE | TBSTYLE_TOOLTIPS | style,
                        0, 0, 0, 0, owner, nullptr, instance, nullptr);
    if (!bar) return nullptr;
    SendMessageA(bar, TB_BUTTONSTRUCTSIZE, sizeof(TBBUTTON), 0);
    // Also over a tool window while another one has the keyboard, as mostly is the case.
    const auto tips = reinterpret_cast<HWND>(SendMessageA(bar, TB_GETTOOLTIPS, 0, 0));
    if (tips)
        SetWindowLongPtrA(tips, GWL_STYLE, GetWindowLongPtrA(tips, GWL_STYLE) | TTS_ALWAYSTIP);
    const HIMAGELIST list =
        ImageList_LoadImageA(instance, MAKEINTRESOURCEA(images.resource), images.size, 0,
                             faceColour, IMAGE_BITMAP, LR_CREATEDIBSECTION);
    SendMessageA(bar, TB_SETIMAGELIST, 0, reinterpret_cast<LPARAM>(list));
    std::vector<TBBUTTON> buttons;
    for (const ToolBarEntry& entry : entries) {
        TBBUTTON button{};
        button.iBitmap = entry.image;
        button.idCommand = entry.command;
        button.fsState = entry.state;
        button.fsStyle = entry.style;
        buttons.push_back(button);
    }
    SendMessageA(bar, TB_ADDBUTTONSA, buttons.size(), reinterpret_cast<LPARAM>(buttons.data()));
    return bar;
}

void releaseToolBarImages(HWND toolBar)
{
    const LRESULT list = SendMessageA(toolBar, TB_SETIMAGELIST, 0, 0);
    if (list) ImageList_Destroy(reinterpret_cast<HIMAGELIST>(list));
}

void setButtonState(HWND toolBar, int command, bool enabled, bool pressed)
{
    const auto button = static_cast<WPARAM>(command);
    const LRESULT state = SendMessageA(toolBar, TB_GETSTATE, button, 0);
    if (state < 0) return;
    const LRESULT kept = state & ~LRESULT{TBSTATE_ENABLED | TBSTATE_CHECKED};
    const LRESULT wanted = kept | (enabled ? TBSTATE_ENABLED : 0) | (pressed ? TBSTATE_CHECKED : 0);
    if (wanted != state) SendMessageA(toolBar, TB_SETSTATE, button, MAKELPARAM(wanted, 0));
}

bool answerToolTip(HWND window, LPARAM notification, std::span<const ToolTip> tips)
{
    auto& header = *reinterpret_cast<NMHDR*>(notification);
    if (header.code != TTN_GETDISPINFOA) return false;
    const auto tip = std::ranges::find(tips, static_cast<int>(header.idFrom), &ToolTip::command);
    if (tip == tips.end()) return false;
    auto& answer = *reinterpret_cast<NMTTDISPINFOA*>(notification);
    const std::string text = loadCatalogueText(window, tip->text);
    text.copy(answer.szText, std::size(answer.szText) - 1);
    answer.szText[std::min(text.size(), std::size(answer.szText) - 1)] = '\0';
    answer.lpszText = answer.szText;
    return true;
}

} // namespace facetor
