#include "commands/slice_command.h"

#include "commands/texture_file_commands.h"
#include "dialogs/slice_dialog.h"
#include "slice/slice.h"
#include "state/editor.h"
#include "ui/handles.h"
#include "view/selection.h"
#include "windows/model_view_window.h"
#include "windows/slice_view.h"
#include "windows/texture_window.h"

namespace facetor {

namespace {

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

CommandOutcome sliceCurrentTexture(Editor& editor)
{
    Model& model = editor.document.model;
    TextureList& list = editor.document.textures;
    const HWND owner = editor.mainWindow;
    const auto refuse = [&](Message message) {
        alert(editor.alerts, owner, message, AlertStyle::exclamation);
        return CommandOutcome::abandoned;
    };
    if (!isAnyPicked(model)) return refuse(Message::noSelectedPolygons);
    if (list.usedCount() == 0) return refuse(Message::texturesEmpty);
    if (!confirmSlicing(editor)) return CommandOutcome::abandoned;
    if (!askSlice(editor)) return CommandOutcome::abandoned;
    const Message message =
        change(editor.document, Word::stepSlice, [&] {
            const WaitCursor waiting;
            // A frame listed now leaves the present camera in the engine.
            listFrame(editor.view, editor.engine, model, viewSize(editor));
            return EditOutcome{Message::none,
                               sliceTextures(list, model, editor.engine.stack,
                                             editor.engine.settings, editor.slice.settings,
                                             slicePlace(editor), editor.transparentColour)};
        }).edit;
    if (message != Message::none) return refuse(message);
    markModelChanged(editor.document); // its polygons have other textures now
    redrawTextures(editor);
    requestRedraw(editor);
    return CommandOutcome::done;
}

} // namespace facetor
