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

#include <algorithm>
#include <utility>
#include <vector>

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

/// What reading another program's file comes to.
struct ForeignFile {
    ImportedModel imported;
    Message message = Message::none;
    Reason reason;
    std::vector<WatchedFile> files; ///< the file itself and what was read with it
    bool stopped = false;           ///< by the user, or with the program

    bool isRead() const { return !stopped && message == Message::none; }
};

/// Reads a file while the program goes on painting itself.
ForeignFile readForeign(Editor& editor, const std::string& path, const ImportOptions& options)
{
    ForeignFile file;
    // As they stand before: what is written while they are read counts as a change.
    FileLooker::Stamps before;
    for (const WatchedFile& known : editor.watching.watch.files(WatchedPart::source))
        before[known.path] = stampOf(known.path);
    before[path] = stampOf(path);
    std::vector<std::string> paths{path};
    const auto read = [&](const ShareDone& progress) {
        file.message = importModelFile(file.imported, path, options, progress, file.reason, &paths);
    };
    file.stopped = !workAside(editor.mainWindow, Word::importing, path, read) || !isRunning(editor);
    std::ranges::sort(paths);
    paths.erase(std::ranges::unique(paths).begin(), paths.end());
    for (const std::string& each : paths) {
        const auto known = before.find(each);
        file.files.push_back({each, known == before.end() ? stampOf(each) : known->second});
    }
    return file;
}

/// The same; what fails has been shown when it returns.
bool readForeign(Editor& editor, ForeignFile& file, const std::string& path,
                 const ImportOptions& options)
{
    file = readForeign(editor, path, options);
    if (!file.stopped && file.message != Message::none)
        (void)fail(editor, file.message, path, file.reason);
    return file.isRead();
}

/// What notes say of files that a model names and that cannot be read.
std::vector<std::string> fileNotesOf(const ImportReport& report)
{
    std::vector<std::string> texts;
    for (const ImportNote& note : report.notes)
        if (note.text.starts_with("material file \"") || note.text.starts_with("picture \""))
            texts.push_back(note.text);
    return texts;
}

/// Shows what an import has made, and keeps it to be read again.
void finishImport(Editor& editor, const ForeignFile& file, const std::string& path,
                  const ImportOptions& options)
{
    const ImportReport& report = file.imported.report;
    const TextOf textOf = textsOf(editor);
    undoClear(editor.document.undo); // what it holds is of a model that is gone
    rememberSource(editor.imports, path, options);
    std::vector<std::string> others;
    for (const WatchedFile& each : file.files)
        if (each.path != path) others.push_back(each.path);
    rememberFiles(editor.imports, path, std::move(others));
    Watching& watching = editor.watching;
    watching.watch.watch(WatchedPart::source, file.files);
    watching.importedModel = editor.document.modelRevision;
    watching.fileNotes = fileNotesOf(report);
    editor.importReport = importReportText(report, path, textOf);
    editor.statusLine = importStatus(report, textOf);
    showTitle(editor);
    refreshHierarchyTree(editor);
    redrawTextures(editor);
    requestRedraw(editor);
}

CommandOutcome importNew(Editor& editor, const std::string& path, const ImportOptions& options)
{
    ForeignFile file;
    if (!readForeign(editor, file, path, options)) return CommandOutcome::abandoned;
    ImportedModel& imported = file.imported;
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
    finishImport(editor, file, path, options);
    if (hasTextures) {
        editor.watching.importedSlots = importedSlots(document.textures);
        showTextureTitle(editor, {});
    }
    if (!imported.report.notes.empty()) showReport(editor.mainWindow, editor.importReport);
    return CommandOutcome::unsaved;
}

/// Puts what was read onto the open model. A failure, with its reason in `file`, leaves that alone.
Message takeOnto(Editor& editor, ForeignFile& file, const std::string& path,
                 const ImportOptions& options)
{
    Document& document = editor.document;
    Model result;
    TextureList textures = document.textures;
    ImportedSlots slots = editor.watching.importedSlots;
    Message message = createModelStore(result);
    if (message == Message::none && textures.slots().empty()) message = Message::outOfMemory;
    if (message == Message::none)
        message = importOnto(result, textures, document.model, file.imported, file.reason, &slots);
    if (message != Message::none) return message;
    editor.watching.importedSlots = std::move(slots);
    const auto take = [&] {
        copyModel(document.model, result);
        replaceTextures(document.textures, textures);
        document.importedFrom = path;
        return EditOutcome{};
    };
    (void)change(document, Word::stepImportAgain, take);
    editor.view.hidden.reset(); // they are other polygons now
    if (!document.modelFile.empty()) rememberModel(editor.imports, document.modelFile, path);
    finishImport(editor, file, path, options);
    return Message::none;
}

CommandOutcome importOntoOpen(Editor& editor, const std::string& path, const ImportOptions& options)
{
    ForeignFile file;
    if (!readForeign(editor, file, path, options)) return CommandOutcome::abandoned;
    if (const Message message = takeOnto(editor, file, path, options); message != Message::none)
        return fail(editor, message, path, file.reason);
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

Reimport reimportChanged(Editor& editor, std::string& reason)
{
    const std::string path = editor.document.importedFrom;
    const ImportOptions options = optionsOf(editor.imports, path, editor.settings.import);
    ForeignFile file = readForeign(editor, path, options);
    if (file.stopped) return Reimport::stopped;
    Message message = file.message;
    if (message == Message::none) {
        // What could be read before may just be written.
        for (const std::string& note : fileNotesOf(file.imported.report))
            if (std::ranges::find(editor.watching.fileNotes, note) ==
                editor.watching.fileNotes.end()) {
                reason = importNoteText(note, textsOf(editor));
                return Reimport::failed;
            }
        message = takeOnto(editor, file, path, options);
    }
    if (message == Message::none) return Reimport::done;
    reason = file.reason.text.empty() ? loadCatalogueText(editor.mainWindow, message)
                                      : importNoteText(file.reason.text, textsOf(editor));
    return Reimport::failed;
}

void showImportReport(Editor& editor)
{
    if (!editor.importReport.empty()) showReport(editor.mainWindow, editor.importReport);
}

} // namespace facetor
