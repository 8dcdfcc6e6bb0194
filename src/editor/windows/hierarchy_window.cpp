#include "windows/hierarchy_window.h"

#include "base/text.h"
#include "model/object_tree.h"
#include "resources/resource_ids.h"
#include "session/object_text.h"
#include "session/window_place.h"
#include "state/editor.h"
#include "ui/dialog.h"
#include "ui/window_data.h"
#include "view/select_more.h"
#include "windows/main_tool_bar.h"
#include "windows/model_view_window.h"
#include "windows/title.h"

#include <windows.h>

#include <commctrl.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string>

namespace facetor {

namespace {

/// The smallest client area, in dialog units: both buttons and a few lines of the tree.
constexpr LONG leastWidth = 70, leastHeight = 60;

HWND treeOf(const Editor& editor)
{
    return GetDlgItem(editor.hierarchyWindow, IDC_HIERARCHY_TREE);
}

std::string labelOf(const Model& model, std::uint32_t index)
{
    return std::string(cutText(model.names[index], longestObjectLabel));
}

void buildTree(Editor& editor)
{
    const HWND tree = treeOf(editor);
    const Model& model = editor.document.model;
    editor.hierarchyItems.clear(); // first: the tree may end the editing of a label that goes
    SendMessageA(tree, WM_SETREDRAW, FALSE, 0);
    SendMessageA(tree, TVM_DELETEITEM, 0, reinterpret_cast<LPARAM>(TVI_ROOT));
    for (std::uint32_t i = 0; i < model.objectCount; ++i) {
        const std::uint32_t parent = parentOf(model, i);
        std::string label = labelOf(model, i);
        TVINSERTSTRUCTA insertion{};
        insertion.hParent = parent == noObject ? TVI_ROOT : editor.hierarchyItems[parent];
        insertion.hInsertAfter = TVI_LAST;
        insertion.item.mask = TVIF_TEXT | TVIF_STATE;
        insertion.item.pszText = label.data();
        insertion.item.stateMask = TVIS_EXPANDED | TVIS_BOLD;
        insertion.item.state =
            TVIS_EXPANDED | (model.objects[i].flags == objectShown ? TVIS_BOLD : 0u);
        editor.hierarchyItems.push_back(reinterpret_cast<HTREEITEM>(
            SendMessageA(tree, TVM_INSERTITEMA, 0, reinterpret_cast<LPARAM>(&insertion))));
    }
    SendMessageA(tree, WM_SETREDRAW, TRUE, 0);
    InvalidateRect(tree, nullptr, TRUE);
}

/// Takes an edited label; none when the user cancelled.
void onLabelEdited(Editor& editor, const TVITEMA& item)
{
    const auto found = std::ranges::find(editor.hierarchyItems, item.hItem);
    if (found == editor.hierarchyItems.end()) return;
    const auto index = static_cast<std::uint32_t>(found - editor.hierarchyItems.begin());
    // A name that is longer than its label shall not lose its end when nothing was typed.
    if (item.pszText && item.pszText != labelOf(editor.document.model, index))
        renameObject(editor, index, std::string(cutText(item.pszText, longestObjectLabel)));
    markModelChanged(editor.document); // also when the user cancelled
    refreshMenuState(editor);
}

/// Whether an object stands for all its descendants, as the tree shows it.
Branch branchOf(const Editor& editor, std::uint32_t object)
{
    const LRESULT state =
        SendMessageA(treeOf(editor), TVM_GETITEMSTATE,
                     reinterpret_cast<WPARAM>(editor.hierarchyItems[object]), TVIS_EXPANDED);
    return state & TVIS_EXPANDED ? Branch::expanded : Branch::collapsed;
}

/// The user, not the program, has chosen another item.
void onItemChosen(Editor& editor)
{
    if (editor.treeLinked)
        (void)editor.runCommand(editor, CommandWindow::hierarchy, IDM_HIERARCHY_PICK, 0);
}

/// Whether the tree is to do nothing more with the key.
bool onTreeKey(Editor& editor, HWND tree, WORD key)
{
    if (key == VK_F2)
        SendMessageA(tree, TVM_EDITLABELA, 0, SendMessageA(tree, TVM_GETNEXTITEM, TVGN_CARET, 0));
    return key == VK_SPACE &&
           editor.runCommand(editor, CommandWindow::hierarchy, IDM_HIERARCHY_PICK, 0);
}

/// The answer to a notification of the tree.
LRESULT onTreeNotify(Editor& editor, const NMHDR& header)
{
    const HWND tree = header.hwndFrom;
    switch (header.code) {
    case TVN_BEGINLABELEDITA:
        SendMessageA(reinterpret_cast<HWND>(SendMessageA(tree, TVM_GETEDITCONTROL, 0, 0)),
                     EM_LIMITTEXT, longestObjectLabel, 0);
        return 0;
    case TVN_ENDLABELEDITA:
        onLabelEdited(editor, reinterpret_cast<const NMTVDISPINFOA&>(header).item);
        return 0;
    case TVN_SELCHANGEDA:
        if (reinterpret_cast<const NMTREEVIEWA&>(header).action != TVC_UNKNOWN)
            onItemChosen(editor);
        return 0;
    case TVN_KEYDOWN:
        return onTreeKey(editor, tree, reinterpret_cast<const NMTVKEYDOWN&>(header).wVKey);
    default: return 0;
    }
}

/// Makes the window so wide that the tree shows every name, as far as the screen has room.
void widenToNames(const Editor& editor, HWND dialog)
{
    const HWND tree = treeOf(editor);
    LONG widest = 0;
    for (const HTREEITEM item : editor.hierarchyItems) {
        RECT text{};
        std::memcpy(&text, &item, sizeof item); // where the message expects it
        if (SendMessageA(tree, TVM_GETITEMRECT, TRUE, reinterpret_cast<LPARAM>(&text)))
            widest = std::max(widest, text.right);
    }
    RECT inner{};
    GetClientRect(tree, &inner);
    const LONG missing = widest + GetSystemMetrics(SM_CXVSCROLL) - inner.right;
    if (missing <= 0) return;
    WindowRectangle place = windowPlace(dialog);
    place.right += missing;
    place = restoredPlace(place, virtualScreen(), place);
    MoveWindow(dialog, place.left, place.top, place.right - place.left, place.bottom - place.top,
               FALSE);
    stretchToEnd(dialog, IDC_HIERARCHY_TREE);
}

void onInitialise(Editor& editor, HWND dialog)
{
    setWindowTitle(editor, dialog, Word::hierarchyTitle);
    const WindowRectangle remembered = editor.settings.hierarchy;
    const WindowRectangle place = restoredPlace(remembered, virtualScreen(), windowPlace(dialog));
    MoveWindow(dialog, place.left, place.top, place.right - place.left, place.bottom - place.top,
               FALSE);
    stretchToEnd(dialog, IDC_HIERARCHY_TREE);
    editor.hierarchyWindow = dialog; // from here on its place is remembered
    editor.modelessDialogs.push_back(dialog);
    buildTree(editor);
    if (remembered == WindowRectangle{}) widenToNames(editor, dialog);
    SetFocus(treeOf(editor));
}

void rememberPlace(Editor& editor, HWND dialog)
{
    if (editor.hierarchyWindow == dialog) editor.settings.hierarchy = windowPlace(dialog);
}

void onDestroy(Editor& editor, HWND dialog)
{
    std::erase(editor.modelessDialogs, dialog);
    editor.hierarchyItems.clear();
    editor.hierarchyWindow = nullptr;
}

void close(Editor& editor)
{
    rememberPlace(editor, editor.hierarchyWindow);
    DestroyWindow(editor.hierarchyWindow);
    refreshMenuState(editor);
}

void onCommand(Editor& editor, int command)
{
    switch (command) {
    case IDC_HIERARCHY_SHOW: command = IDM_HIERARCHY_SHOW; break;
    case IDC_HIERARCHY_HIDE: command = IDM_HIERARCHY_HIDE; break;
    // Enter and Esc, where the edit field of a label leaves them to the dialog. Without an edited
    // label they do nothing.
    case IDOK:
    case IDCANCEL:
        SendMessageA(treeOf(editor), TVM_ENDEDITLABELNOW, command == IDCANCEL, 0);
        return;
    default: break;
    }
    (void)editor.runCommand(editor, CommandWindow::hierarchy, command, 0);
}

INT_PTR CALLBACK hierarchyProcedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam)
{
    Editor& editor = theEditor();
    switch (message) {
    case WM_INITDIALOG: onInitialise(editor, dialog); return FALSE; // the tree has the focus
    case WM_SIZE: stretchToEnd(dialog, IDC_HIERARCHY_TREE); [[fallthrough]];
    case WM_MOVE: rememberPlace(editor, dialog); return TRUE;
    case WM_GETMINMAXINFO:
        limitClientSize(dialog, leastWidth, leastHeight, *reinterpret_cast<MINMAXINFO*>(lParam));
        return TRUE;
    case WM_COMMAND: onCommand(editor, LOWORD(wParam)); return TRUE;
    case WM_NOTIFY:
        if (reinterpret_cast<const NMHDR*>(lParam)->idFrom == IDC_HIERARCHY_TREE)
            SetWindowLongPtrA(dialog, DWLP_MSGRESULT,
                              onTreeNotify(editor, *reinterpret_cast<const NMHDR*>(lParam)));
        return TRUE;
    case WM_CLOSE: close(editor); return TRUE;
    case WM_DESTROY: onDestroy(editor, dialog); return TRUE;
    default: return FALSE;
    }
}

} // namespace

