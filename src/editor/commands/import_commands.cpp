#include "commands/import_commands.h"

#include "base/text.h"
#include "commands/keep_commands.h"
#include "commands/model_commands.h"
#include "dialogs/import_dialog.h"
#include "dialogs/report_dialog.h"
#include "exchange/foreign_file.h"
#include "model/model_file.h"
#include "session/import_text.h"
#include "state/editor.h"
#include "ui/progress.h"
#include "ui/window_data.h"
#include "windows/hierarchy_window.h"
#include "windows/model_view_window.h"
#include "windows/recent_menu.h"
#include "windows/texture_window.h"
#include "windows/title.h"

namespace facetor {

namespace {

TextOf textsOf(const Editor& editor)
{
    return [&editor](Word word) { return loadCatalogueText(editor.mainWindow, word); };
}

CommandOutcome fail(Editor& editor, Message message, const std::string& path, const Reason& reason)
{
    alert(editor.alerts, editor.mainWindow, message, AlertStyle::exclamation,
          reason.text.empty() ? std::string()
                              : path.substr(folderOf(path).size()) + ": " +
                                    importNoteText(reason.text, textsOf(editor)));
    return CommandOutcome::abandoned;
}

/// Reads a file while the program goes on painting itself. False when it failed, which has been
/// shown, or the user stopped it.
bool readForeign(Editor& editor, ImportedModel& imported, const std::string& path,
                 const ImportOptions& options)
{
    Message message{};
    Reason reason;
    const auto read = [&](const ShareDone& progress) {
        message = importModelFile(imported, path, options, progress, reason);
    };
    const bool stopped = !workAside(editor.mainWindow, Word::importing, path, read);
    if (!isRunning(editor) || stopped) return false;
    if (message != Message::none) (void)fail(editor, message, path, reason);
    return message == Message::none;
}

/// Shows what an import has made, and keeps it to be read again.
void finishImport(Editor& editor, const ImportReport& report, const std::string& path,
                  const ImportOptions& options)
{
    const TextOf textOf = textsOf(editor);
    undoClear(editor.document.undo); // what it holds is of a model that is gone
    rememberSource(editor.imports, path, options);
    editor.importReport = importReportText(report, path, textOf);
    editor.statusLine = importStatus(report, textOf);
    showTitle(editor);
    refreshHierarchyTree(editor);
    redrawTextures(editor);
    requestRedraw(editor);
}

CommandOutcome importNew(Editor& editor, const std::string& path, const ImportOptions& options)
{
    ImportedModel imported;
    if (!readForeign(editor, imported, path, options)) return CommandOutcome::abandoned;
    // A model without pictures leaves the list alone, as opening a model file does.
    const bool hasTextures = imported.report.textures > 0;
    if (hasTextures && askSaveTextures(editor, Word::openingNewFile) == Decision::stay)
        return CommandOutcome::abandoned;
    if (!isRunning(editor)) return CommandOutcome::abandoned;
    keepUnsaved(editor);
    Document& document = editor.document;
    const auto take = [&] {
        copyModel(document.model, imported.model);
        leaveModelFile(document, path);
        if (hasTextures) {
            replaceTextures(document.textures, imported.textures);
            leaveTextureFile(document);
        }
        return EditOutcome{};
    };
    (void)change(document, Word::stepImportModel, take,
                 hasTextures ? ChangeKind::openBoth : ChangeKind::openModel);
    addRecentModel(editor, path);
    fitModel(editor.view, editor.engine, document.model, viewSize(editor));
    finishImport(editor, imported.report, path, options);
    if (hasTextures) showTextureTitle(editor, {});
    if (!imported.report.notes.empty()) showReport(editor.mainWindow, editor.importReport);
    return CommandOutcome::unsaved;
}

CommandOutcome importOntoOpen(Editor& editor, const std::string& path, const ImportOptions& options)
{
    ImportedModel imported;
    if (!readForeign(editor, imported, path, options)) return CommandOutcome::abandoned;
    Document& document = editor.document;
    Model result;
    TextureList textures = document.textures;
    Reason reason;
    Message message = createModelStore(result);
    if (message == Message::none && textures.slots().empty()) message = Message::outOfMemory;
    if (message == Message::none)
        message = importOnto(result, textures, document.model, imported, reason);
    if (message != Message::none) return fail(editor, message, path, reason);
    const auto take = [&] {
        copyModel(document.model, result);
        replaceTextures(document.textures, textures);
        document.importedFrom = path;
        return EditOutcome{};
    };
    (void)change(document, Word::stepImportAgain, take);
    editor.view.hidden.reset(); // they are other polygons now
    if (!document.modelFile.empty()) rememberModel(editor.imports, document.modelFile, path);
    finishImport(editor, imported.report, path, options);
    return CommandOutcome::unsaved;
}

} // namespace

bool isForeignModel(const std::string& path)
{
    return foreignKindOf(path) && !probeModelFile(path);
}

CommandOutcome importModelPath(Editor& editor, const std::string& path)
{
    if (!isRunning(editor)) return CommandOutcome::abandoned;
    const std::string full = fullPath(path);
    const auto choice =
        askImportChoice(editor, full, optionsOf(editor.imports, full, editor.settings.import));
    if (!choice || !isRunning(editor)) return CommandOutcome::abandoned;
    editor.settings.import = choice->options;
    return choice->target == ImportTarget::openModel ? importOntoOpen(editor, full, choice->options)
                                                     : importNew(editor, full, choice->options);
}

CommandOutcome importAgain(Editor& editor)
{
    const std::string path = editor.document.importedFrom;
    if (path.empty()) return CommandOutcome::abandoned; // by its key, while the item is grey
    return importOntoOpen(editor, path, optionsOf(editor.imports, path, editor.settings.import));
}

void showImportReport(Editor& editor)
{
    if (!editor.importReport.empty()) showReport(editor.mainWindow, editor.importReport);
}

} // namespace facetor
