#include "dialogs/slice_dialog.h"

#include "dialogs/texture_fields.h"
#include "resources/resource_ids.h"
#include "state/editor.h"
#include "ui/dialog.h"
#include "ui/number_field.h"

#include <windows.h>

namespace facetor {

namespace {

// The buttons of these two groups have the order of their enumerations.
static_assert(IDC_SLICE_WRAP - IDC_SLICE_TRANSPARENT == static_cast<int>(SliceOffset::wrapAround));
static_assert(IDC_SLICE_CHOSEN - IDC_SLICE_NEXT == static_cast<int>(SliceAppendix::chosen));

int checkedOf(HWND dialog, int first, int last)
{
    for (int button = first; button < last; ++button)
        if (IsDlgButtonChecked(dialog, button) == BST_CHECKED) return button - first;
    return last - first;
}

void enableSlot(HWND dialog)
{
    enableField(dialog, IDC_SLICE_ID, IsDlgButtonChecked(dialog, IDC_SLICE_CHOSEN) == BST_CHECKED);
}

void fillDialog(HWND dialog, const SliceSettings& settings)
{
    setNumber(dialog, IDC_SLICE_WIDTH, settings.width);
    setNumber(dialog, IDC_SLICE_HEIGHT, settings.height);
    setNumber(dialog, IDC_SLICE_ID, settings.chosenSlot);
    CheckRadioButton(dialog, IDC_SLICE_TRANSPARENT, IDC_SLICE_WRAP,
                     IDC_SLICE_TRANSPARENT + static_cast<int>(settings.offset));
    CheckRadioButton(dialog, IDC_SLICE_NEXT, IDC_SLICE_CHOSEN,
                     IDC_SLICE_NEXT + static_cast<int>(settings.appendix));
    CheckDlgButton(dialog, IDC_SLICE_SMOOTH,
                   settings.sampling == Sampling::smooth ? BST_CHECKED : BST_UNCHECKED);
    CheckDlgButton(dialog, IDC_SLICE_MATERIAL,
                   settings.materialColour ? BST_CHECKED : BST_UNCHECKED);
    enableSlot(dialog);
}

bool takeDialog(Editor& editor, HWND dialog)
{
    const auto width = readField(editor, dialog, IDC_SLICE_WIDTH, Word::fieldWidth);
    if (!width) return false;
    const auto height = readField(editor, dialog, IDC_SLICE_HEIGHT, Word::fieldHeight);
    if (!height) return false;
    SliceSettings settings;
    settings.width = *width;
    settings.height = *height;
    settings.offset =
        static_cast<SliceOffset>(checkedOf(dialog, IDC_SLICE_TRANSPARENT, IDC_SLICE_WRAP));
    settings.appendix =
        static_cast<SliceAppendix>(checkedOf(dialog, IDC_SLICE_NEXT, IDC_SLICE_CHOSEN));
    settings.chosenSlot = editor.slice.settings.chosenSlot;
    if (settings.appendix == SliceAppendix::chosen) {
        const auto slot = readField(editor, dialog, IDC_SLICE_ID, Word::fieldSlot);
        if (!slot) return false;
        settings.chosenSlot = *slot;
    }
    if (IsDlgButtonChecked(dialog, IDC_SLICE_SMOOTH) == BST_CHECKED)
        settings.sampling = Sampling::smooth;
    settings.materialColour = IsDlgButtonChecked(dialog, IDC_SLICE_MATERIAL) == BST_CHECKED;
    if (const auto fault = sliceFault(settings, editor.document.textures.current)) {
        showFault(editor, dialog, *fault);
        return false;
    }
    editor.slice.settings = settings;
    return true;
}

INT_PTR CALLBACK sliceProcedure(HWND dialog, UINT message, WPARAM wParam, LPARAM)
{
    Editor& editor = theEditor();
    switch (message) {
    case WM_INITDIALOG: fillDialog(dialog, editor.slice.settings); return TRUE;
    case WM_COMMAND:
        enableSlot(dialog);
        if (LOWORD(wParam) == IDCANCEL || (LOWORD(wParam) == IDOK && takeDialog(editor, dialog)))
            EndDialog(dialog, LOWORD(wParam));
        return TRUE;
    default: return FALSE;
    }
}

} // namespace

bool askSlice(Editor& editor)
{
    return runDialog(editor.mainWindow, "IDD_TEXSLICE", sliceProcedure) == IDOK;
}

} // namespace facetor
