#include "app/recent_menu_win.h"

#include "app/editor_win.h"
#include "app/recent_files.h"
#include "resources/resource_ids.h"

namespace facetor {

namespace {

constexpr int fileMenuPosition = 0; ///< in both menu bars

/// Where the items of recent files stand in a File menu.
struct RecentItems {
    UINT position;    ///< of the first one, after a separator
    int firstCommand; ///< of as many as recent files are kept
    UINT next;        ///< the command of the item behind them
};
constexpr RecentItems modelItems{5, IDM_RECENT_MODEL_1, IDM_FILE_EXIT};
constexpr RecentItems textureItems{8, IDM_RECENT_TEXTURES_1, IDM_TEXTURE_CLOSE};

void rebuild(HWND window, const RecentItems& items, const RecentFiles& files)
{
    const HMENU menu = GetSubMenu(GetMenu(window), fileMenuPosition);
    while (GetMenuItemID(menu, static_cast<int>(items.position)) != items.next &&
           DeleteMenu(menu, items.position, MF_BYPOSITION)) {
    }
    if (files.empty()) return;
    UINT position = items.position;
    for (int index = 0; const std::string& path : files) {
        const std::string text = recentFileItem(index + 1, path);
        InsertMenuA(menu, position++, MF_BYPOSITION | MF_STRING,
                    static_cast<UINT_PTR>(items.firstCommand + index), text.c_str());
        ++index;
    }
    InsertMenuA(menu, position, MF_BYPOSITION | MF_SEPARATOR, 0, nullptr);
}

std::string pathOf(const RecentItems& items, const RecentFiles& files, int command)
{
    const auto index = static_cast<std::size_t>(command - items.firstCommand);
    if (index < files.size() && !files[index].empty()) return files[index];
    MessageBeep(MB_OK);
    return {};
}

} // namespace

void rebuildRecentModelMenu(Editor& editor)
{
    rebuild(editor.mainWindow, modelItems, editor.recentModels);
}

void rebuildRecentTextureMenu(Editor& editor)
{
    if (editor.textureWindow.window)
        rebuild(editor.textureWindow.window, textureItems, editor.recentTextures);
}

void addRecentModel(Editor& editor, const std::string& path)
{
    addRecentFile(editor.recentModels, path);
    rebuildRecentModelMenu(editor);
}

void addRecentTextures(Editor& editor, const std::string& path)
{
    addRecentFile(editor.recentTextures, path);
    rebuildRecentTextureMenu(editor);
}

std::string recentModelOf(const Editor& editor, int command)
{
    return pathOf(modelItems, editor.recentModels, command);
}

std::string recentTexturesOf(const Editor& editor, int command)
{
    return pathOf(textureItems, editor.recentTextures, command);
}

} // namespace facetor
