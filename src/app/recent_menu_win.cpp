#include "app/recent_menu_win.h"

#include "app/editor_win.h"
#include "app/recent_files.h"
#include "resources/resource_ids.h"

namespace facetor {

namespace {

constexpr int fileMenuPosition = 0;   ///< in the menu bar
constexpr UINT firstItemPosition = 5; ///< in the File menu, after the separator behind Save as

} // namespace

void rebuildRecentModelMenu(Editor& editor)
{
    const HMENU menu = GetSubMenu(GetMenu(editor.mainWindow), fileMenuPosition);
    while (GetMenuItemID(menu, firstItemPosition) != IDM_FILE_EXIT &&
           DeleteMenu(menu, firstItemPosition, MF_BYPOSITION)) {
    }
    if (editor.recentModels.empty()) return;
    UINT position = firstItemPosition;
    for (int index = 0; const std::string& path : editor.recentModels) {
        const std::string text = recentFileItem(index + 1, path);
        InsertMenuA(menu, position++, MF_BYPOSITION | MF_STRING,
                    static_cast<UINT_PTR>(IDM_RECENT_MODEL_1 + index), text.c_str());
        ++index;
    }
    InsertMenuA(menu, position, MF_BYPOSITION | MF_SEPARATOR, 0, nullptr);
}

void addRecentModel(Editor& editor, const std::string& path)
{
    addRecentFile(editor.recentModels, path);
    rebuildRecentModelMenu(editor);
}

void openRecentModel(Editor& editor, int command)
{
    const auto index = static_cast<std::size_t>(command - IDM_RECENT_MODEL_1);
    if (index >= editor.recentModels.size() || editor.recentModels[index].empty()) {
        MessageBeep(MB_OK);
        return;
    }
    const std::string path = editor.recentModels[index]; // opening changes the list
    SendMessageA(editor.mainWindow, WM_COMMAND, IDM_FILE_OPEN_PATH,
                 reinterpret_cast<LPARAM>(path.c_str()));
}

} // namespace facetor
