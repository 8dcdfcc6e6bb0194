#include "windows/recent_menu.h"

#include "resources/resource_ids.h"
#include "session/recent_files.h"
#include "session/settings_text.h"
#include "state/editor.h"
#include "ui/menu.h"

namespace facetor {

namespace {

/// The items of recent files in a File menu, with a separator behind them while there are any.
struct RecentItems {
    int firstCommand; ///< of as many as recent files are kept
    UINT next;        ///< the command of the item behind them
};
constexpr RecentItems modelItems{IDM_RECENT_MODEL_1, IDM_FILE_EXIT};
constexpr RecentItems textureItems{IDM_RECENT_TEXTURES_1, IDM_TEXTURE_CLOSE};

void rebuild(HWND window, const RecentItems& items, const RecentFiles& files)
{
    const HMENU menu = findMenuWith(GetMenu(window), items.next);
    bool hadItems = false;
    for (int i = 0; i < static_cast<int>(recentFileCapacity); ++i)
        if (DeleteMenu(menu, static_cast<UINT>(items.firstCommand + i), MF_BYCOMMAND))
            hadItems = true;
    if (hadItems)
        DeleteMenu(menu, static_cast<UINT>(positionIn(menu, items.next) - 1), MF_BYPOSITION);
    if (files.empty()) return;
    for (int index = 0; const std::string& path : files) {
        const std::string text = recentFileItem(index + 1, path);
        InsertMenuA(menu, items.next, MF_BYCOMMAND | MF_STRING,
                    static_cast<UINT_PTR>(items.firstCommand + index), text.c_str());
        ++index;
    }
    InsertMenuA(menu, items.next, MF_BYCOMMAND | MF_SEPARATOR, 0, nullptr);
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