void toggleHierarchyWindow(Editor& editor)
{
    if (editor.hierarchyWindow) return close(editor);
    const INITCOMMONCONTROLSEX classes{sizeof classes, ICC_TREEVIEW_CLASSES};
    InitCommonControlsEx(&classes);
    const HWND dialog = CreateDialogParamA(editor.instance, "IDD_HIERARCHY2", editor.mainWindow,
                                           hierarchyProcedure, 0);
    if (!dialog) return;
    ShowWindow(dialog, SW_SHOW);
    refreshMenuState(editor);
}

void refreshHierarchyTree(Editor& editor)
{
    if (editor.hierarchyWindow) buildTree(editor);
}

bool isNaming(const Editor& editor)
{
    return editor.hierarchyWindow && SendMessageA(treeOf(editor), TVM_GETEDITCONTROL, 0, 0) != 0;
}

std::optional<std::uint32_t> selectedObject(const Editor& editor)
{
    const auto selected =
        reinterpret_cast<HTREEITEM>(SendMessageA(treeOf(editor), TVM_GETNEXTITEM, TVGN_CARET, 0));
    if (!selected) return std::nullopt;
    const auto found = std::ranges::find(editor.hierarchyItems, selected);
    return static_cast<std::uint32_t>(found - editor.hierarchyItems.begin());
}

