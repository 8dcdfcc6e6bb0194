#include "commands/keep_commands.h"

#include "commands/model_commands.h"
#include "dialogs/recovery_dialog.h"
#include "dialogs/versions_dialog.h"
#include "model/model_file.h"
#include "session/file_names.h"
#include "state/editor.h"
#include "texture/texture_file.h"
#include "ui/handles.h"
#include "ui/window_data.h"
#include "windows/hierarchy_window.h"
#include "windows/model_view_window.h"
#include "windows/texture_window.h"
#include "windows/title.h"

#include <optional>
#include <utility>

namespace facetor {

namespace {

CommandOutcome failVersion(Editor& editor, Message message, const std::string& reason)
{
    alert(editor.alerts, editor.mainWindow, message, AlertStyle::exclamation, reason);
    return CommandOutcome::abandoned;
}

CommandOutcome takeModel(Editor& editor, const Bytes& bytes)
{
    Model model;
    if (const Message message = createModelStore(model); message != Message::none)
        return failVersion(editor, message, {});
    Reason reason;
    if (readModel(model, bytes, &reason) != Message::none)
        return failVersion(editor, Message::versionDamaged, reason.text);
    Document& document = editor.document;
    const auto take = [&] {
        copyModel(document.model, model);
        leaveModelFile(document, {});
        return EditOutcome{};
    };
    (void)change(document, Word::stepEarlierVersion, take, ChangeKind::openModel);
    undoClear(document.undo);
    showTitle(editor);
    fitModel(editor.view, editor.engine, document.model, viewSize(editor));
    refreshHierarchyTree(editor);
    requestRedraw(editor);
    return CommandOutcome::unsaved;
}

CommandOutcome takeTextures(Editor& editor, const Bytes& bytes)
{
    TextureList list;
    if (const Message message = list.create(); message != Message::none)
        return failVersion(editor, message, {});
    Reason reason;
    if (readTextures(list, bytes, &reason) != Message::none)
        return failVersion(editor, Message::versionDamaged, reason.text);
    Document& document = editor.document;
    const auto take = [&] {
        replaceTextures(document.textures, list);
        leaveTextureFile(document);
        return EditOutcome{};
    };
    (void)change(document, Word::stepEarlierVersion, take, ChangeKind::openTextures);
    undoClear(document.undo);
    showTextureTitle(editor, {});
    redrawTextures(editor);
    requestRedraw(editor);
    return CommandOutcome::unsaved;
}

} // namespace

void keepBeforeRisk(Editor& editor)
{
    keepNow(editor.keeper, editor.document, editor.view, GetTickCount64());
}

void keepUnsaved(Editor& editor)
{
    Keeper& keeper = editor.keeper;
    const bool wanted = std::exchange(keeper.unsavedOnPurpose, false);
    if (!wanted || !(isModelChanged(editor.document) || areTexturesChanged(editor.document)))
        return;
    const WaitCursor waiting;
    keepForLater(keeper, editor.document, editor.view);
}

void noteBrokenOff(Editor& editor, ChangeKind kind, const std::string& path,
                   std::unique_ptr<DocumentCopy> before)
{
    Document& document = editor.document;
    notePartlyRead(document, kind, path);
    if (!before) return;
    const RecoveryState& was = before->state;
    const bool isStart = was.modelFile.empty() && was.importedFrom.empty() &&
                         was.textureFile.empty() && !was.modelChanged && !was.texturesChanged;
    if (!isStart) keepForLater(editor.keeper, std::move(before));
}

PartlyRead askPartlyRead(Editor& editor, const std::string& source, const std::string& target)
{
    setAlertTexts(editor.alerts, fileNameOf(source), fileNameOf(target));
    switch (alert(editor.alerts, editor.mainWindow, Message::savePartlyRead, AlertStyle::question,
                  source + "\n" + target)) {
    case AlertButton::yes: return PartlyRead::saveAs;
    case AlertButton::no: return PartlyRead::replace;
    default: return PartlyRead::giveUp;
    }
}

void notePartSaved(Editor& editor, KeptKind kind, const std::string& path)
{
    Document& document = editor.document;
    std::string& source =
        kind == KeptKind::model ? document.partlyReadModel : document.partlyReadTextures;
    if (source.empty()) return;
    const WaitCursor waiting;
    noteReplaced(editor.keeper, kind, fullPath(path));
    source.clear();
}

CommandOutcome recoverDocument(Editor& editor)
{
    waitForKept(editor.keeper);
    const auto chosen = askRecovery(editor);
    if (!chosen || !isRunning(editor)) return CommandOutcome::abandoned;
    keepBeforeRisk(editor);
    if (askSaveModel(editor, Word::openingNewFile) == Decision::stay ||
        askSaveTextures(editor, Word::openingNewFile) == Decision::stay || !isRunning(editor))
        return CommandOutcome::abandoned;
    std::string reason;
    Message message;
    {
        const WaitCursor waiting;
        const std::size_t count = editor.keeper.recoverable.size();
        keepUnsaved(editor); // which may put another one in front
        waitForKept(editor.keeper);
        const std::size_t index = *chosen + (editor.keeper.recoverable.size() - count);
        message = recover(editor.keeper, index, editor.document, editor.view, reason);
    }
    if (message != Message::none)
        alert(editor.alerts, editor.mainWindow, message, AlertStyle::exclamation, reason);
    if (message != Message::none && message != Message::recoveryPartly)
        return CommandOutcome::abandoned;
    showTitle(editor);
    showTextureTitle(editor, editor.document.textureFile);
    refreshHierarchyTree(editor);
    redrawTextures(editor);
    requestRedraw(editor);
    return CommandOutcome::unsaved;
}

KeptBefore keepBeforeSave(const Editor& editor, const std::string& path, KeptKind kind)
{
    KeptBefore kept;
    if (!editor.versions.folder.empty() && editor.keepsVersions)
        kept.message = keepVersion(editor.versions, fullPath(path), kind, kept.reason);
    return kept;
}

void tellVersionNotKept(Editor& editor, const KeptBefore& kept)
{
    if (kept.message == Message::none) return;
    editor.statusLine = loadCatalogueText(editor.mainWindow, kept.message);
    if (!editor.toldVersionNotKept)
        alert(editor.alerts, editor.mainWindow, kept.message, AlertStyle::exclamation, kept.reason);
    editor.toldVersionNotKept = true;
}

CommandOutcome openEarlierVersion(Editor& editor)
{
    const auto version = askVersion(editor);
    if (!version || !isRunning(editor)) return CommandOutcome::abandoned;
    std::string reason;
    std::optional<Bytes> bytes;
    {
        const WaitCursor waiting;
        // First: saving may let the oldest version go, which may be this one.
        bytes = readVersion(editor.versions, *version, reason);
    }
    if (!bytes) return failVersion(editor, Message::versionDamaged, reason);
    const bool isModel = version->kind == KeptKind::model;
    const Decision decision = isModel ? askSaveModel(editor, Word::openingNewFile)
                                      : askSaveTextures(editor, Word::openingNewFile);
    if (decision == Decision::stay || !isRunning(editor)) return CommandOutcome::abandoned;
    const WaitCursor waiting;
    keepUnsaved(editor);
    return isModel ? takeModel(editor, *bytes) : takeTextures(editor, *bytes);
}

} // namespace facetor
