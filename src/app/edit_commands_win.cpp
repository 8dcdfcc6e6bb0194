#include "app/edit_commands_win.h"

#include "app/editor_win.h"
#include "app/model_view_window.h"
#include "texture/texture_edits.h"
#include "ui/window_data_win.h"

namespace facetor {

void rememberForUndo(Editor& editor, ModelEdit edit)
{
    const Message message = rememberModel(editor.undo, editor.document.model, edit);
    if (message == Message::none) return;
    alert(editor.alerts, editor.mainWindow, message, AlertStyle::exclamation);
    undoClear(editor.undo);
}

PickedAfter pickedAfterByCtrl()
{
    return isKeyDown(VK_CONTROL) ? PickedAfter::clear : PickedAfter::keep;
}

void turnPickedCorners(Editor& editor, CornerTurn turn)
{
    rememberForUndo(editor, ModelEdit::rotateVertices);
    rotateVertices(editor.document.model, turn, pickedAfterByCtrl());
    requestRedraw(editor);
}

void invertPickedSurface(Editor& editor)
{
    const PickedAfter after = pickedAfterByCtrl();
    rememberForUndo(editor, ModelEdit::invertSurface);
    invertSurface(editor.document.model, after);
    requestRedraw(editor);
}

void bakeGouraudTable(Editor& editor)
{
    rememberForUndo(editor, ModelEdit::gouraudTable);
    // A frame listed now leaves the present camera and light in the engine.
    listFrame(editor.view, editor.engine, editor.document.model, clientSize(editor.mainWindow));
    buildGouraudTable(editor.document.model, editor.engine.stack, editor.engine.settings.light);
    requestRedraw(editor);
}

void undoLastEdit(Editor& editor)
{
    Document& document = editor.document;
    Message message;
    if (isTextureEdit(editor.undo)) {
        message = undoTextureEdit(document.textures, editor.undo, document.model);
        document.texturesChanged = true;
        redrawTextures(editor);
    } else {
        message = undoModelEdit(editor.undo, document.model);
    }
    if (message != Message::none)
        alert(editor.alerts, editor.mainWindow, message, AlertStyle::exclamation);
    requestRedraw(editor);
}

} // namespace facetor
