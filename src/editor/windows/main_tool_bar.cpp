#include "windows/main_tool_bar.h"

#include "resources/resource_ids.h"
#include "session/menu_state.h"
#include "state/editor.h"
#include "ui/menu.h"
#include "ui/tool_bar.h"
#include "view/selection.h"
#include "windows/further_status.h"

#include <vector>

namespace facetor {

namespace {

constexpr ToolBarImages images{IDB_TOOLBAR, 16};

constexpr ToolBarEntry separator{0, 0, TBSTATE_ENABLED, TBSTYLE_SEP};
constexpr ToolBarEntry entries[] = {
    {0, IDM_FILE_OPEN, TBSTATE_ENABLED, TBSTYLE_BUTTON},
    {1, IDM_FILE_SAVE, TBSTATE_ENABLED, TBSTYLE_BUTTON},
    separator,
    {2, IDM_EDIT_UNDO, 0, TBSTYLE_BUTTON},
    {3, IDM_EDIT_CUT, 0, TBSTYLE_BUTTON},
    {4, IDM_EDIT_COPY, 0, TBSTYLE_BUTTON},
    {5, IDM_EDIT_PASTE, 0, TBSTYLE_BUTTON},
    {6, IDM_EDIT_DELETE, 0, TBSTYLE_BUTTON},
    separator,
    {7, IDM_OPTIONS_LIGHT, TBSTATE_ENABLED, TBSTYLE_BUTTON},
    {8, IDM_OPTIONS_SCREEN, TBSTATE_ENABLED, TBSTYLE_BUTTON},
    separator,
    {9, IDM_VIEW_TOOL_BOX, TBSTATE_ENABLED | TBSTATE_CHECKED, TBSTYLE_CHECK},
    {10, IDM_VIEW_ATTRIBUTES, TBSTATE_ENABLED, TBSTYLE_CHECK},
};

constexpr ToolTip tips[] = {
    {IDM_FILE_OPEN, Word::tipOpen},           {IDM_FILE_SAVE, Word::tipSave},
    {IDM_EDIT_UNDO, Word::tipUndo},           {IDM_EDIT_CUT, Word::tipCut},
    {IDM_EDIT_COPY, Word::tipCopy},           {IDM_EDIT_PASTE, Word::tipPaste},
    {IDM_EDIT_DELETE, Word::tipDelete},       {IDM_VIEW_ATTRIBUTES, Word::tipAttributes},
    {IDM_VIEW_HIERARCHY, Word::tipHierarchy}, {IDM_HELP_ABOUT, Word::tipAbout},
    {IDM_VIEW_TEXTURES, Word::tipTextures},   {IDM_OPTIONS_LIGHT, Word::tipLight},
    {IDM_OPTIONS_SCREEN, Word::tipScreen},    {IDM_VIEW_TOOL_BOX, Word::tipToolBox},
};

void showStates(HMENU menu, HWND toolBar, const std::vector<CommandState>& states)
{
    for (const CommandState& state : states) {
        const auto item = static_cast<UINT>(state.command);
        EnableMenuItem(menu, item, state.enabled ? MF_ENABLED : MF_GRAYED);
        CheckMenuItem(menu, item, state.checked ? MF_CHECKED : MF_UNCHECKED);
        setButtonState(toolBar, state.command, state.enabled, state.checked);
    }
}

} // namespace

HWND createMainToolBar(HWND mainWindow)
{
    return createToolBar(mainWindow, entries, images, 0);
}

bool onMainToolBarNotify(const Editor& editor, LPARAM notification)
{
    return answerToolTip(editor.mainWindow, notification, tips);
}

void refreshMenuState(Editor& editor)
{
    refreshFurtherStatus(editor);
    const HWND toolBox = editor.toolBox.window;
    const Document& document = editor.document;
    const MenuFacts facts{.undoAvailable = !document.undo.isEmpty(),
                          .canStepBack = canStep(document, Direction::back),
                          .canStepForward = canStep(document, Direction::forward),
                          .isImported = !document.importedFrom.empty(),
                          .hasImportReport = !editor.importReport.empty(),
                          .anyPicked = isAnyPicked(document.model),
                          .zoom = editor.zoom,
                          .anyHidden = editor.view.hidden.any(),
                          .toolBoxShown = toolBox && IsWindowVisible(toolBox) != FALSE,
                          .attributesShown = editor.attributeWindow != nullptr,
                          .hierarchyShown = editor.hierarchyWindow != nullptr,
                          .texturesShown = editor.textureWindow.window != nullptr,
                          .budgetShown = editor.budget.window != nullptr,
                          .drawOrderShown = editor.drawOrder.window != nullptr,
                          .sliceShown = editor.slice.shown,
                          .mixedShown = editor.attributeEditing.showsMixed,
                          .resendsOnSave = editor.resendsOnSave,
                          .watchesFiles = editor.watching.files,
                          .opensTextures = editor.listWithModel == ListWithModel::yes,
                          .menuTool = editor.toolBox.menuTool,
                          .cameraStored = editor.view.cameraStored};
    const HMENU menu = GetMenu(editor.mainWindow);
    showStates(menu, editor.toolBar, menuState(facts));
    // A submenu has no number: it goes with its neighbour.
    enableSubmenuWith(menu, IDM_ROTATE_CLOCKWISE, facts.anyPicked);
    if (editor.hierarchyWindow)
        CheckMenuItem(GetMenu(editor.hierarchyWindow), IDM_HIERARCHY_LINK,
                      editor.treeLinked ? MF_CHECKED : MF_UNCHECKED);
    if (const TextureWindow& textures = editor.textureWindow; textures.window)
        showStates(GetMenu(textures.window), textures.toolBar,
                   textureMenuState({.undoAvailable = facts.undoAvailable,
                                     .aboveStart = textures.topSlot > 0,
                                     .pasteAvailable = IsClipboardFormatAvailable(CF_DIB) != FALSE,
                                     .sliceShown = facts.sliceShown,
                                     .watchesPictures = editor.watching.pictures}));
}

} // namespace facetor
