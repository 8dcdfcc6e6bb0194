#include "base/text.h"
#include "commands/import_commands.h"
#include "commands/watch_commands.h"
#include "exchange/export_files.h"
#include "exchange/foreign_file.h"
#include "exchange/gltf_writer.h"
#include "state/editor.h"
#include "ui/handles.h"
#include "windows/title.h"

#include <string>
#include <vector>

namespace facetor {

namespace {

/// Whether the files beside the chosen one, which the file dialog has asked about, may be replaced.
bool mayReplace(Editor& editor, const std::vector<std::string>& standing)
{
    if (standing.empty()) return true;
    setAlertTexts(editor.alerts, standing.front(), std::to_string(standing.size()));
    return alert(editor.alerts, editor.mainWindow, Message::replaceOthers, AlertStyle::question) ==
           AlertButton::yes;
}

/// Numbers of the filters of the dialog.
enum ExportFilter : DWORD { exportObj = 1, exportGlb = 2 };

/// All files of an export, the chosen one first. Its extension says of which kind it is, and the
/// filter for any other extension.
Message formatExport(std::vector<ExportedFile>& files, const Document& document,
                     const std::string& path, DWORD filter)
{
    const std::string_view extension = extensionOf(path);
    const bool isGlb = equalIgnoringCase(extension, "glb") ||
                       (filter == exportGlb && !equalIgnoringCase(extension, "obj"));
    if (!isGlb) return writeObj(files, document.model, &document.textures, titleOf(path));
    return writeGlb(files.emplace_back().bytes, document.model, &document.textures);
}

} // namespace

CommandOutcome exportModel(Editor& editor)
{
    const Document& document = editor.document;
    const auto chosen = askSaveFile(
        editor.mainWindow, editor.fileDialogs.exportModel,
        importedName(editor).value_or(std::string(cutExtension(shownModelFile(editor)))));
    if (!chosen || !isRunning(editor)) return CommandOutcome::abandoned;
    const std::string folder = folderOf(chosen->path);
    std::vector<ExportedFile> files;
    Reason reason;
    Message message = formatExport(files, document, chosen->path, chosen->filter);
    if (message == Message::none) {
        files.front().name = chosen->path.substr(folder.size());
        if (!mayReplace(editor, standingFiles(folder, files)) || !isRunning(editor))
            return CommandOutcome::abandoned;
        const WaitCursor waiting;
        message = writeExport(folder, files, reason);
        std::vector<std::string> written; // also after a failure: some may have got their place
        for (const ExportedFile& file : files) written.push_back(folder + file.name);
        noteWritten(editor, WatchedPart::source, written);
    }
    if (message == Message::none) return CommandOutcome::done;
    alert(editor.alerts, editor.mainWindow, message, AlertStyle::exclamation, reason.text);
    return CommandOutcome::abandoned;
}

} // namespace facetor
