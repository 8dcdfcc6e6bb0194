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

void showTexture(const Editor& editor)
{
    SetDlgItemInt(currentPageWindow(editor), IDC_ATTRIBUTE_TEXTURE, editor.workingAttribute.texture,
                  FALSE);
}

/// Sets the controls of the current page from the working attribute.
void refreshPage(const Editor& editor)
{
    const HWND page = currentPageWindow(editor);
    for (const int control : pageButtons(currentPage(editor)))
        CheckDlgButton(page, control,
                       isButtonChecked(editor.workingAttribute, control) ? BST_CHECKED
                                                                         : BST_UNCHECKED);
    if (currentPage(editor) == AttributePage::material) showTexture(editor);
    RedrawWindow(page, nullptr, nullptr, RDW_INVALIDATE | RDW_ALLCHILDREN); // the colours
}

void onPageCommand(Editor& editor, HWND page, int control, int notification)
{
    WorkingAttribute& working = editor.workingAttribute;
    if (control == IDC_ATTRIBUTE_TEXTURE) {
        if (notification != EN_CHANGE) return;
        if (const auto number = parseTextureNumber(windowText(GetDlgItem(page, control))))
            working.texture = *number;
        return;
    }
    if (notification != BN_CLICKED) return;
    if (setButton(working, control, IsDlgButtonChecked(page, control) == BST_CHECKED)) return;
    Rgb555* colour = colourOfButton(working, control);
    if (!colour) return;
    // Over the main window: no other of the editor's windows takes input meanwhile.
    *colour = pickColour(editor.colourPicking, editor.alerts, editor.mainWindow, *colour);
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
        if (const Rgb555* colour = colourOfButton(editor.workingAttribute, control))
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
    const HWND field = GetDlgItem(currentPageWindow(editor), IDC_ATTRIBUTE_TEXTURE);
    if (parseTextureNumber(windowText(field))) return true;
    setAlertTexts(editor.alerts, "ID", {});
    warn(editor, Message::dataError);
    SendMessageA(field, EM_SETSEL, 0, -1);
    SetFocus(field);
    return false;
}

void onApply(Editor& editor)
{
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
    refreshPage(editor);
    moveToItsPlace(editor, window);
    editor.attributeWindow = window;
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
    case WM_COMMAND:
        if (LOWORD(wParam) == IDOK) onApply(editor);
        return TRUE;
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
    if (editor.attributeWindow) refreshPage(editor);
}

void setWorkingTexture(Editor& editor, std::uint16_t number)
{
    editor.workingAttribute.texture = number;
    if (editor.attributeWindow && currentPage(editor) == AttributePage::material)
        showTexture(editor);
}

} // namespace facetor
