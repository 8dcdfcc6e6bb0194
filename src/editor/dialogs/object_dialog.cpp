#include "dialogs/object_dialog.h"

#include "resources/resource_ids.h"
#include "session/object_text.h"
#include "session/window_place.h"
#include "state/editor.h"
#include "ui/dialog.h"
#include "ui/window_data.h"
#include "windows/model_view_window.h"

#include <windows.h>

namespace facetor {

namespace {

static_assert(IDC_OBJECT_LAST - IDC_OBJECT_FIRST + 1 == objectFieldCount);

struct ObjectDialog {
    Editor& editor;
    Object& object;
    const Object before; ///< as it was when the dialog was opened
};

ObjectDialog& stateOf(HWND dialog)
{
    return dialogState<ObjectDialog>(dialog);
}

HWND fieldOf(HWND dialog, std::size_t field)
{
    return GetDlgItem(dialog, IDC_OBJECT_FIRST + static_cast<int>(field));
}

void fillFields(HWND dialog, const Object& object)
{
    const ObjectFields fields = formatObjectFields(object);
    for (std::size_t i = 0; i < fields.size(); ++i)
        SetWindowTextA(fieldOf(dialog, i), fields[i].c_str());
}

/// Over the tree rather than in the middle of the picture, which is to be looked at.
void placeDialog(HWND dialog, HWND hierarchyWindow)
{
    const WindowRectangle own = windowPlace(dialog), corner = windowPlace(hierarchyWindow);
    const WindowRectangle wanted{corner.left, corner.top, corner.left + own.right - own.left,
                                 corner.top + own.bottom - own.top};
    const WindowRectangle place = restoredPlace(wanted, virtualScreen(), own);
    SetWindowPos(dialog, nullptr, place.left, place.top, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
}

void fillDialog(HWND dialog, const ObjectDialog& state)
{
    for (std::size_t i = 0; i < objectFieldCount; ++i)
        SendMessageA(fieldOf(dialog, i), EM_LIMITTEXT, longestObjectField, 0);
    fillFields(dialog, state.object);
    placeDialog(dialog, state.editor.hierarchyWindow);
}

/// Takes the fields into the object. False, with a message shown and the object as it is, when one
/// cannot be taken.
bool apply(HWND dialog, ObjectDialog& state)
{
    ObjectFields fields;
    for (std::size_t i = 0; i < fields.size(); ++i) fields[i] = windowText(fieldOf(dialog, i));
    if (const auto faulty = parseObjectFields(state.object, fields)) {
        setAlertTexts(state.editor.alerts,
                      loadCatalogueText(state.editor.mainWindow, objectFieldGroup(*faulty)), {});
        alert(state.editor.alerts, dialog, Message::dataError, AlertStyle::exclamation);
        SendMessageA(dialog, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(fieldOf(dialog, *faulty)),
                     TRUE);
        return false;
    }
    requestRedraw(state.editor);
    return true;
}

/// Puts back what the dialog changes. Links and depth are left alone: a model that was dropped on
/// the editor meanwhile has its own.
void restore(ObjectDialog& state)
{
    state.object.translation = state.before.translation;
    state.object.rotation = state.before.rotation;
    state.object.scaling = state.before.scaling;
    requestRedraw(state.editor);
}

void onCommand(HWND dialog, ObjectDialog& state, int control)
{
    switch (control) {
    case IDC_OBJECT_PREVIEW: apply(dialog, state); return;
    case IDC_OBJECT_REVERT:
        restore(state);
        fillFields(dialog, state.object);
        return;
    case IDOK:
        if (apply(dialog, state)) EndDialog(dialog, IDOK);
        return;
    case IDCANCEL:
        restore(state);
        EndDialog(dialog, IDCANCEL);
        return;
    default: return;
    }
}

INT_PTR CALLBACK objectProcedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_INITDIALOG:
        keepDialogState(dialog, lParam);
        fillDialog(dialog, stateOf(dialog));
        return TRUE;
    case WM_COMMAND: onCommand(dialog, stateOf(dialog), LOWORD(wParam)); return TRUE;
    default: return FALSE;
    }
}

} // namespace

void showObjectDialog(Editor& editor, std::uint32_t index)
{
    Object& object = editor.document.model.objects[index];
    ObjectDialog state{editor, object, object};
    runDialog(editor.mainWindow, "IDD_HIERINFOEDIT", objectProcedure,
              reinterpret_cast<LPARAM>(&state));
    // What was tried and kept becomes one change.
    const Object kept = object;
    object.translation = state.before.translation;
    object.rotation = state.before.rotation;
    object.scaling = state.before.scaling;
    (void)change(editor.document, Word::stepEditObject, [&] {
        object = kept;
        return EditOutcome{};
    });
}

} // namespace facetor
