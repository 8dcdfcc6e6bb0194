#include "commands/transform_commands.h"

#include "commands/texture_commands.h"
#include "dialogs/transform_dialogs.h"
#include "state/editor.h"
#include "ui/handles.h"

namespace facetor {

namespace {

/// Refuses an empty current slot, asks, and runs the transform on what was asked for.
template <typename Transform>
void runTransform(Editor& editor, Word name, bool (*ask)(Editor&), const ExtentChoice& choice,
                  const Transform& transform)
{
    Document& document = editor.document;
    const TextureList& list = document.textures;
    const HWND owner = editor.mainWindow;
    if (list.isEmpty(list.current)) {
        alert(editor.alerts, owner, Message::texturesEmpty, AlertStyle::exclamation);
        return;
    }
    if (!ask(editor)) return;
    const EditOutcome outcome = change(document, name, [&] {
        const WaitCursor waiting;
        return transform(document, TransformTarget{list.current, choice.useExtent, choice.extent});
    });
    if (outcome.edit == Message::textureWidthNotMultipleOf8)
        alert(editor.alerts, owner, outcome.edit, AlertStyle::exclamation);
    else
        (void)finishTextureEdit(editor, outcome);
}

} // namespace

void flipByDialog(Editor& editor)
{
    const TransformSettings& settings = editor.transforms;
    runTransform(editor, Word::stepFlip, askFlip, settings.flipExtent,
                 [&](Document& d, const TransformTarget& target) {
                     return flipTextures(d.textures, d.undo, target, settings.flip);
                 });
}

void turnByDialog(Editor& editor)
{
    const TransformSettings& settings = editor.transforms;
    runTransform(editor, Word::stepRotate, askTurn, settings.turnExtent,
                 [&](Document& d, const TransformTarget& target) {
                     return turnTextures(d.textures, d.undo, target, settings.turn);
                 });
}

void scaleByDialog(Editor& editor)
{
    const TransformSettings& settings = editor.transforms;
    runTransform(editor, Word::stepScale, askSize, settings.scaleExtent,
                 [&](Document& d, const TransformTarget& target) {
                     const auto [width, height] = settings.newSize;
                     return scaleTextures(d.textures, d.undo, target,
                                          static_cast<std::uint16_t>(width),
                                          static_cast<std::uint16_t>(height), settings.sampling);
                 });
}

} // namespace facetor
