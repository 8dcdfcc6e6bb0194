#include "dialogs/recovery_dialog.h"

#include "resources/resource_ids.h"
#include "state/editor.h"
#include "ui/dialog.h"
#include "ui/handles.h"
#include "ui/picture_list.h"
#include "ui/window_data.h"

#include <windows.h>

#include <commctrl.h>

#include <string>

namespace facetor {

namespace {

struct RecoveryDialog {
    Editor& editor;
    Engine engine; ///< of the pictures
    std::optional<std::size_t> chosen;
};

std::vector<Recoverable>& recoverableOf(RecoveryDialog& state)
{
    return state.editor.keeper.recoverable;
}

std::string nameOf(HWND dialog, const RecoveryState& state)
{
    const std::string& path = !state.modelFile.empty()      ? state.modelFile
                              : !state.importedFrom.empty() ? state.importedFrom
                                                            : state.textureFile;
    return path.empty() ? loadCatalogueText(dialog, Word::untitled)
                        : path.substr(path.find_last_of("\\/") + 1);
}

Word contentOf(const Recoverable& recoverable)
{
    const RecoveryState& state = recoverable.state;
    if (recoverable.damaged || recoverable.texturesDamaged) return Word::contentDamaged;
    if (state.modelChanged && state.texturesChanged) return Word::contentBoth;
    return state.texturesChanged ? Word::contentTextures : Word::contentModel;
}

SmallPicture pictureOf(RecoveryDialog& state, const Recoverable& recoverable, PictureSize size)
{
    const Rgb555 colour = state.editor.view.backgroundColour;
    SmallPicture picture{size.width, size.height, {}};
    picture.pixels.assign(std::size_t{size.width} * size.height, colour);
    RecoveryState kept;
    Model model;
    TextureList textures;
    std::string reason;
    if (recoverable.damaged || state.engine.entries.size() == 0 ||
        createModelStore(model) != Message::none || textures.create() != Message::none ||
        readRecoverable(recoverable, kept, model, textures, reason) != Message::none)
        return picture;
    if (kept.texturesChanged && !kept.modelChanged)
        return drawTexturesPicture(textures, colour, size.width, size.height);
    return drawModelPicture(state.engine, model, textures.slots(), colour, size.width, size.height);
}

int chosenRow(HWND dialog)
{
    return chosenPictureRow(GetDlgItem(dialog, IDC_RECOVERY_LIST));
}

void enableButtons(HWND dialog)
{
    for (const int button : {IDOK, IDC_RECOVERY_DELETE})
        EnableWindow(GetDlgItem(dialog, button), chosenRow(dialog) >= 0);
}

void showRecoverable(HWND dialog, RecoveryDialog& state)
{
    const WaitCursor waiting;
    const HWND list = GetDlgItem(dialog, IDC_RECOVERY_LIST);
    clearPictureList(list);
    for (const Recoverable& recoverable : recoverableOf(state))
        addPictureRow(list, pictureOf(state, recoverable, pictureSizeOf(list)),
                      {nameOf(dialog, recoverable.state),
                       localTimeText(recoverable.state.writtenAt),
                       loadCatalogueText(dialog, contentOf(recoverable))});
    if (!recoverableOf(state).empty()) choosePictureRow(list, 0);
    enableButtons(dialog);
}

void fillDialog(HWND dialog, RecoveryDialog& state)
{
    SetDlgItemTextA(dialog, IDC_RECOVERY_NOTE,
                    loadCatalogueText(dialog, recoverableOf(state).empty() ? Word::noRecovery
                                                                           : Word::recoverNote)
                        .c_str());
    CheckDlgButton(dialog, IDC_RECOVERY_KEEP,
                   state.editor.keeper.enabled ? BST_CHECKED : BST_UNCHECKED);
    preparePictureList(
        GetDlgItem(dialog, IDC_RECOVERY_LIST),
        {{Word::columnDocument, 150}, {Word::columnKept, 90}, {Word::columnContent, 70}});
    showRecoverable(dialog, state);
}

void deleteChosen(HWND dialog, RecoveryDialog& state, std::size_t row)
{
    Editor& editor = state.editor;
    std::vector<Recoverable>& all = recoverableOf(state);
    setAlertTexts(editor.alerts, nameOf(dialog, all[row].state), {});
    if (alert(editor.alerts, dialog, Message::deleteRecovery, AlertStyle::question) !=
        AlertButton::yes)
        return;
    all[row].set.remove();
    all.erase(all.begin() + static_cast<std::ptrdiff_t>(row));
    showRecoverable(dialog, state);
}

/// A damaged one cannot be recovered, which is said.
bool choose(HWND dialog, RecoveryDialog& state, std::size_t row)
{
    const Recoverable& recoverable = recoverableOf(state)[row];
    if (recoverable.damaged) {
        alert(state.editor.alerts, dialog, Message::recoveryDamaged, AlertStyle::exclamation,
              recoverable.set.statePath() + "\n" + recoverable.reason);
        return false;
    }
    state.chosen = row;
    return true;
}

void onCommand(HWND dialog, RecoveryDialog& state, int control)
{
    const int row = chosenRow(dialog);
    if (control == IDC_RECOVERY_KEEP)
        state.editor.keeper.enabled = IsDlgButtonChecked(dialog, control) == BST_CHECKED;
    if (control == IDC_RECOVERY_DELETE && row >= 0)
        deleteChosen(dialog, state, static_cast<std::size_t>(row));
    if (control == IDCANCEL ||
        (control == IDOK && row >= 0 && choose(dialog, state, static_cast<std::size_t>(row))))
        EndDialog(dialog, control);
}

INT_PTR CALLBACK recoveryProcedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_INITDIALOG:
        keepDialogState(dialog, lParam);
        fillDialog(dialog, dialogState<RecoveryDialog>(dialog));
        SetFocus(GetDlgItem(dialog, IDC_RECOVERY_LIST));
        return FALSE;
    case WM_COMMAND:
        onCommand(dialog, dialogState<RecoveryDialog>(dialog), LOWORD(wParam));
        return TRUE;
    case WM_NOTIFY: {
        const auto& notice = *reinterpret_cast<const NMHDR*>(lParam);
        if (notice.idFrom != IDC_RECOVERY_LIST) return FALSE;
        if (notice.code == LVN_ITEMCHANGED) enableButtons(dialog);
        if (notice.code == NM_DBLCLK) PostMessageA(dialog, WM_COMMAND, IDOK, 0);
        return TRUE;
    }
    default: return FALSE;
    }
}

} // namespace

std::optional<std::size_t> askRecovery(Editor& editor)
{
    INITCOMMONCONTROLSEX classes{sizeof classes, ICC_LISTVIEW_CLASSES};
    InitCommonControlsEx(&classes);
    RecoveryDialog state{editor, {}, {}};
    (void)startEngine(state.engine); // without memory the pictures are empty
    runDialog(editor.mainWindow, "IDD_RECOVERY", recoveryProcedure,
              reinterpret_cast<LPARAM>(&state));
    stopEngine(state.engine);
    return state.chosen;
}

} // namespace facetor
