#include "commands/hierarchy_commands.h"

#include "dialogs/object_dialog.h"
#include "session/object_text.h"
#include "state/editor.h"
#include "ui/answer_dialog.h"
#include "ui/window_data.h"
#include "windows/hierarchy_window.h"

#include <algorithm>
#include <array>
#include <string>

namespace facetor {

namespace {

void showInformationOf(const Editor& editor, std::uint32_t object)
{
    std::array<std::string, objectGroups.size()> titles;
    std::ranges::transform(objectGroups, titles.begin(),
                           [&](Word title) { return loadCatalogueText(editor.mainWindow, title); });
    MessageBoxA(editor.mainWindow, objectInformation(editor.document.model, object, titles).c_str(),
                loadCatalogueText(editor.mainWindow, Word::objectInformation).c_str(), MB_OK);
}

} // namespace

void renameSelected(Editor& editor)
{
    const auto selected = selectedObject(editor);
    if (!selected) return;
    const auto name = askAnswer(editor.mainWindow, Word::renameModel, {},
                                editor.document.model.names[*selected], longestObjectName);
    if (name) renameObject(editor, *selected, *name);
    markModelChanged(editor.document); // also when the user cancelled
    SetActiveWindow(editor.hierarchyWindow);
}

void showObjectInformation(Editor& editor)
{
    const auto selected = selectedObject(editor);
    if (!selected) return;
    if (GetKeyState(VK_SHIFT) < 0 && GetKeyState(VK_CONTROL) < 0)
        showObjectDialog(editor, *selected);
    else
        showInformationOf(editor, *selected);
    SetActiveWindow(editor.hierarchyWindow);
}

} // namespace facetor
