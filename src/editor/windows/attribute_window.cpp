#include "windows/attribute_window.h"

#include "resources/resource_ids.h"
#include "session/window_place.h"
#include "state/editor.h"
#include "ui/colour_button.h"
#include "ui/colour_picker.h"
#include "ui/tab_pages.h"
#include "ui/window_data.h"
#include "view/selection.h"
#include "windows/attribute_controls.h"
#include "windows/editing.h"
#include "windows/main_tool_bar.h"
#include "windows/model_view_window.h"

#include <windows.h>

#include <algorithm>

namespace facetor {

namespace {

/// Characters that the field of the texture number takes from the keyboard.
constexpr WPARAM longestNumber = 8;

AttributePage currentPage(const Editor& editor)
{
    return static_cast<AttributePage>(editor.attributePages.current);
}

/// The page's dialog. Needs an open window.
HWND currentPageWindow(const Editor& editor)
{
    return editor.attributePages.pages[static_cast<std::size_t>(editor.attributePages.current)];
}

bool isMixed(const Editor& editor, int control)
{
    return (editor.attributeEditing.mixed & fieldOf(control)) != 0;
}

void showTexture(Editor& editor)
{
    const HWND page = currentPageWindow(editor);
    editor.attributeEditing.isRefreshing = true;
    if (isMixed(editor, IDC_ATTRIBUTE_TEXTURE))
        SetDlgItemTextA(page, IDC_ATTRIBUTE_TEXTURE, "");
    else
        SetDlgItemInt(page, IDC_ATTRIBUTE_TEXTURE, editor.workingAttribute.texture, FALSE);
    editor.attributeEditing.isRefreshing = false;
}

/// Sets a check box or radio button. A mixed box has a third state, to which no click brings it
/// back; of mixed radio buttons none is checked.
void showButton(const Editor& editor, HWND page, int control)
{
    const bool mixed = isMixed(editor, control);
    if (isCheckBox(control)) {
        const HWND box = GetDlgItem(page, control);
        const LONG_PTR style = GetWindowLongPtrA(box, GWL_STYLE) & ~LONG_PTR{BS_TYPEMASK};
        SetWindowLongPtrA(box, GWL_STYLE, style | (mixed ? BS_3STATE : BS_AUTOCHECKBOX));
        if (mixed) return (void)CheckDlgButton(page, control, BST_INDETERMINATE);
    }
    const bool checked = !mixed && isButtonChecked(editor.workingAttribute, control);
    CheckDlgButton(page, control, checked ? BST_CHECKED : BST_UNCHECKED);
    if (!mixed) return;
    // Of a group without a checked one the first is where the keyboard comes in.
    const HWND button = GetDlgItem(page, control);
    const LONG_PTR style = GetWindowLongPtrA(button, GWL_STYLE);
    if (style & WS_GROUP) SetWindowLongPtrA(button, GWL_STYLE, style | WS_TABSTOP);
}

/// Greys what has nothing to act on.
void refreshOwnButtons(const Editor& editor)
{
    if (!editor.attributeWindow) return;
    const AttributeEditing& editing = editor.attributeEditing;
    const HWND apply = GetDlgItem(editor.attributeWindow, IDC_ATTRIBUTE_APPLY_TOUCHED);
    // The keyboard must not stay with what takes no keys.
    if (editing.touched == 0 && GetFocus() == apply)
        SendMessageA(editor.attributeWindow, WM_NEXTDLGCTL, 0, FALSE);
    EnableWindow(apply, editing.touched != 0);
    EnableWindow(GetDlgItem(editor.attributeWindow, IDC_ATTRIBUTE_PUT), editing.copied.has_value());
}

/// Sets the controls of the current page from the working attribute.
void refreshPage(Editor& editor)
{
    const HWND page = currentPageWindow(editor);
    for (const int control : pageButtons(currentPage(editor))) showButton(editor, page, control);
    if (currentPage(editor) == AttributePage::material) showTexture(editor);
    refreshOwnButtons(editor);
    RedrawWindow(page, nullptr, nullptr, RDW_INVALIDATE | RDW_ALLCHILDREN); // the colours
}

/// The user has set a field.
void touch(Editor& editor, int control)
{
    AttributeEditing& editing = editor.attributeEditing;
    editing.touched |= fieldOf(control);
    editing.mixed &= ~fieldOf(control);
    refreshOwnButtons(editor);
}

void onPageCommand(Editor& editor, HWND page, int control, int notification)
{
    WorkingAttribute& working = editor.workingAttribute;
    if (control == IDC_ATTRIBUTE_TEXTURE) {
        if (notification != EN_CHANGE) return;
        if (editor.attributeEditing.isRefreshing) return;
        if (const auto number = parseTextureNumber(windowText(GetDlgItem(page, control)))) {
            working.texture = *number;
            touch(editor, control);
        }
        return;
    }
    if (notification != BN_CLICKED) return;
    Rgb555* const colour = colourOfButton(working, control);
    const bool isChecked = IsDlgButtonChecked(page, control) == BST_CHECKED;
    // A radio button says the same when it only gets the focus.
    if (!colour && !isCheckBox(control) && !isChecked) return;
    // A click on a mixed box, which leaves its state alone, checks it.
    const bool checked = isMixed(editor, control) || isChecked;
    if (setButton(working, control, checked)) {
        touch(editor, control);
        return showButton(editor, page, control);
    }
    if (!colour) return;
    // Over the main window: no other of the editor's windows takes input meanwhile.
    const Rgb555 chosen =
        pickColour(editor.colourPicking, editor.alerts, editor.mainWindow, *colour);
    if (chosen != *colour) touch(editor, control); // Cancel gives the old one
    *colour = chosen;
    InvalidateRect(GetDlgItem(page, control), nullptr, FALSE);
    SetFocus(GetDlgItem(page, control));
}

INT_PTR CALLBACK pageProcedure(HWND page, UINT message, WPARAM wParam, LPARAM lParam)
{
    Editor& editor = theEditor();
    switch (message) {
    case WM_INITDIALOG:
        SendDlgItemMessageA(page, IDC_ATTRIBUTE_TEXTURE, EM_SETLIMITTEXT, longestNumber, 0);
        return FALSE; // the keyboard stays where it is
    case WM_DRAWITEM: {
        const auto& item = *reinterpret_cast<const DRAWITEMSTRUCT*>(lParam);
        const auto control = static_cast<int>(item.CtlID);
        const Rgb555* colour = colourOfButton(editor.workingAttribute, control);
        if (colour && isMixed(editor, control))
            drawMixedColourButton(item);
        else if (colour)
            drawColourButton(item, *colour);
        return TRUE;
    }
    case WM_COMMAND: onPageCommand(editor, page, LOWORD(wParam), HIWORD(wParam)); return TRUE;
    default: return FALSE;
    }
}

constexpr TabPage pages[] = {
    {Word::tabMaterial, "IDD_ATTR_MATERIAL", pageProcedure},
    {Word::tabMode, "IDD_ATTR_MODE", pageProcedure},
    {Word::tabZSort, "IDD_ATTR_ZSORT", pageProcedure},
    {Word::tabGouraud, "IDD_ATTR_GOURAUD", pageProcedure},
    {Word::tabOption, "IDD_ATTR_OPTION", pageProcedure},
};
static_assert(std::size(pages) == attributePageCount);

/// The picked polygon whose values stand for those that are not mixed: the one that was picked
/// last, or, when it no longer is, the first one.
std::optional<std::uint32_t> shownPolygon(const Editor& editor)
{
    const Model& model = editor.document.model;
    const std::optional<std::uint32_t> last = editor.attributeEditing.lastPicked;
    const bool isLast =
        last && *last < model.totalPolygonCount && isPicked(model.attributes[*last]);
    return isLast ? last : firstPicked(model);
}

/// Shows a message; then the keyboard is back where it was.
void warn(Editor& editor, Message message)
{
    const HWND focus = GetFocus();
    alert(editor.alerts, editor.mainWindow, message, AlertStyle::exclamation);
    SetFocus(focus);
}

/// False, with a message shown, when the Material page holds something else than a texture number.
bool checkTexture(Editor& editor)
{
    if (currentPage(editor) != AttributePage::material) return true;
    if (isMixed(editor, IDC_ATTRIBUTE_TEXTURE)) return true; // left open, not wrong
    const HWND field = GetDlgItem(currentPageWindow(editor), IDC_ATTRIBUTE_TEXTURE);
    if (parseTextureNumber(windowText(field))) return true;
    setAlertTexts(editor.alerts, "ID", {});
    warn(editor, Message::dataError);
    SendMessageA(field, EM_SETSEL, 0, -1);
    SetFocus(field);
    return false;
}

/// Gives the picked polygons some fields, of whatever page. False, with a message shown, when there
/// are none.
bool give(Editor& editor, const WorkingAttribute& attribute, AttributeFields fields)
{
    if (!isAnyPicked(editor.document.model))
        return warn(editor, Message::noSelectedPolygons), false;
    // Its undo remembers Gouraud colours, too.
    editModel(editor, Word::stepAttributes, ModelEdit::gouraudTable,
              [&](Model& edited) { applyFields(edited, attribute, fields, pickedAfterByCtrl()); });
    markModelChanged(editor.document); // also where nothing differs
    return true;
}

void onApplyTouched(Editor& editor)
{
    AttributeEditing& editing = editor.attributeEditing;
    if (editing.touched & fieldTexture && !checkTexture(editor)) return;
    if (editing.touched == 0) return (void)MessageBeep(MB_OK); // by Shift and Apply
    if (!give(editor, editor.workingAttribute, editing.touched)) return;
    editing.touched = 0; // what is picked next gets what is set then
    refreshOwnButtons(editor);
    showMixedValues(editor);
}

/// Keeps the attribute of the polygon that was picked last, if it still is.
void onCopy(Editor& editor)
{
    const Model& model = editor.document.model;
    AttributeEditing& editing = editor.attributeEditing;
    const std::optional<std::uint32_t> polygon = shownPolygon(editor);
    if (!polygon) return warn(editor, Message::noSelectedPolygons);
    loadWorkingAttribute(editing.copied.emplace(), model, *polygon);
    refreshOwnButtons(editor);
}

void onApply(Editor& editor)
{
    if (isKeyDown(VK_SHIFT)) return onApplyTouched(editor);
    Model& model = editor.document.model;
    if (!isAnyPicked(model)) return warn(editor, Message::noSelectedPolygons);
    if (!checkTexture(editor)) return;
    editModel(editor, Word::stepAttributes, ModelEdit::attributes, [&](Model& edited) {
        applyAttributePage(edited, editor.workingAttribute, currentPage(editor),
                           pickedAfterByCtrl());
    });
    markModelChanged(editor.document); // also where nothing differs
}

void moveToItsPlace(Editor& editor, HWND window)
{
    const WindowRectangle place = toolWindowPlace(editor.settings.attributes, windowPlace(window),
                                                  windowPlace(editor.mainWindow), virtualScreen());
    SetWindowPos(window, nullptr, place.left, place.top, 0, 0,
                 SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

bool fillWindow(Editor& editor, HWND window)
{
    SetWindowTextA(window, loadCatalogueText(editor.mainWindow, Word::attributeTitle).c_str());
    const int current = editor.attributePages.current;
    editor.attributePages = createTabPages(window, IDC_ATTRIBUTE_TABS, pages, 0);
    if (editor.attributePages.pages.empty()) return false;
    showTabPage(editor.attributePages, current);
    moveToItsPlace(editor, window);
    editor.attributeWindow = window;
    refreshPage(editor);
    showMixedValues(editor);
    // The main loop asks it before the hierarchy window, whichever was opened first.
    editor.modelessDialogs.insert(editor.modelessDialogs.begin(), window);
    return true;
}

void onDestroy(Editor& editor)
{
    if (!editor.attributeWindow) return; // it was not opened wholly
    editor.settings.attributes = windowPlace(editor.attributeWindow);
    std::erase(editor.modelessDialogs, editor.attributeWindow);
    editor.attributeWindow = nullptr;
    editor.attributePages.pages.clear();
    refreshMenuState(editor);
}

void onCommand(Editor& editor, int control)
{
    const std::optional<WorkingAttribute>& copied = editor.attributeEditing.copied;
    switch (control) {
    case IDOK: return onApply(editor);
    case IDC_ATTRIBUTE_APPLY_TOUCHED: return onApplyTouched(editor);
    case IDC_ATTRIBUTE_COPY: return onCopy(editor);
    case IDC_ATTRIBUTE_PUT:
        if (copied) give(editor, *copied, allAttributeFields);
        return;
    default: return;
    }
}

INT_PTR CALLBACK attributeProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    Editor& editor = theEditor();
    switch (message) {
    case WM_INITDIALOG:
        if (!fillWindow(editor, window)) DestroyWindow(window);
        return TRUE;
    case WM_NOTIFY:
        if (onTabNotify(editor.attributePages, *reinterpret_cast<const NMHDR*>(lParam)))
            refreshPage(editor);
        return TRUE;
    case WM_COMMAND: onCommand(editor, LOWORD(wParam)); return TRUE;
    case WM_CLOSE: DestroyWindow(window); return TRUE;
    case WM_DESTROY: onDestroy(editor); return TRUE;
    default: return FALSE;
    }
}

} // namespace

void toggleAttributeWindow(Editor& editor)
{
    if (editor.attributeWindow) {
        DestroyWindow(editor.attributeWindow);
        return;
    }
    CreateDialogParamA(editor.instance, "IDD_ATTRBASE", editor.mainWindow, attributeProcedure, 0);
    if (editor.attributeWindow)
        ShowWindow(editor.attributeWindow, SW_SHOW);
    else
        alert(editor.alerts, editor.mainWindow, Message::resourceMissing, AlertStyle::exclamation);
}

void loadWorkingAttribute(Editor& editor, std::uint32_t polygonIndex)
{
    loadWorkingAttribute(editor.workingAttribute, editor.document.model, polygonIndex);
    editor.attributeEditing.touched = 0;
    editor.attributeEditing.lastPicked = polygonIndex;
    if (editor.attributeWindow) refreshPage(editor);
}

void setWorkingTexture(Editor& editor, std::uint16_t number)
{
    editor.workingAttribute.texture = number;
    touch(editor, IDC_ATTRIBUTE_TEXTURE); // also on another page, where mixed values would undo it
    if (editor.attributeWindow && currentPage(editor) == AttributePage::material)
        showTexture(editor);
}

void showMixedValues(Editor& editor)
{
    AttributeEditing& editing = editor.attributeEditing;
    if (!editor.attributeWindow || !editing.showsMixed) return;
    const Model& model = editor.document.model;
    WorkingAttribute shown = editor.workingAttribute;
    if (const auto polygon = shownPolygon(editor)) {
        WorkingAttribute values;
        loadWorkingAttribute(values, model, *polygon);
        copyFields(shown, values, allAttributeFields & ~editing.touched);
    }
    const AttributeFields mixed = mixedFields(model) & ~editing.touched;
    if (mixed == editing.mixed && shown == editor.workingAttribute) return;
    editing.mixed = mixed;
    editor.workingAttribute = shown;
    refreshPage(editor);
}

void toggleMixedValues(Editor& editor)
{
    AttributeEditing& editing = editor.attributeEditing;
    editing.showsMixed = !editing.showsMixed;
    editing.mixed = 0;
    if (editor.attributeWindow) refreshPage(editor);
    showMixedValues(editor);
    refreshMenuState(editor);
}

} // namespace facetor
