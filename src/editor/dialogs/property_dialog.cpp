#include "dialogs/property_dialog.h"

#include "resources/resource_ids.h"
#include "state/editor.h"
#include "ui/colour_button.h"
#include "ui/dialog.h"
#include "ui/tab_pages.h"
#include "windows/model_view_window.h"

#include <windows.h>

#include <commctrl.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>

namespace facetor {

namespace {

constexpr int swatches[] = {IDC_COLOUR_BACKGROUND, IDC_COLOUR_PICKED, IDC_COLOUR_TRANSPARENT};

/// In the order of DragDrawMode.
constexpr int dragButtons[] = {IDC_DRAG_WIRE, IDC_DRAG_FLAT, IDC_DRAG_FULL};

/// The display colours, in the order of the swatches.
using DisplayColours = std::array<Rgb555, std::size(swatches)>;

/// What the dialog works on until OK.
struct PropertyDialog {
    Editor& editor;
    DisplayColours colours;
    TabPages tabs{};
};

PropertyDialog& stateOf(HWND window)
{
    return dialogState<PropertyDialog>(window);
}

DisplayColours displayColours(const Editor& editor)
{
    return {editor.view.backgroundColour, editor.engine.settings.pickedColour,
            editor.transparentColour};
}

ColourPicker pickerOf(HWND page)
{
    return IsDlgButtonChecked(page, IDC_COLOUR_CUSTOM) == BST_CHECKED ? ColourPicker::module
                                                                      : ColourPicker::system;
}

void takeColourPage(HWND page, PropertyDialog& state)
{
    Editor& editor = state.editor;
    editor.view.backgroundColour = state.colours[0];
    editor.engine.settings.pickedColour = state.colours[1];
    editor.transparentColour = state.colours[2];
    editor.colourPicking.picker = pickerOf(page);
}

void takeDragPage(HWND page, View& view)
{
    for (std::size_t mode = 0; mode < std::size(dragButtons); ++mode)
        if (IsDlgButtonChecked(page, dragButtons[mode]) == BST_CHECKED)
            view.dragDrawMode = static_cast<DragDrawMode>(mode);
}

/// Runs the picker that the page shows as chosen, which the editor's is only after OK.
void onSwatch(HWND page, PropertyDialog& state, Rgb555& colour)
{
    ColourPicking& picking = state.editor.colourPicking; // what it keeps is kept after Cancel, too
    const ColourPicker before = std::exchange(picking.picker, pickerOf(page));
    colour = pickColour(picking, state.editor.alerts, GetParent(page), colour);
    picking.picker = before;
    for (const int swatch : swatches) InvalidateRect(GetDlgItem(page, swatch), nullptr, FALSE);
}

/// The working colour that a control of the colour page shows; nullptr for another control.
Rgb555* colourOf(PropertyDialog& state, int control)
{
    const auto* found = std::ranges::find(swatches, control);
    if (found == std::end(swatches)) return nullptr;
    return &state.colours[static_cast<std::size_t>(found - swatches)];
}

INT_PTR CALLBACK colourPageProcedure(HWND page, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_INITDIALOG:
        keepDialogState(page, lParam);
        CheckDlgButton(page, IDC_COLOUR_CUSTOM,
                       stateOf(page).editor.colourPicking.picker == ColourPicker::module
                           ? BST_CHECKED
                           : BST_UNCHECKED);
        return FALSE; // the focus is the dialog's affair
    case WM_DRAWITEM: {
        const auto& item = *reinterpret_cast<const DRAWITEMSTRUCT*>(lParam);
        if (const Rgb555* colour = colourOf(stateOf(page), static_cast<int>(item.CtlID)))
            drawColourButton(item, *colour);
        return TRUE;
    }
    case WM_COMMAND:
        if (Rgb555* colour = colourOf(stateOf(page), LOWORD(wParam)))
            if (HIWORD(wParam) == BN_CLICKED) onSwatch(page, stateOf(page), *colour);
        return TRUE;
    default: return FALSE;
    }
}

INT_PTR CALLBACK dragPageProcedure(HWND page, UINT message, WPARAM, LPARAM lParam)
{
    if (message != WM_INITDIALOG) return FALSE;
    const auto& state = *reinterpret_cast<const PropertyDialog*>(lParam);
    const auto mode = static_cast<std::size_t>(state.editor.view.dragDrawMode);
    CheckRadioButton(page, IDC_DRAG_WIRE, IDC_DRAG_FULL, dragButtons[mode]);
    return FALSE;
}

constexpr TabPage pages[] = {
    {Word::tabColour, "IDD_PROP_COLOR", colourPageProcedure},
    {Word::tabDrag, "IDD_PROP_DRAG", dragPageProcedure},
};

void fillDialog(HWND dialog, PropertyDialog& state)
{
    state.tabs = createTabPages(dialog, IDC_PROPERTY_TABS, pages, reinterpret_cast<LPARAM>(&state));
    showTabPage(state.tabs, state.editor.propertyTab);
    SetFocus(state.tabs.tabs);
}

void takeDialog(PropertyDialog& state)
{
    if (state.tabs.pages.size() != std::size(pages)) return;
    takeColourPage(state.tabs.pages[0], state);
    takeDragPage(state.tabs.pages[1], state.editor.view);
    requestRedraw(state.editor);
}

INT_PTR CALLBACK propertyProcedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_INITDIALOG:
        keepDialogState(dialog, lParam);
        fillDialog(dialog, stateOf(dialog));
        return FALSE; // it has set the focus
    case WM_NOTIFY: {
        PropertyDialog& state = stateOf(dialog);
        if (!onTabNotify(state.tabs, *reinterpret_cast<const NMHDR*>(lParam))) return FALSE;
        state.editor.propertyTab = state.tabs.current;
        return TRUE;
    }
    case WM_COMMAND:
        if (LOWORD(wParam) == IDOK) takeDialog(stateOf(dialog));
        if (LOWORD(wParam) == IDOK || LOWORD(wParam) == IDCANCEL) EndDialog(dialog, LOWORD(wParam));
        return TRUE;
    default: return FALSE;
    }
}

} // namespace

void showPropertyDialog(Editor& editor)
{
    const INITCOMMONCONTROLSEX classes{sizeof classes, ICC_TAB_CLASSES};
    InitCommonControlsEx(&classes);
    PropertyDialog state{editor, displayColours(editor)};
    runDialog(editor.mainWindow, "IDD_PROPERTY", propertyProcedure,
              reinterpret_cast<LPARAM>(&state));
}

} // namespace facetor
