#include "app/main_window.h"

#include "app/commands.h"
#include "app/settings.h"
#include "commands/keep_commands.h"
#include "commands/model_commands.h"
#include "commands/plug_in_commands.h"
#include "commands/select_commands.h"
#include "commands/watch_commands.h"
#include "engine/frame_surface.h"
#include "resources/resource_ids.h"
#include "session/window_place.h"
#include "state/editor.h"
#include "ui/dropped_file.h"
#include "ui/status_bar.h"
#include "ui/tool_bar.h"
#include "ui/window_data.h"
#include "windows/draw_order_view.h"
#include "windows/further_status.h"
#include "windows/main_tool_bar.h"
#include "windows/model_view_window.h"
#include "windows/recent_menu.h"
#include "windows/slice_view.h"
#include "windows/tool_box_window.h"
#include "windows/view_gestures.h"

#include <windows.h>
#include <windowsx.h>

#include <commctrl.h>
#include <shellapi.h>

#include <string>

namespace facetor {

namespace {

constexpr UINT_PTR keeperTimer = 1;

Message startContents(Editor& editor)
{
    if (const Message message = startEngine(editor.engine); message != Message::none)
        return message;
    return startDocument(editor.document);
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
    if (const Message message = startContents(editor); message != Message::none) {
        alert(editor.alerts, editor.mainWindow, message, AlertStyle::exclamation);
        return false;
    }
    editor.engine.settings.textures = editor.document.textures.slots();
    startView(editor.view, editor.engine);
    editor.toolBar = createMainToolBar(editor.mainWindow);
    if (!editor.toolBar) return false;
    editor.statusBar = createMainStatusBar(editor.mainWindow);
    if (!editor.statusBar) return false;
    refreshStatus(editor);
    if (!applySettings(editor)) placeFirst(editor);
    if (!createToolBox(editor,
                       restoredPlace(editor.settings.toolBox, virtualScreen(), toolBoxStartPlace)))
        return false;
    rebuildRecentModelMenu(editor);
    refreshMenuState(editor);
    if (!editor.keeper.folder.empty())
        SetTimer(editor.mainWindow, keeperTimer, keeperPace, nullptr);
    return scanPlugIns(editor);
}

void releaseContents(Editor& editor)
{
    editor.watching.looker.stop();
    releaseToolBarImages(editor.toolBar);
    editor.engine.settings.textures = {};
    stopEngine(editor.engine);
    releaseDocument(editor.document);
    editor.loadedPlugIns.clear();
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
    const Message message = takeDroppedFile(editor.mainWindow, drop, path);
    if (message != Message::none)
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
    keepBeforeRisk(editor);
    if (askSaveModel(editor, Word::ending) == Decision::stay) return;
    if (askSaveTextures(editor, Word::ending) == Decision::stay) return;
    endKeeper(editor.keeper, editor.document, editor.view,
              editor.keeper.unsavedOnPurpose ? KeeperEnd::undecided : KeeperEnd::decided);
    DestroyWindow(editor.mainWindow);
}

/// The user's session ends, perhaps with this process: nobody is there to be asked.
void onEndSession(Editor& editor)
{
    writeSettings(editor);
    endKeeper(editor.keeper, editor.document, editor.view, KeeperEnd::undecided);
}

void onTimer(Editor& editor, UINT_PTR timer)
{
    if (timer == fileWatchTimer) return onWatchTimer(editor);
    if (timer != keeperTimer || !isRunning(editor)) return;
    Keeper& keeper = editor.keeper;
    tickKeeper(keeper, editor.document, editor.view, GetTickCount64());
    if (keeper.fault == keeper.toldFault) return;
    keeper.toldFault = keeper.fault;
    if (keeper.fault.empty()) return;
    editor.statusLine = expandPlaceholders(
        loadCatalogueText(editor.mainWindow, Word::recoveryStopped),
        loadCatalogueText(editor.mainWindow, Message::recoveryNotWritten), keeper.fault);
    refreshStatus(editor);
}

/// Tells in the status bar which step of the history the highlighted menu item stands for.
void showHighlighted(const Editor& editor, int command, UINT flags)
{
    const Document& document = editor.document;
    const Direction direction =
        command == IDM_EDIT_STEP_BACK ? Direction::back : Direction::forward;
    const bool isStep = command == IDM_EDIT_STEP_BACK || command == IDM_EDIT_STEP_FORWARD;
    const bool shown = isStep && flags != 0xFFFF && !(flags & MF_POPUP);
    showStatusMessage(editor.statusBar,
                      shown && canStep(document, direction)
                          ? loadCatalogueText(editor.mainWindow, stepName(document, direction))
                          : editor.statusLine);
}

/// The position that a mouse message of the client area carries.
POINT mousePosition(LPARAM lParam)
{
    return {GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
}

/// Where the mouse is by now: the last of the moves with the same keys that wait one behind
/// another. While a frame took long, one of them may stand for each step that the mouse went.
POINT latestPosition(HWND window, WPARAM keys, LPARAM position)
{
    MSG next{};
    // Looked at first, since a button's message between two moves has to stay there.
    while (PeekMessageA(&next, window, WM_MOUSEFIRST, WM_MOUSELAST, PM_NOREMOVE) &&
           next.message == WM_MOUSEMOVE && next.wParam == keys &&
           PeekMessageA(&next, window, WM_MOUSEMOVE, WM_MOUSEMOVE, PM_REMOVE))
        position = next.lParam;
    return mousePosition(position);
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
    case WM_ENDSESSION:
        if (wParam != FALSE) onEndSession(editor);
        return 0;
    case WM_TIMER: onTimer(editor, wParam); return 0;
    case WM_MOUSEMOVE:
        onMouseMove(editor, viewPosition(editor, latestPosition(window, wParam, lParam)), wParam);
        return 0;
    case WM_NCMOUSEMOVE: onCursorLeft(editor); break; // the frame's own buttons need it as well
    case WM_LBUTTONDOWN:
        onLeftButtonDown(editor, viewPosition(editor, mousePosition(lParam)));
        return 0;
    case WM_LBUTTONUP: onLeftButtonUp(editor); return 0;
    case WM_LBUTTONDBLCLK:
        if (!onAskedPixel(editor, viewPosition(editor, mousePosition(lParam))) &&
            editor.toolBox.tool == ViewTool::selectPolygons)
            selectConnectedAt(editor, viewPosition(editor, mousePosition(lParam)));
        return 0;
    case WM_RBUTTONDOWN: onRightButtonDown(editor, mousePosition(lParam), wParam); return 0;
    case WM_RBUTTONUP: onRightButtonUp(editor); return 0;
    case WM_KEYDOWN:
        if (onViewKey(editor, wParam) || onCommandKey(editor, wParam)) return 0;
        break;
    // What begins with Alt held goes on to the system as well, which would open the menu otherwise.
    case WM_SYSKEYDOWN: onTurningKey(editor, wParam); break;
    case WM_MBUTTONDOWN:
    case WM_MBUTTONDBLCLK: // the second of two quick drags begins with it
        onMiddleButtonDown(editor, viewPosition(editor, mousePosition(lParam)));
        break;
    case WM_MBUTTONUP: onMiddleButtonUp(editor); return 0;
    case WM_CAPTURECHANGED: onMiddleButtonUp(editor); return 0;
    case WM_MOUSEWHEEL:
        onWheel(editor, GET_WHEEL_DELTA_WPARAM(wParam), mousePosition(lParam));
        return 0;
    case WM_SETCURSOR:
        if (LOWORD(lParam) == HTCLIENT && reinterpret_cast<HWND>(wParam) == window &&
            (showAskCursor(editor) || showSliceCursor(editor)))
            return TRUE;
        break;
    case WM_COMMAND:
        if (runCommand(editor, CommandWindow::main, LOWORD(wParam), lParam)) return 0;
        break;
    case WM_MENUSELECT: showHighlighted(editor, LOWORD(wParam), HIWORD(wParam)); break;
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
    case messageFilesLooked:
        if (takeLook(editor)) SendMessageA(window, WM_COMMAND, IDM_FILE_REREAD, 0);
        return 0;
    case messageRedraw: requestRedraw(editor); return 0;
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
    refreshFurtherStatus(editor);
    showStatusMessage(editor.statusBar, editor.statusLine);
}

} // namespace facetor