void showSelectedObject(Editor& editor, Visibility visibility)
{
    const auto selected = selectedObject(editor);
    if (!selected) return;
    const HWND tree = treeOf(editor);
    const std::uint32_t end =
        setVisibility(editor.document.model, *selected, branchOf(editor, *selected), visibility);
    for (std::uint32_t i = *selected; i < end; ++i) {
        TVITEMA item{};
        item.mask = TVIF_STATE;
        item.hItem = editor.hierarchyItems[i];
        item.stateMask = TVIS_BOLD;
        item.state = visibility == Visibility::shown ? TVIS_BOLD : 0;
        SendMessageA(tree, TVM_SETITEMA, 0, reinterpret_cast<LPARAM>(&item));
    }
    requestRedraw(editor);
}

void pickSelectedObject(Editor& editor)
{
    const auto selected = selectedObject(editor);
    if (!selected) return;
    Model& model = editor.document.model;
    const std::uint32_t end = branchOf(editor, *selected) == Branch::collapsed
                                  ? subtreeEnd(model, *selected)
                                  : *selected + 1;
    const Mark mark = isKeyDown(VK_SHIFT) ? Mark::clear : Mark::set;
    if (mark == Mark::set && !isKeyDown(VK_CONTROL)) selectAll(model, Mark::clear);
    selectObjects(model, editor.view.hidden, *selected, end, mark);
    requestRedraw(editor);
}

void showObjectOf(Editor& editor, std::uint32_t polygon)
{
    if (!editor.hierarchyWindow || !editor.treeLinked) return;
    const std::uint32_t object = objectOf(editor.document.model, polygon);
    if (object < editor.hierarchyItems.size())
        SendMessageA(treeOf(editor), TVM_SELECTITEM, TVGN_CARET,
                     reinterpret_cast<LPARAM>(editor.hierarchyItems[object]));
}

void toggleTreeLink(Editor& editor)
{
    editor.treeLinked = !editor.treeLinked;
    refreshMenuState(editor);
}

void renameObject(Editor& editor, std::uint32_t index, std::string name)
{
    if (index >= editor.hierarchyItems.size()) return; // of a model that is no longer there
    (void)change(editor.document, Word::stepRename, [&] {
        editor.document.model.names[index] = std::move(name);
        return EditOutcome{};
    });
    std::string label = labelOf(editor.document.model, index);
    TVITEMA item{};
    item.mask = TVIF_TEXT;
    item.hItem = editor.hierarchyItems[index];
    item.pszText = label.data();
    SendMessageA(treeOf(editor), TVM_SETITEMA, 0, reinterpret_cast<LPARAM>(&item));
}

} // namespace facetor
