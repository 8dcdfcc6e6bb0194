#include "commands/model_commands.h"

#include "base/text.h"
#include "commands/import_commands.h"
#include "commands/keep_commands.h"
#include "commands/sample_folder.h"
#include "commands/texture_file_commands.h"
#include "commands/watch_commands.h"
#include "model/model_file.h"
#include "output/model_source.h"
#include "resources/resource_ids.h"
#include "session/file_names.h"
#include "state/editor.h"
#include "texture/texture_file.h"
#include "ui/handles.h"
#include "ui/window_data.h"
#include "windows/hierarchy_window.h"
#include "windows/model_view_window.h"
#include "windows/recent_menu.h"
#include "windows/title.h"

namespace facetor {

namespace {

Decision askSave(Editor& editor, Message question, Word reason, void (*save)(Editor&),
                 bool (*isUnsaved)(const Document&))
{
    setAlertTexts(editor.alerts, loadCatalogueText(editor.mainWindow, reason), {});
    switch (alert(editor.alerts, editor.mainWindow, question, AlertStyle::question)) {
    case AlertButton::yes:
        save(editor);
        if (isRunning(editor) && isUnsaved(editor.document)) editor.keeper.unsavedOnPurpose = true;
        return Decision::goOn;
    case AlertButton::no: return Decision::goOn;
    default: return Decision::stay;
    }
}

CommandOutcome loadModel(Editor& editor, const std::string& path)
{
    if (!isRunning(editor)) return CommandOutcome::abandoned;
    Document& document = editor.document;
    const std::string full = fullPath(path);
    keepUnsaved(editor);
    auto before = copyForLater(editor.keeper, document, editor.view);
    const FileStamp stamp = stampOf(full);
    const auto read = [&] {
        const WaitCursor waiting;
        const Message message = readModelFile(document.model, path);
        if (message == Message::none) {
            document.modelFile = full;
            document.importedFrom = importedFrom(editor.imports, full);
        }
        return EditOutcome{Message::none, message};
    };
    const auto [undo, message, brokenOff] =
        change(document, Word::stepOpenModel, read, ChangeKind::openModel);
    if (message != Message::none) {
        if (brokenOff) noteBrokenOff(editor, ChangeKind::openModel, full, std::move(before));
        alert(editor.alerts, editor.mainWindow, message, AlertStyle::exclamation);
        // The reader may have replaced a part of the model.
        refreshHierarchyTree(editor);
        requestRedraw(editor);
        return CommandOutcome::abandoned;
    }
    editor.watching.watch.watch(WatchedPart::model, {{full, stamp}});
    addRecentModel(editor, full);
    undoClear(document.undo);
    showTitle(editor);
    fitModel(editor.view, editor.engine, document.model, viewSize(editor));
    refreshHierarchyTree(editor);
    requestRedraw(editor);
    markModelSaved(document); // here, since the list's question comes before the end of the command
    openTexturesOf(editor, full);
    return CommandOutcome::done;
}

/// Numbers of the filters of the Save as dialog.
enum SaveFilter : DWORD { saveAsModel = 1, saveAsSource = 2 };

/// Writes the model, in the form that a filter stands for, and shows the message of a failure.
CommandOutcome writeModelAs(Editor& editor, const std::string& path, DWORD filter)
{
    if (!isRunning(editor)) return CommandOutcome::abandoned;
    Message message;
    KeptBefore kept;
    {
        const WaitCursor waiting;
        if (filter != saveAsSource) kept = keepBeforeSave(editor, path, KeptKind::model);
        message = filter == saveAsSource ? writeModelSource(editor.document.model, path)
                                         : writeModelFile(editor.document.model, path);
    }
    if (message != Message::none) {
        alert(editor.alerts, editor.mainWindow, message, AlertStyle::exclamation);
        return CommandOutcome::abandoned;
    }
    if (filter != saveAsSource) {
        noteWritten(editor, WatchedPart::model, {&path, 1});
        addRecentModel(editor, path);
        notePartSaved(editor, KeptKind::model, path);
    }
    tellVersionNotKept(editor, kept);
    return CommandOutcome::done;
}

/// The name that is offered for an imported model stays in the dialog when C source is chosen
/// there: source gets an extension of its own, and what it would replace is asked about. False: not
/// written.
bool nameAsSource(Editor& editor, std::string& path)
{
    if (!equalIgnoringCase(extensionOf(path), "mx3")) return true;
    path = std::string(cutExtension(path)) + ".mdl";
    if (GetFileAttributesA(path.c_str()) == INVALID_FILE_ATTRIBUTES) return true;
    setAlertTexts(editor.alerts, path.substr(path.find_last_of("\\/") + 1), "1");
    return alert(editor.alerts, editor.mainWindow, Message::replaceOthers, AlertStyle::question) ==
           AlertButton::yes;
}

} // namespace

Decision askSaveModel(Editor& editor, Word reason)
{
    editor.keeper.unsavedOnPurpose = false;
    if (!isModelChanged(editor.document)) return Decision::goOn;
    keepBeforeRisk(editor);
    return askSave(
        editor, Message::saveModelFirst, reason,
        [](Editor& e) { SendMessageA(e.mainWindow, WM_COMMAND, IDM_FILE_SAVE_AS, 0); },
        isModelChanged);
}

Decision askSaveTextures(Editor& editor, Word reason)
{
    if (!areTexturesChanged(editor.document)) return Decision::goOn;
    keepBeforeRisk(editor);
    // Not by way of the window, which may be closed.
    return askSave(
        editor, Message::saveTexturesFirst, reason,
        [](Editor& e) { (void)e.runCommand(e, CommandWindow::textures, IDM_FILE_SAVE_AS, 0); },
        areTexturesChanged);
}

CommandOutcome openModelPath(Editor& editor, const std::string& path)
{
    if (askSaveModel(editor, Word::openingNewFile) == Decision::stay)
        return CommandOutcome::abandoned;
    if (isForeignModel(path)) return importModelPath(editor, path);
    if (!probeModelFile(path)) {
        alert(editor.alerts, editor.mainWindow, Message::formatNotSupported,
              AlertStyle::exclamation);
        return CommandOutcome::abandoned;
    }
    return loadModel(editor, path);
}

CommandOutcome openModelWithDialog(Editor& editor)
{
    if (askSaveModel(editor, Word::openingNewFile) == Decision::stay)
        return CommandOutcome::abandoned;
    offerSamples(editor, editor.fileDialogs.openModel);
    const auto chosen = askOpenFile(editor.mainWindow, editor.fileDialogs.openModel);
    if (!chosen) return CommandOutcome::abandoned;
    return isForeignModel(chosen->path) ? importModelPath(editor, chosen->path)
                                        : loadModel(editor, chosen->path);
}

CommandOutcome saveModel(Editor& editor)
{
    const std::string& file = editor.document.modelFile;
    if (file.empty()) return saveModelAs(editor);
    if (const std::string source = editor.document.partlyReadModel; !source.empty())
        switch (askPartlyRead(editor, source, modelSavePath(file))) {
        case PartlyRead::saveAs: return saveModelAs(editor);
        case PartlyRead::giveUp: return CommandOutcome::abandoned;
        case PartlyRead::replace: break;
        }
    return writeModelAs(editor, modelSavePath(file), saveAsModel);
}

CommandOutcome saveModelAs(Editor& editor)
{
    const auto imported = importedName(editor);
    const auto chosen = askSaveFile(editor.mainWindow, editor.fileDialogs.saveModel,
                                    imported ? *imported + ".mx3"
                                             : std::string(cutExtension(shownModelFile(editor))));
    if (!chosen) return CommandOutcome::abandoned;
    std::string path = chosen->path;
    if (imported && chosen->filter == saveAsSource && !nameAsSource(editor, path))
        return CommandOutcome::abandoned;
    if (writeModelAs(editor, path, chosen->filter) != CommandOutcome::done)
        return CommandOutcome::abandoned;
    Document& document = editor.document;
    document.modelFile = modelSavePath(path);
    rememberModel(editor.imports, document.modelFile, document.importedFrom);
    showTitle(editor);
    return CommandOutcome::done;
}

void openAnyPath(Editor& editor, const std::string& path)
{
    if (isTextureFile(path)) {
        (void)editor.runCommand(editor, CommandWindow::textures, IDM_FILE_OPEN_PATH,
                                reinterpret_cast<LPARAM>(path.c_str()));
        return;
    }
    SendMessageA(editor.mainWindow, WM_COMMAND, IDM_FILE_OPEN_PATH,
                 reinterpret_cast<LPARAM>(path.c_str()));
}

} // namespace facetor
