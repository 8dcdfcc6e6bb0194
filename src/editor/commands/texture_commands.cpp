#include "commands/texture_commands.h"

#include "commands/texture_clipboard.h"
#include "commands/texture_file_commands.h"
#include "document/undo_kinds.h"
#include "session/texture_text.h"
#include "state/editor.h"
#include "ui/window_data.h"
#include "windows/model_view_window.h"
#include "windows/texture_window.h"

#include <string>

namespace facetor {

CommandOutcome deleteCurrentTexture(Editor& editor, Word name)
{
    Document& document = editor.document;
    return finishTextureEdit(editor, change(document, name, [&] {
                                 TextureList& list = document.textures;
                                 return deleteTexture(list, document.undo, list.current);
                             }));
}

CommandOutcome cutTexture(Editor& editor)
{
    // What could not be copied is not taken away.
    if (copyTexture(editor) != CommandOutcome::done) return CommandOutcome::abandoned;
    return deleteCurrentTexture(editor, Word::stepCut);
}

CommandOutcome moveSlots(Editor& editor, SlotMove move)
{
    const PolygonNumbers numbers =
        isKeyDown(VK_SHIFT) ? PolygonNumbers::follow : PolygonNumbers::keep;
    Document& document = editor.document;
    const bool inserts = move == SlotMove::insert;
    const auto edit = inserts ? insertSlot : removeSlot;
    const EditOutcome outcome =
        change(document, inserts ? Word::stepInsert : Word::stepBackspace, [&] {
            TextureList& list = document.textures;
            return edit(list, document.undo, document.model, list.current, numbers);
        });
    if (numbers == PolygonNumbers::follow && outcome.edit == Message::none)
        markModelChanged(document); // also where no polygon had such a number
    return finishTextureEdit(editor, outcome);
}

CommandOutcome deleteAllTextures(Editor& editor)
{
    const AlertButton answer =
        alert(editor.alerts, editor.mainWindow, Message::cannotUndoAfter, AlertStyle::question);
    if (answer == AlertButton::cancel) return CommandOutcome::abandoned;
    // What was to be saved and was not is kept.
    if (answer == AlertButton::yes && saveTexturesAs(editor) != CommandOutcome::done)
        return CommandOutcome::abandoned;
    Document& document = editor.document;
    return finishTextureEdit(editor, change(document, Word::stepDeleteAll, [&] {
                                 document.textures.clearAll();
                                 if (isTextureEdit(document.undo)) undoClear(document.undo);
                                 return EditOutcome{};
                             }));
}

void showTextureInformation(Editor& editor)
{
    const TextureList& list = editor.document.textures;
    const HWND owner = editor.mainWindow;
    const std::string text = textureInformation(list.current, list.slot(list.current),
                                                loadCatalogueText(owner, Word::width),
                                                loadCatalogueText(owner, Word::height));
    MessageBoxA(owner, text.c_str(), loadCatalogueText(owner, Word::textureInformation).c_str(),
                MB_OK);
}

CommandOutcome finishTextureEdit(Editor& editor, const EditOutcome& outcome)
{
    const auto warn = [&](Message message) {
        if (message != Message::none)
            alert(editor.alerts, editor.mainWindow, message, AlertStyle::exclamation);
    };
    warn(outcome.undo);
    if (outcome.edit == Message::textureWidthNotMultipleOf8) {
        setAlertTexts(editor.alerts, loadCatalogueText(editor.mainWindow, outcome.edit), {});
        warn(Message::dataError);
    } else {
        warn(outcome.edit);
    }
    redrawTextures(editor);
    requestRedraw(editor);
    return outcome.edit == Message::none ? CommandOutcome::done : CommandOutcome::abandoned;
}

} // namespace facetor
