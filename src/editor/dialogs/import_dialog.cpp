#include "dialogs/import_dialog.h"

#include "base/text.h"
#include "dialogs/texture_fields.h"
#include "resources/resource_ids.h"
#include "state/editor.h"
#include "texture/texture_rules.h"
#include "ui/dialog.h"
#include "ui/number_field.h"
#include "ui/window_data.h"

#include <windows.h>

namespace facetor {

namespace {

struct ImportDialog {
    Editor& editor;
    const std::string& path;
    ImportChoice choice;
};

// The buttons have the order of what they choose.
static_assert(IDC_IMPORT_UP_Z - IDC_IMPORT_UP_Y == static_cast<int>(UpAxis::z));
static_assert(IDC_IMPORT_DITHER_DIFFUSE - IDC_IMPORT_DITHER_NONE ==
                  static_cast<int>(Dither::diffuse) &&
              IDC_IMPORT_DITHER_ORDERED - IDC_IMPORT_DITHER_NONE ==
                  static_cast<int>(Dither::ordered));

int checkedOf(HWND dialog, int first, int last)
{
    int button = first;
    while (button < last && IsDlgButtonChecked(dialog, button) != BST_CHECKED) ++button;
    return button - first;
}

void fillDialog(HWND dialog, const ImportDialog& state)
{
    const ImportOptions& options = state.choice.options;
    SetDlgItemTextA(dialog, IDC_IMPORT_FILE, state.path.c_str());
    SetDlgItemTextA(dialog, IDC_IMPORT_SCALE, formatShortest(options.scale).c_str());
    CheckRadioButton(dialog, IDC_IMPORT_UP_Y, IDC_IMPORT_UP_Z,
                     IDC_IMPORT_UP_Y + static_cast<int>(options.up));
    CheckDlgButton(dialog, IDC_IMPORT_KEEP_TRIANGLES,
                   options.triangles == Triangles::keep ? BST_CHECKED : BST_UNCHECKED);
    setNumber(dialog, IDC_IMPORT_WIDTH, static_cast<std::int32_t>(options.textures.largestWidth));
    setNumber(dialog, IDC_IMPORT_HEIGHT, static_cast<std::int32_t>(options.textures.largestHeight));
    CheckRadioButton(dialog, IDC_IMPORT_DITHER_NONE, IDC_IMPORT_DITHER_DIFFUSE,
                     IDC_IMPORT_DITHER_NONE + static_cast<int>(options.textures.dither));
}

/// Keeps what the dialog shows; false, after an alert, when its numbers are refused.
bool takeDialog(HWND dialog, ImportDialog& state)
{
    const auto scale =
        parseFloat(trimmed(std::string_view(windowText(GetDlgItem(dialog, IDC_IMPORT_SCALE)))));
    if (!scale || !(*scale > 0)) {
        showFault(state.editor, dialog, {Message::dataError, Word::fieldScale});
        focusField(dialog, IDC_IMPORT_SCALE);
        return false;
    }
    const auto width = readField(state.editor, dialog, IDC_IMPORT_WIDTH, Word::width);
    if (!width) return false;
    const auto height = readField(state.editor, dialog, IDC_IMPORT_HEIGHT, Word::height);
    if (!height) return false;
    if (const auto fault = textureSizeFault(*width, *height)) {
        showFault(state.editor, dialog, *fault);
        return false;
    }
    const bool keeps = IsDlgButtonChecked(dialog, IDC_IMPORT_KEEP_TRIANGLES) == BST_CHECKED;
    state.choice.options = {
        *scale,
        static_cast<UpAxis>(checkedOf(dialog, IDC_IMPORT_UP_Y, IDC_IMPORT_UP_Z)),
        keeps ? Triangles::keep : Triangles::rejoin,
        {static_cast<std::uint32_t>(*width), static_cast<std::uint32_t>(*height),
         static_cast<Dither>(
             checkedOf(dialog, IDC_IMPORT_DITHER_NONE, IDC_IMPORT_DITHER_DIFFUSE))}};
    state.choice.target = IsDlgButtonChecked(dialog, IDC_IMPORT_ONTO) == BST_CHECKED
                              ? ImportTarget::openModel
                              : ImportTarget::newModel;
    return true;
}

INT_PTR CALLBACK importProcedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_INITDIALOG) {
        keepDialogState(dialog, lParam);
        fillDialog(dialog, *reinterpret_cast<const ImportDialog*>(lParam));
        return TRUE;
    }
    if (message != WM_COMMAND) return FALSE;
    const int control = LOWORD(wParam);
    if (control == IDCANCEL ||
        (control == IDOK && takeDialog(dialog, dialogState<ImportDialog>(dialog))))
        EndDialog(dialog, control);
    return TRUE;
}

} // namespace

std::optional<ImportChoice> askImportChoice(Editor& editor, const std::string& path,
                                            const ImportOptions& options)
{
    ImportDialog state{editor, path, {options, ImportTarget::newModel}};
    if (runDialog(editor.mainWindow, "IDD_IMPORT", importProcedure,
                  reinterpret_cast<LPARAM>(&state)) != IDOK)
        return std::nullopt;
    return state.choice;
}

} // namespace facetor
