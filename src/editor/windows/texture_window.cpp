#include "windows/texture_window.h"

#include "resources/resource_ids.h"
#include "session/texture_text.h"
#include "session/window_place.h"
#include "state/editor.h"
#include "texture/apply_texture.h"
#include "ui/dropped_file.h"
#include "ui/menu.h"
#include "ui/tool_bar.h"
#include "ui/window_data.h"
#include "windows/attribute_window.h"
#include "windows/editing.h"
#include "windows/main_tool_bar.h"
#include "windows/model_view_window.h"
#include "windows/recent_menu.h"
#include "windows/texture_painting.h"

#include <windows.h>
#include <windowsx.h>

#include <shellapi.h>

#include <array>
#include <cstdlib>
#include <optional>
#include <string>

namespace facetor {

namespace {

constexpr WindowRectangle startPlace{100, 100, 100 + 480, 100 + 140};

constexpr UINT_PTR marqueeTimer = 1;
constexpr UINT marqueePeriod = 200; ///< milliseconds a step

/// Where that menu pops up, from the cursor, in pixels.
constexpr POINT contextMenuOffset{-32, -16};

constexpr ToolBarImages images{IDB_TOOLBAR, 16};

constexpr ToolBarEntry separator{0, 0, TBSTATE_ENABLED, TBSTYLE_SEP};
constexpr ToolBarEntry entries[] = {
    {0, IDM_TEXTURE_OPEN, TBSTATE_ENABLED, TBSTYLE_BUTTON},
    {1, IDM_TEXTURE_SAVE, TBSTATE_ENABLED, TBSTYLE_BUTTON},
    separator,
    {2, IDM_TEXTURE_UNDO, 0, TBSTYLE_BUTTON},
    {3, IDM_TEXTURE_CUT, TBSTATE_ENABLED, TBSTYLE_BUTTON},
    {4, IDM_TEXTURE_COPY, TBSTATE_ENABLED, TBSTYLE_BUTTON},
    {5, IDM_TEXTURE_PASTE, 0, TBSTYLE_BUTTON},
    {6, IDM_TEXTURE_DELETE, TBSTATE_ENABLED, TBSTYLE_BUTTON},
    separator,
    {13, IDM_TEXTURE_INSERT, TBSTATE_ENABLED, TBSTYLE_BUTTON},
    {14, IDM_TEXTURE_BACKSPACE, TBSTATE_ENABLED, TBSTYLE_BUTTON},
    separator,
    {15, IDM_TEXTURE_LINE_UP, 0, TBSTYLE_BUTTON},
    {16, IDM_TEXTURE_LINE_DOWN, TBSTATE_ENABLED, TBSTYLE_BUTTON},
};

RECT toRect(const PixelRectangle& r)
{
    return {r.left, r.top, r.right, r.bottom};
}

/// Marks a slot's cell, grown by some pixels, for painting.
void invalidateCell(const TextureWindow& textures, std::uint32_t slot, int grownBy)
{
    const auto cell = cellOf(gridArea(textures), textures.topSlot, static_cast<std::int32_t>(slot));
    if (!cell) return;
    RECT area = toRect(movedBy(cellOutline, cell->left, cell->top));
    InflateRect(&area, grownBy, grownBy);
    InvalidateRect(textures.window, &area, FALSE);
}

bool createContents(Editor& editor, HWND window)
{
    TextureWindow& textures = editor.textureWindow;
    textures.toolBar = createToolBar(window, entries, images, 0);
    if (!textures.toolBar) return false;
    textures.window = window;
    textures.wheel = 0;
    DragAcceptFiles(window, TRUE);
    showTextureTitle(editor, {});
    rebuildRecentTextureMenu(editor);
    SetTimer(window, marqueeTimer, marqueePeriod, nullptr);
    return true;
}

/// Makes the client area one of whole cells, with the window's top-left corner where it is.
void snapSize(const TextureWindow& textures)
{
    const GridArea area = gridArea(textures);
    const GridSize present{area.width, area.bottom}, snapped = snappedSize(present, area.top);
    // As far as the system goes along with it: a window has a smallest size.
    if (snapped == present) return;
    RECT outer{};
    GetWindowRect(textures.window, &outer);
    SetWindowPos(textures.window, nullptr, 0, 0,
                 outer.right - outer.left + snapped.width - present.width,
                 outer.bottom - outer.top + snapped.height - present.height,
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void rememberPlace(Editor& editor)
{
    editor.settings.textures = windowPlace(editor.textureWindow.window);
}

void onSize(Editor& editor)
{
    if (!editor.textureWindow.window) return;
    SendMessageA(editor.textureWindow.toolBar, TB_AUTOSIZE, 0, 0);
    snapSize(editor.textureWindow);
    rememberPlace(editor);
}

void onPick(Editor& editor, POINT cursor)
{
    const TextureWindow& textures = editor.textureWindow;
    if (const auto slot = slotAt(gridArea(textures), textures.topSlot, cursor.x, cursor.y))
        chooseTexture(editor, *slot);
}

/// Puts the current texture on the picked polygons, as the keys say that are held.
void applyCurrentTexture(Editor& editor)
{
    const TextureApplication application{isKeyDown('H'), isKeyDown('V'), isKeyDown(VK_SHIFT),
                                         pickedAfterByCtrl()};
    editModel(editor, Word::stepApplyTexture, ModelEdit::attributes, [&](Model& model) {
        applyTextureToPicked(model, static_cast<std::uint16_t>(editor.document.textures.current),
                             application);
    });
    markModelChanged(editor.document); // also where nothing differs
}

void showEditMenu(HWND window, POINT cursor)
{
    ClientToScreen(window, &cursor);
    TrackPopupMenu(findMenuWith(GetMenu(window), IDM_TEXTURE_UNDO), TPM_RIGHTBUTTON,
                   cursor.x + contextMenuOffset.x, cursor.y + contextMenuOffset.y, 0, window,
                   nullptr);
}

void onDropFiles(Editor& editor, HDROP drop)
{
    std::string path;
    const Message message = takeDroppedFile(editor.textureWindow.window, drop, path);
    if (message != Message::none)
        alert(editor.alerts, editor.mainWindow, message, AlertStyle::exclamation);
    else if (!path.empty())
        SendMessageA(editor.textureWindow.window, WM_COMMAND, IDM_FILE_OPEN_PATH,
                     reinterpret_cast<LPARAM>(path.c_str()));
}

/// Scrolls until a slot is in sight.
void showSlot(Editor& editor, std::uint32_t slot)
{
    TextureWindow& textures = editor.textureWindow;
    const std::int32_t top = topSlotShowing(gridArea(textures), textures.topSlot, slot);
    if (top == textures.topSlot) return;
    textures.topSlot = top;
    redrawTextures(editor);
    refreshMenuState(editor);
}

/// Scrolls a row for each notch of the wheel.
void onWheel(Editor& editor, int turned)
{
    int& wheel = editor.textureWindow.wheel;
    wheel += turned;
    for (; std::abs(wheel) >= WHEEL_DELTA; wheel -= wheel > 0 ? WHEEL_DELTA : -WHEEL_DELTA)
        scrollTextures(editor, wheel > 0 ? GridScroll::pageUp : GridScroll::pageDown);
}

std::optional<GridMove> moveOfKey(WPARAM key)
{
    switch (key) {
    case VK_LEFT: return GridMove::left;
    case VK_RIGHT: return GridMove::right;
    case VK_UP: return GridMove::up;
    case VK_DOWN: return GridMove::down;
    case VK_HOME: return GridMove::first;
    case VK_END: return GridMove::last;
    default: return std::nullopt;
    }
}

/// Keys choose a texture, scroll, and put the texture on the picked polygons.
void onKey(Editor& editor, WPARAM key)
{
    if (const std::optional<GridMove> move = moveOfKey(key)) {
        const GridArea area = gridArea(editor.textureWindow);
        const TextureList& list = editor.document.textures;
        chooseTexture(editor,
                      neighbourSlot(list.current, *move, columnsShown(area), list.usedCount()));
        showSlot(editor, list.current);
    } else if (key == VK_PRIOR || key == VK_NEXT) {
        scrollTextures(editor, key == VK_PRIOR ? GridScroll::pageUp : GridScroll::pageDown);
    } else if (key == VK_RETURN || key == VK_SPACE) {
        applyCurrentTexture(editor);
    }
}

/// A button's tip is what its item in the menu says.
bool answerTip(HWND window, LPARAM notification)
{
    const auto& header = *reinterpret_cast<const NMHDR*>(notification);
    if (header.code != TTN_GETDISPINFOA) return false;
    std::array<char, 64> item{};
    GetMenuStringA(GetMenu(window), static_cast<UINT>(header.idFrom), item.data(),
                   static_cast<int>(item.size()), MF_BYCOMMAND);
    const std::string tip = tipOfMenuItem(item.data());
    auto& answer = *reinterpret_cast<NMTTDISPINFOA*>(notification);
    answer.szText[tip.copy(answer.szText, std::size(answer.szText) - 1)] = '\0';
    answer.lpszText = answer.szText;
    return true;
}

/// What a command asks and says belongs to the main window, which is activated when that closes. A
/// command that was chosen in this window gives the keyboard back to it.
void onCommand(Editor& editor, int number, LPARAM argument)
{
    const HWND window = editor.textureWindow.window;
    const bool wasActive = GetActiveWindow() == window;
    (void)editor.runCommand(editor, CommandWindow::textures, number, argument);
    if (wasActive && editor.textureWindow.window) SetActiveWindow(window);
}

void onDestroy(Editor& editor)
{
    TextureWindow& textures = editor.textureWindow;
    if (!textures.window) return; // it was not opened wholly
    rememberPlace(editor);
    KillTimer(textures.window, marqueeTimer);
    releaseToolBarImages(textures.toolBar);
    textures.window = nullptr;
    textures.toolBar = nullptr;
    refreshMenuState(editor);
}

LRESULT CALLBACK textureProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    Editor& editor = theEditor();
    switch (message) {
    case WM_CREATE: return createContents(editor, window) ? 0 : -1;
    case WM_DESTROY: onDestroy(editor); return 0;
    case WM_MOVE:
        if (editor.textureWindow.window) rememberPlace(editor);
        return 0;
    case WM_SIZE: onSize(editor); return 0;
    case WM_ERASEBKGND: eraseBehindToolBar(editor, reinterpret_cast<HDC>(wParam)); return 1;
    case WM_PAINT: paintTextures(editor); return 0;
    case WM_TIMER: stepMarquee(editor); return 0;
    case WM_LBUTTONDOWN: onPick(editor, {GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)}); return 0;
    case WM_LBUTTONDBLCLK: applyCurrentTexture(editor); return 0;
    case WM_RBUTTONDOWN:
        showEditMenu(window, {GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)});
        return 0;
    case WM_KEYDOWN: onKey(editor, wParam); return 0;
    case WM_MOUSEWHEEL: onWheel(editor, GET_WHEEL_DELTA_WPARAM(wParam)); return 0;
    case WM_DROPFILES: onDropFiles(editor, reinterpret_cast<HDROP>(wParam)); return 0;
    case WM_ACTIVATEAPP: refreshMenuState(editor); return 0; // the clipboard may have changed
    case WM_COMMAND: onCommand(editor, LOWORD(wParam), lParam); return 0;
    case WM_NOTIFY:
        if (answerTip(window, lParam)) return 0;
        break;
    default: break;
    }
    return DefWindowProcA(window, message, wParam, lParam);
}

} // namespace

