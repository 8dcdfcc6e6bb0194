#include "app/settings.h"

#include "base/file.h"
#include "session/command_numbers.h"
#include "session/window_place.h"
#include "state/editor.h"
#include "ui/window_data.h"

#include <shlobj.h>

#include <array>
#include <optional>
#include <span>
#include <string_view>
#include <utility>

namespace facetor {

namespace {

constexpr char userFolderName[] = "\\Facetor";

std::string windowsFolder()
{
    std::array<char, MAX_PATH> folder{};
    const UINT length = GetWindowsDirectoryA(folder.data(), static_cast<UINT>(folder.size()));
    return length < folder.size() ? folder.data() : std::string{};
}

/// The user's own folder for this program, made if it is missing.
std::string userFolder()
{
    std::array<char, MAX_PATH> base{};
    if (FAILED(SHGetFolderPathA(nullptr, CSIDL_LOCAL_APPDATA | CSIDL_FLAG_CREATE, nullptr,
                                SHGFP_TYPE_CURRENT, base.data())))
        return {};
    const std::string folder = std::string(base.data()) + userFolderName;
    CreateDirectoryA(folder.c_str(), nullptr); // usually it is there already
    return folder;
}

/// Where the main window is, or would be if it were neither minimised nor maximised.
WindowRectangle normalPlaceOf(HWND window)
{
    if (!IsIconic(window) && !IsZoomed(window)) return windowPlace(window);
    WINDOWPLACEMENT placement{};
    placement.length = sizeof placement;
    GetWindowPlacement(window, &placement);
    // Counted from the work area's corner, not the screen's.
    MONITORINFO monitor{};
    monitor.cbSize = sizeof monitor;
    GetMonitorInfoA(MonitorFromWindow(window, MONITOR_DEFAULTTOPRIMARY), &monitor);
    const LONG dx = monitor.rcWork.left - monitor.rcMonitor.left;
    const LONG dy = monitor.rcWork.top - monitor.rcMonitor.top;
    const RECT& r = placement.rcNormalPosition;
    return {r.left + dx, r.top + dy, r.right + dx, r.bottom + dy};
}

std::optional<SettingsRecord> readSettings(const std::string& path)
{
    if (path.empty()) return std::nullopt;
    const auto bytes = readFile(path);
    if (!bytes) return std::nullopt;
    return parseSettings({reinterpret_cast<const char*>(bytes->data()), bytes->size()});
}

/// The session says more about the recent files that the settings name. What is kept at all it says
/// by itself.
void applySession(Editor& editor, bool hasSettings)
{
    const Bytes bytes = readFile(sessionPath(editor.settingsPath)).value_or(Bytes{});
    const bool isFirst = !hasSettings && !editor.settingsPath.empty();
    SessionRecord session =
        parseSession({reinterpret_cast<const char*>(bytes.data()), bytes.size()},
                     isFirst ? firstSession() : SessionRecord{});
    editor.keepsVersions = session.keepsVersions;
    editor.keeper.enabled = session.keepsRecovery;
    editor.treeLinked = session.treeLinked;
    editor.attributeEditing.showsMixed = session.mixedShown;
    if (!session.watchesFiles) editor.watching.files = false;
    if (!session.watchesPictures) editor.watching.pictures = false;
    if (session.listWithModel != ListWithModel::unknown)
        editor.listWithModel = session.listWithModel;
    if (!hasSettings) return; // deleted, to begin anew
    editor.zoom = session.zoom;
    completePlaces(editor.settings, session);
    completePaths(editor.recentModels, session.modelFiles);
    completePaths(editor.recentTextures, session.textureFiles);
    editor.imports = std::move(session.imports);
    editor.session = std::move(session);
}

void writeSession(const Editor& editor)
{
    SessionRecord session;
    session.modelFiles = editor.recentModels;
    session.textureFiles = editor.recentTextures;
    const std::string& list = editor.document.textureFile;
    session.lastTextureList = list.empty() ? editor.session.lastTextureList : list;
    session.attributesShown = editor.attributeWindow != nullptr;
    session.hierarchyShown = editor.hierarchyWindow != nullptr;
    session.texturesShown = editor.textureWindow.window != nullptr;
    session.budgetShown = editor.budget.window != nullptr;
    session.drawOrderShown = editor.drawOrder.window != nullptr;
    session.budget = editor.session.budget;
    session.drawOrder = editor.session.drawOrder;
    session.keepsVersions = editor.keepsVersions;
    session.keepsRecovery = editor.keeper.enabled;
    session.treeLinked = editor.treeLinked;
    session.zoom = editor.zoom;
    const SettingsRecord& settings = editor.settings;
    session.mainWindow = settings.mainWindow;
    session.toolBox = settings.toolBox;
    session.hierarchy = settings.hierarchy;
    session.attributes = settings.attributes;
    session.textures = settings.textures;
    session.mixedShown = editor.attributeEditing.showsMixed;
    session.watchesFiles = editor.watching.files;
    session.watchesPictures = editor.watching.pictures;
    session.listWithModel = editor.listWithModel;
    session.imports = editor.imports;
    const std::string text = formatSession(session), path = sessionPath(editor.settingsPath);
    if (writeFile(path, std::as_bytes(std::span(text))) != Message::none) DeleteFileA(path.c_str());
}

} // namespace

std::array<std::string, 2> sharedFolders()
{
    return {windowsFolder(), userFolder()};
}

std::string findSettingsPath()
{
    const auto [windows, user] = sharedFolders();
    return chooseSettingsPath(programFolder(nullptr), windows, user);
}

std::string findKeepFolder(const std::string& settingsPath)
{
    return chooseKeepFolder(settingsPath, programFolder(nullptr), sharedFolders().back());
}

bool applySettings(Editor& editor)
{
    const auto settings = readSettings(editor.settingsPath);
    if (!settings) {
        // Whoever comes here for the first time; others find everything as they know it.
        if (!editor.settingsPath.empty()) editor.listWithModel = ListWithModel::ask;
        applySession(editor, false);
        return false;
    }
    editor.settings = *settings;
    editor.recentModels = settings->modelFiles;
    editor.recentTextures = settings->textureFiles;
    applySession(editor, true);
    const WindowRectangle place =
        restoredPlace(editor.settings.mainWindow, virtualScreen(), windowPlace(editor.mainWindow));
    MoveWindow(editor.mainWindow, place.left, place.top, place.right - place.left,
               place.bottom - place.top, FALSE);
    editor.view.backgroundColour = settings->background;
    editor.engine.settings.pickedColour = settings->pickedPolygon;
    editor.transparentColour = settings->transparent;
    editor.view.dragDrawMode = static_cast<DragDrawMode>(settings->dragMethod);
    return true;
}

void reopenWindows(Editor& editor)
{
    const SessionRecord& session = editor.session;
    for (const auto& [shown, command] : {std::pair{session.attributesShown, IDM_VIEW_ATTRIBUTES},
                                         {session.hierarchyShown, IDM_VIEW_HIERARCHY},
                                         {session.texturesShown, IDM_VIEW_TEXTURES},
                                         {session.budgetShown, IDM_VIEW_BUDGET},
                                         {session.drawOrderShown, IDM_VIEW_DRAW_ORDER}})
        if (shown) SendMessageA(editor.mainWindow, WM_COMMAND, static_cast<WPARAM>(command), 0);
    SetActiveWindow(editor.mainWindow);
}

void writeSettings(Editor& editor)
{
    // A start that failed has read no settings, and has no windows whose places could be kept.
    if (editor.settingsPath.empty() || !editor.toolBox.window) return;
    SettingsRecord& settings = editor.settings;
    settings.mainWindow = normalPlaceOf(editor.mainWindow);
    settings.mainZoomed = IsZoomed(editor.mainWindow) != FALSE;
    settings.toolBox = windowPlace(editor.toolBox.window);
    // A window that is closed has left its place there.
    if (editor.attributeWindow) settings.attributes = windowPlace(editor.attributeWindow);
    if (editor.textureWindow.window) settings.textures = windowPlace(editor.textureWindow.window);
    settings.background = editor.view.backgroundColour;
    settings.pickedPolygon = editor.engine.settings.pickedColour;
    settings.transparent = editor.transparentColour;
    settings.dragMethod = static_cast<std::uint32_t>(editor.view.dragDrawMode);
    settings.modelFiles = editor.recentModels;
    settings.textureFiles = editor.recentTextures;
    const std::string text = formatSettings(settings);
    if (writeFile(editor.settingsPath, std::as_bytes(std::span(text))) != Message::none)
        DeleteFileA(editor.settingsPath.c_str());
    writeSession(editor);
}

} // namespace facetor
