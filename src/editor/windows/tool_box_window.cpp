#include "windows/tool_box_window.h"

#include "resources/resource_ids.h"
#include "session/menu_state.h"
#include "state/editor.h"
#include "ui/tool_bar.h"
#include "windows/main_tool_bar.h"
#include "windows/model_view_window.h"

#include <algorithm>

namespace facetor {

namespace {

constexpr ToolBarImages images{IDB_TOOLBOX, 22};

// Only an enabled button ends its row, so the one that is to be grey is greyed afterwards.
constexpr BYTE ownRow = TBSTATE_ENABLED | TBSTATE_WRAP;
constexpr ToolBarEntry entries[] = {
    {0, IDM_TOOL_ROTATE, ownRow | TBSTATE_CHECKED, TBSTYLE_CHECKGROUP},
    {1, IDM_TOOL_TRANSLATE, ownRow, TBSTYLE_CHECKGROUP},
    {2, IDM_TOOL_SCALE, ownRow, TBSTYLE_CHECKGROUP},
    {3, IDM_TOOL_SELECT, ownRow, TBSTYLE_CHECKGROUP},
    {5, IDM_TOOL_MOVE_SLICE, ownRow, TBSTYLE_CHECKGROUP},
    {4, IDM_TOOL_BOX_CAMERA, ownRow, TBSTYLE_BUTTON},
};

constexpr ToolTip tips[] = {
    {IDM_TOOL_ROTATE, Word::tipRotate},        {IDM_TOOL_TRANSLATE, Word::tipTranslate},
    {IDM_TOOL_SCALE, Word::tipScale},          {IDM_TOOL_SELECT, Word::tipSelect},
    {IDM_TOOL_MOVE_SLICE, Word::tipMoveSlice}, {IDM_TOOL_BOX_CAMERA, Word::tipCamera},
};

void chooseTool(Editor& editor, ViewTool tool)
{
    const ViewTool before = editor.toolBox.tool;
    editor.toolBox.tool = tool;
    if (tool == ViewTool::moveSlicedTexture && before != tool) editor.slice.toolBefore = before;
    // The outline of the slice comes and goes with its tool.
    if (before != tool &&
        (before == ViewTool::moveSlicedTexture || tool == ViewTool::moveSlicedTexture))
        InvalidateRect(editor.mainWindow, nullptr, FALSE);
}

/// What the buttons cover, from the bar's top-left corner.
SIZE extentOf(HWND toolBar)
{
    SIZE extent{};
    for (int i = 0; i < static_cast<int>(std::size(entries)); ++i) {
        RECT button{};
        SendMessageA(toolBar, TB_GETITEMRECT, static_cast<WPARAM>(i),
                     reinterpret_cast<LPARAM>(&button));
        extent = {std::max(extent.cx, button.right), std::max(extent.cy, button.bottom)};
    }
    return extent;
}

/// Lets the bar fill the window, and gives the window a client area that just holds the buttons.
void fitToButtons(HWND window, HWND toolBar)
{
    const SIZE extent = extentOf(toolBar);
    RECT client{};
    GetClientRect(window, &client);
    SetWindowPos(toolBar, nullptr, 0, 0, std::max(client.right, extent.cx),
                 std::max(client.bottom, extent.cy), SWP_NOZORDER | SWP_NOACTIVATE);
    if (client.right == extent.cx && client.bottom == extent.cy) return;
    RECT outer{};
    GetWindowRect(window, &outer);
    const int width = outer.right - outer.left + extent.cx - client.right;
    const int height = outer.bottom - outer.top + extent.cy - client.bottom;
    // The system may refuse a window as narrow as that: it is asked for a size only once.
    if (width == outer.right - outer.left && height == outer.bottom - outer.top) return;
    SetWindowPos(window, nullptr, 0, 0, width, height, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

bool createButtons(Editor& editor, HWND window)
{
    ToolBox& toolBox = editor.toolBox;
    toolBox.window = window;
    toolBox.toolBar =
        createToolBar(window, entries, images, CCS_NORESIZE | CCS_NOPARENTALIGN | CCS_NODIVIDER);
    if (!toolBox.toolBar) return false;
    SendMessageA(toolBox.toolBar, TB_AUTOSIZE, 0, 0);
    setButtonState(toolBox.toolBar, IDM_TOOL_MOVE_SLICE, false, false);
    return true;
}

void onButton(Editor& editor, int command)
{
    if (command == IDM_TOOL_BOX_CAMERA) { // an action: the tool stays
        POINT cursor{};
        GetCursorPos(&cursor);
        showMenuAt(editor, IDM_CAMERA_FORWARD, cursor);
        return;
    }
    chooseTool(editor, toolOf(command));
}

LRESULT CALLBACK toolBoxProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    Editor& editor = theEditor();
    switch (message) {
    case WM_CREATE: return createButtons(editor, window) ? 0 : -1;
    case WM_SIZE: fitToButtons(window, editor.toolBox.toolBar); return 0;
    case WM_CLOSE: showToolBox(editor, false); return 0;
    case WM_DESTROY: releaseToolBarImages(editor.toolBox.toolBar); return 0;
    case WM_COMMAND: onButton(editor, LOWORD(wParam)); return 0;
    // Its buttons take no keys: those are for the view, whose tool was chosen just now.
    case WM_KEYDOWN: return SendMessageA(editor.mainWindow, message, wParam, lParam);
    case WM_NOTIFY:
        if (answerToolTip(window, lParam, tips)) return 0;
        break;
    default: break;
    }
    return DefWindowProcA(window, message, wParam, lParam);
}

} // namespace

bool registerToolBox(const Editor& editor)
{
    WNDCLASSA description{};
    description.style = CS_HREDRAW | CS_VREDRAW | CS_DBLCLKS;
    description.lpfnWndProc = toolBoxProcedure;
    description.hInstance = editor.instance;
    description.hCursor = LoadCursorA(nullptr, IDC_ARROW);
    description.hbrBackground = reinterpret_cast<HBRUSH>(INT_PTR{COLOR_MENU + 1});
    description.lpszClassName = toolBoxClass;
    return RegisterClassA(&description) != 0;
}

bool createToolBox(Editor& editor, const WindowRectangle& place)
{
    return CreateWindowExA(WS_EX_TOOLWINDOW, toolBoxClass, "", WS_POPUP | WS_CAPTION | WS_SYSMENU,
                           place.left, place.top, place.right - place.left,
                           place.bottom - place.top, editor.mainWindow, nullptr, editor.instance,
                           nullptr) != nullptr;
}

void chooseToolFromMenu(Editor& editor, ViewTool tool)
{
    editor.toolBox.menuTool = tool;
    chooseTool(editor, tool);
    SendMessageA(editor.toolBox.toolBar, TB_CHECKBUTTON, static_cast<WPARAM>(commandOf(tool)),
                 MAKELPARAM(TRUE, 0));
    refreshMenuState(editor);
}

void showToolBox(Editor& editor, bool shown)
{
    ShowWindow(editor.toolBox.window, shown ? SW_SHOWNA : SW_HIDE);
    refreshMenuState(editor);
}

void toggleToolBox(Editor& editor)
{
    showToolBox(editor, !IsWindowVisible(editor.toolBox.window));
}

} // namespace facetor