bool registerTextureWindow(const Editor& editor)
{
    WNDCLASSA description{};
    description.style = CS_HREDRAW | CS_VREDRAW | CS_DBLCLKS;
    description.lpfnWndProc = textureProcedure;
    description.hInstance = editor.instance;
    description.hCursor = LoadCursorA(nullptr, IDC_ARROW);
    description.hbrBackground = reinterpret_cast<HBRUSH>(INT_PTR{COLOR_MENU + 1});
    description.lpszMenuName = "IDR_TEXMENU";
    description.lpszClassName = textureWindowClass;
    return RegisterClassA(&description) != 0;
}

void toggleTextureWindow(Editor& editor)
{
    if (editor.textureWindow.window) {
        SendMessageA(editor.textureWindow.window, WM_CLOSE, 0, 0);
        return;
    }
    const WindowRectangle place =
        restoredPlace(editor.settings.textures, virtualScreen(), startPlace);
    CreateWindowExA(WS_EX_TOOLWINDOW, textureWindowClass, "",
                    WS_POPUP | WS_VISIBLE | WS_CAPTION | WS_SYSMENU | WS_THICKFRAME, place.left,
                    place.top, place.right - place.left, place.bottom - place.top,
                    editor.mainWindow, nullptr, editor.instance, nullptr);
    refreshMenuState(editor);
}

