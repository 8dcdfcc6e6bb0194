#include "commands/edit_commands.h"

#include "commands/watch_commands.h"
#include "state/editor.h"
#include "view/select_more.h"
#include "windows/editing.h"
#include "windows/hierarchy_window.h"
#include "windows/model_view_window.h"
#include "windows/texture_window.h"
#include "windows/title.h"

#include <string>

namespace facetor {

void turnPickedCorners(Editor& editor, CornerTurn turn)
{
    editModel(editor, Word::stepRotateVertices, ModelEdit::rotateVertices,
              [&](Model& model) { rotateVertices(model, turn, pickedAfterByCtrl()); });
}

void invertPickedSurface(Editor& editor)
{
    const PickedAfter after = pickedAfterByCtrl();
    editModel(editor, Word::stepInvertSurface, ModelEdit::invertSurface,
              [&](Model& model) { invertSurface(model, after); });
}

void bakeGouraudTable(Editor& editor)
{
    editModel(editor, Word::stepGouraudTable, ModelEdit::gouraudTable, [&](Model& model) {
        // A frame listed now leaves the present camera and light in the engine.
        listFrame(editor.view, editor.engine, model, viewSize(editor));
        buildGouraudTable(model, editor.engine.stack, editor.engine.settings.light);
    });
}

void undo(Editor& editor)
{
    const Message message = undoLastEdit(editor.document).edit;
    redrawTextures(editor);
    if (message != Message::none)
        alert(editor.alerts, editor.mainWindow, message, AlertStyle::exclamation);
    dropHidden(editor.document.model, editor.view.hidden); // marks have come back as well
    requestRedraw(editor);
}

void step(Editor& editor, Direction direction)
{
    Document& document = editor.document;
    if (!canStep(document, direction)) return;
    const std::string textureFile = document.textureFile;
    const Word name = stepName(document, direction);
    const Revision revision = document.modelRevision;
    const std::uint32_t polygonCount = document.model.totalPolygonCount;
    const bool otherModel = takeStep(document, direction);
    followStep(editor);
    // What is hidden is known by its place in the pools, where other polygons may stand now.
    const bool isReadModel = (name == Word::stepImportAgain || name == Word::stepReread) &&
                             document.modelRevision != revision; // textures are read again, too
    if (isReadModel || document.model.totalPolygonCount != polygonCount) editor.view.hidden.reset();
    dropHidden(document.model, editor.view.hidden); // marks have come back as well
    if (otherModel) fitModel(editor.view, editor.engine, document.model, viewSize(editor));
    showTitle(editor);
    if (document.textureFile != textureFile) showTextureTitle(editor, {});
    refreshHierarchyTree(editor);
    redrawTextures(editor);
    requestRedraw(editor);
}

} // namespace facetor
