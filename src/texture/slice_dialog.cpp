#include "texture/slice_dialog.h"

#include "app/editor_win.h"
#include "app/model_view_window.h"
#include "app/slice_view_win.h"
#include "resources/resource_ids.h"
#include "texture/texture_fields_win.h"
#include "texture/texture_file_commands_win.h"
#include "texture/texture_window.h"
#include "ui/handles_win.h"
#include "ui/number_field_win.h"
#include "view/selection.h"

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
    const auto width = readField(editor, dialog, IDC_SLICE_WIDTH, "H");
    if (!width) return false;
    const auto height = readField(editor, dialog, IDC_SLICE_HEIGHT, "V");
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
        const auto slot = readField(editor, dialog, IDC_SLICE_ID, "ID");
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

/// Whether the user goes on although slicing cannot be undone, with the list saved if it was to be.
bool confirmSlicing(Editor& editor)
{
    switch (
        alert(editor.alerts, editor.mainWindow, Message::cannotUndoAfter, AlertStyle::question)) {
    case AlertButton::yes: return saveTexturesAs(editor) == CommandOutcome::done;
    case AlertButton::no: return true;
    default: return false;
    }
}

} // namespace

bool sliceCurrentTexture(Editor& editor)
{
    Model& model = editor.document.model;
    TextureList& list = editor.document.textures;
    const HWND owner = editor.mainWindow;
    const auto refuse = [&](Message message) {
        alert(editor.alerts, owner, message, AlertStyle::exclamation);
        return false;
    };
    if (!isAnyPicked(model)) return refuse(Message::noSelectedPolygons);
    if (list.usedCount() == 0) return refuse(Message::texturesEmpty);
    if (!confirmSlicing(editor)) return false;
    if (DialogBoxParamA(editor.instance, "IDD_TEXSLICE", owner, sliceProcedure, 0) != IDOK)
        return false;
    Message message;
    {
        const WaitCursor waiting;
        // A frame listed now leaves the present camera in the engine.
        listFrame(editor.view, editor.engine, model, clientSize(editor.mainWindow));
        message =
            sliceTextures(list, model, editor.engine.stack, editor.engine.settings,
                          editor.slice.settings, slicePlace(editor), editor.transparentColour);
    }
    if (message != Message::none) return refuse(message);
    editor.document.modelChanged = true; // its polygons have other textures now
    redrawTextures(editor);
    requestRedraw(editor);
    return true;
}

} // namespace facetor
