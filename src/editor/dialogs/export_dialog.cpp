#include "dialogs/export_dialog.h"

#include "dialogs/texture_fields.h"
#include "resources/resource_ids.h"
#include "state/editor.h"
#include "ui/dialog.h"
#include "ui/number_field.h"

#include <windows.h>

namespace facetor {

namespace {

/// In the order of ExportRange.
constexpr int rangeButtons[] = {IDC_EXPORT_ALL, IDC_EXPORT_CURRENT, IDC_EXPORT_EXTENT};

constexpr ExtentControls extentControls{IDC_EXPORT_CURRENT, IDC_EXPORT_EXTENT, IDC_EXPORT_FROM,
                                        IDC_EXPORT_TO};

struct ExportDialog {
    Editor& editor;
    ExportChoice choice;
};

ExportRange shownRange(HWND dialog)
{
    int range = 0;
    while (IsDlgButtonChecked(dialog, rangeButtons[range]) != BST_CHECKED &&
           rangeButtons[range] != IDC_EXPORT_EXTENT)
        ++range;
    return static_cast<ExportRange>(range);
}

void fillDialog(HWND dialog, const ExportChoice& choice)
{
    CheckDlgButton(dialog, rangeButtons[static_cast<int>(choice.range)], BST_CHECKED);
    setNumber(dialog, IDC_EXPORT_FROM, choice.extent.first);
    setNumber(dialog, IDC_EXPORT_TO, choice.extent.last);
    enableExtent(dialog, extentControls);
    SetFocus(GetDlgItem(dialog, rangeButtons[static_cast<int>(choice.range)]));
}

/// Keeps what the dialog shows; false, after an alert, when its numbers are refused.
bool takeDialog(HWND dialog, ExportDialog& state)
{
    const auto extent = readExtent(state.editor, dialog, IDC_EXPORT_FROM, IDC_EXPORT_TO);
    if (!extent) return false;
    state.choice = {shownRange(dialog), *extent};
    return true;
}

INT_PTR CALLBACK exportProcedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_INITDIALOG) {
        keepDialogState(dialog, lParam);
        fillDialog(dialog, reinterpret_cast<const ExportDialog*>(lParam)->choice);
        return FALSE; // it has set the focus
    }
    if (message != WM_COMMAND) return FALSE;
    auto& state = dialogState<ExportDialog>(dialog);
    const int control = LOWORD(wParam);
    if (control == IDCANCEL || (control == IDOK && takeDialog(dialog, state)))
        EndDialog(dialog, control);
    else if (control != IDOK && HIWORD(wParam) == BN_CLICKED)
        enableExtent(dialog, extentControls);
    return TRUE;
}

} // namespace

std::optional<ExportChoice> askExportChoice(Editor& editor)
{
    ExportDialog state{editor, editor.exportChoice};
    if (runDialog(editor.mainWindow, "IDD_TEXEXPORT", exportProcedure,
                  reinterpret_cast<LPARAM>(&state)) != IDOK)
        return std::nullopt;
    return state.choice;
}

} // namespace facetor