void showTextureTitle(const Editor& editor, const std::string& file)
{
    if (const HWND window = editor.textureWindow.window)
        SetWindowTextA(window, file.empty()
                                   ? loadCatalogueText(window, Word::textureListTitle).c_str()
                                   : file.c_str());
}

void redrawTextures(Editor& editor)
{
    const TextureWindow& textures = editor.textureWindow;
    if (!textures.window) return;
    const GridArea area = gridArea(textures);
    const RECT grid{0, area.top, area.width, area.bottom};
    InvalidateRect(textures.window, &grid, FALSE);
}

namespace {

void makeCurrent(Editor& editor, std::uint32_t slot)
{
    const TextureWindow& textures = editor.textureWindow;
    if (textures.window) {
        invalidateCell(textures, editor.document.textures.current, 2);
        invalidateCell(textures, slot, 1);
    }
    editor.document.textures.current = slot;
    if (editor.slice.shown) requestRedraw(editor); // the view shows the current texture
}

} // namespace

void chooseTexture(Editor& editor, std::uint32_t slot)
{
    makeCurrent(editor, slot);
    setWorkingTexture(editor, static_cast<std::uint16_t>(slot));
}

void scrollTextures(Editor& editor, GridScroll step)
{
    TextureWindow& textures = editor.textureWindow;
    if (!textures.window) return;
    textures.topSlot = scrolled(textures.topSlot, step, gridArea(textures).width);
    redrawTextures(editor);
    refreshMenuState(editor);
}

void showTexture(Editor& editor, std::uint32_t slot)
{
    makeCurrent(editor, slot);
    if (editor.textureWindow.window) showSlot(editor, slot);
}

GridArea gridArea(const TextureWindow& textures)
{
    RECT client{}, bar{};
    GetClientRect(textures.window, &client);
    GetWindowRect(textures.toolBar, &bar);
    return {bar.bottom - bar.top, client.right, client.bottom};
}

} // namespace facetor
