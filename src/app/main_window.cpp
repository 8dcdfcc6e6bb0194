#include "app/main_window.h"

#include "app/commands_win.h"
#include "app/editor_win.h"
#include "app/main_tool_bar_win.h"
#include "app/model_commands_win.h"
#include "app/model_view_window.h"
#include "app/recent_menu_win.h"
#include "app/settings_win.h"
#include "app/slice_view_win.h"
#include "app/tool_box_window.h"
#include "app/window_place.h"
#include "engine/frame_surface.h"
#include "resources/resource_ids.h"
#include "texture/plug_in_commands_win.h"
#include "ui/dropped_file_win.h"
#include "ui/status_bar_win.h"
#include "ui/tool_bar_win.h"
#include "ui/window_data_win.h"

#include <windows.h>
#include <windowsx.h>

#include <commctrl.h>
#include <shellapi.h>

#include <string>

namespace facetor {

namespace {

constexpr int statusPartEdges[] = {100, 200, 300}; // right edges in pixels

Message startDocument(Editor& editor)
{
    if (const Message message = startEngine(editor.engine); message != Message::none)
        return message;
    if (const Message message = editor.document.textures.create(); message != Message::none)
        return message;
    return createModelStore(editor.document.model);
}

/// Before anything is remembered: as large as the model view can be, beside the tool box.
void placeFirst(Editor& editor)
{
    const HWND window = editor.mainWindow;
    RECT frame{}, client{}, status{}, work{};
    GetWindowRect(window, &frame);
    GetClientRect(window, &client);
    GetWindowRect(editor.statusBar, &status);
    SystemParametersInfoA(SPI_GETWORKAREA, 0, &work, 0);
    const std::int32_t width = surfaceMaxWidth + (frame.right - frame.left) - client.right;
    const std::int32_t height = surfaceMaxHeight + (status.bottom - status.top) +
                                (frame.bottom - frame.top) - client.bottom;
    const WindowRectangle place = firstPlace(width, height, toolBoxStartPlace,
                                             {work.left, work.top, work.right, work.bottom});
    MoveWindow(window, place.left, place.top, place.right - place.left, place.bottom - place.top,
               FALSE);
}

bool createContents(Editor& editor)
{
    DragAcceptFiles(editor.mainWindow, TRUE);
    if (const Message message = startDocument(editor); message != Message::none) {
        alert(editor.alerts, editor.mainWindow, message, AlertStyle::exclamation);
        return false;
    }
    editor.engine.settings.textures = editor.document.textures.slots();
    startView(editor.view, editor.engine);
    editor.toolBar = createMainToolBar(editor.mainWindow);
    if (!editor.toolBar) return false;
    editor.statusBar = createStatusBar(editor.mainWindow, statusPartEdges);
    if (!editor.statusBar) return false;
    refreshStatus(editor);
    if (!applySettings(editor)) placeFirst(editor);
    if (!createToolBox(editor,
                       restoredPlace(editor.settings.toolBox, virtualScreen(), toolBoxStartPlace)))
        return false;
    rebuildRecentModelMenu(editor);
    refreshMenuState(editor);
    return scanPlugIns(editor);
}

void releaseContents(Editor& editor)
{
    releaseToolBarImages(editor.toolBar);
    releaseModelStore(editor.document.model);
    editor.engine.settings.textures = {};
    stopEngine(editor.engine);
    if (!editor.document.textures.slots().empty()) editor.document.textures.clearAll();
    editor.toolBar = nullptr;
    editor.statusBar = nullptr;
    editor.toolBox = ToolBox{};
    editor.mainWindow = nullptr;
}

void onSize(Editor& editor, WPARAM kind, LPARAM size)
{
    SendMessageA(editor.statusBar, WM_SIZE, kind, size);
    SendMessageA(editor.toolBar, TB_AUTOSIZE, 0, 0);
    requestRedraw(editor);
}

void onDropFiles(Editor& editor, HDROP drop)
{
    std::string path;
    if (const Message message = takeDroppedFile(drop, path); message != Message::none)
        alert(editor.alerts, editor.mainWindow, message, AlertStyle::exclamation);
    else if (!path.empty())
        openAnyPath(editor, path);
}

void onClose(Editor& editor)
{
    // While an alert or a dialog is up the window is disabled: the question comes after it.
    if (!IsWindowEnabled(editor.mainWindow)) return;
    showToolBox(editor, false);
    writeSettings(editor);
    if (askSaveModel(editor, Word::ending) == Decision::stay) return;
    if (askSaveTextures(editor, Word::ending) == Decision::stay) return;
    DestroyWindow(editor.mainWindow);
}

/// The position that a mouse message of the client area carries.
POINT mousePosition(LPARAM lParam)
{
    return {GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
}

LRESULT CALLBACK mainWindowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    Editor& editor = theEditor();
    switch (message) {
    case WM_CREATE:
        editor.mainWindow = window;
        if (!createContents(editor)) SendMessageA(window, WM_CLOSE, 0, 0);
        return 0;
    case WM_DESTROY:
        releaseContents(editor);
        PostQuitMessage(0);
        return 0;
    case WM_SIZE: onSize(editor, wParam, lParam); return 0;
    case WM_ERASEBKGND: eraseAroundModelView(editor, reinterpret_cast<HDC>(wParam)); return 1;
    case WM_PAINT: paintModelView(editor); return 0;
    case WM_CLOSE: onClose(editor); return 0;
    case WM_MOUSEMOVE: onMouseMove(editor, mousePosition(lParam), wParam); return 0;
    case WM_NCMOUSEMOVE: onCursorLeft(editor); break; // the frame's own buttons need it as well
    case WM_LBUTTONDOWN: onLeftButtonDown(editor, mousePosition(lParam)); return 0;
    case WM_LBUTTONUP: onLeftButtonUp(editor); return 0;
    case WM_RBUTTONDOWN: onRightButtonDown(editor, mousePosition(lParam), wParam); return 0;
    case WM_RBUTTONUP: onRightButtonUp(editor); return 0;
    case WM_KEYDOWN:
        if (onViewKey(editor, wParam)) return 0;
        break;
    case WM_SETCURSOR:
        if (LOWORD(lParam) == HTCLIENT && reinterpret_cast<HWND>(wParam) == window &&
            showSliceCursor(editor))
            return TRUE;
        break;
    case WM_COMMAND:
        if (runCommand(editor, LOWORD(wParam), lParam)) return 0;
        break;
    case WM_DROPFILES: onDropFiles(editor, reinterpret_cast<HDROP>(wParam)); return 0;
    case WM_NOTIFY:
        if (onMainToolBarNotify(editor, lParam)) return 0;
        break;
    case WM_ENABLE: // an alert or a dialog of this window keeps its tool windows from acting as
                    // well
        EnableWindow(editor.toolBox.window, wParam != FALSE);
        EnableWindow(editor.textureWindow.window, wParam != FALSE);
        for (const HWND dialog : editor.modelessDialogs) EnableWindow(dialog, wParam != FALSE);
        return 0;
    case WM_ACTIVATEAPP: refreshMenuState(editor); break; // the clipboard may have changed
    case messageRedraw: renewModelView(editor); return 0;
    case messageOpenPath: SendMessageA(window, WM_COMMAND, IDM_FILE_OPEN_PATH, lParam); return 0;
    default: break;
    }
    return DefWindowProcA(window, message, wParam, lParam);
}

} // namespace

bool registerMainWindow(const Editor& editor)
{
    WNDCLASSA description{};
    description.style = CS_HREDRAW | CS_VREDRAW | CS_DBLCLKS;
    description.lpfnWndProc = mainWindowProcedure;
    description.hInstance = editor.instance;
    description.hIcon = LoadIconA(editor.instance, "GENERIC");
    description.hCursor = LoadCursorA(nullptr, IDC_ARROW);
    description.hbrBackground = static_cast<HBRUSH>(GetStockObject(GRAY_BRUSH));
    description.lpszMenuName = "IDR_MENU1";
    description.lpszClassName = mainWindowClass;
    return RegisterClassA(&description) != 0;
}

bool createMainWindow(Editor& editor)
{
    constexpr DWORD style = WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN;
    static_assert(style == 0x02CF0000);
    CreateWindowExA(0, mainWindowClass, "TEST", style, CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT,
                    CW_USEDEFAULT, nullptr, nullptr, editor.instance, nullptr);
    return editor.mainWindow != nullptr; // none when it was not created, or closed itself at once
}

void refreshStatus(Editor& editor)
{
    const Model& model = editor.document.model;
    const std::pair<Word, std::uint32_t> parts[] = {
        {Word::objects, model.objectCount},
        {Word::polygons, model.totalPolygonCount},
        {Word::vertices, model.totalVertexCount},
    };
    for (int part = 0; const auto& [word, count] : parts)
        setStatusText(editor.statusBar, part++,
                      loadCatalogueText(editor.mainWindow, word) + " = " + std::to_string(count));
}

} // namespace facetor
