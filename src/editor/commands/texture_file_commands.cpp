#include "commands/texture_file_commands.h"

#include "base/text.h"
#include "commands/keep_commands.h"
#include "commands/model_commands.h"
#include "commands/plug_in_commands.h"
#include "commands/sample_folder.h"
#include "commands/watch_commands.h"
#include "commands/watched_pictures.h"
#include "exchange/foreign_file.h"
#include "output/texture_source.h"
#include "session/file_names.h"
#include "state/editor.h"
#include "texture/texture_file.h"
#include "ui/handles.h"
#include "ui/window_data.h"
#include "windows/model_view_window.h"
#include "windows/recent_menu.h"
#include "windows/texture_window.h"

#include <utility>

namespace facetor {

namespace {

/// Numbers of the filters of both file dialogs.
enum TextureFilter : DWORD { textureListFile = 1, textureSourceFile = 2 };

/// What follows an opening, also one that failed.
void showOpened(Editor& editor, const std::string& path)
{
    addRecentTextures(editor, path);
    undoClear(editor.document.undo); // what it holds may be of textures that are gone
    redrawTextures(editor);
    requestRedraw(editor);
}

CommandOutcome loadTextures(Editor& editor, const std::string& path)
{
    if (!isRunning(editor)) return CommandOutcome::abandoned;
    Document& document = editor.document;
    const std::string full = fullPath(path);
    keepUnsaved(editor);
    auto before = copyForLater(editor.keeper, document, editor.view);
    const FileStamp stamp = stampOf(full);
    const TextureList listBefore = document.textures; // its texels are shared: no copies
    bool isPart = false; // memory was short: that is no failure, and yet not the whole file
    const auto read = [&] {
        const WaitCursor waiting;
        Reason reason;
        const Message message = readTextureFile(document.textures, path, &reason);
        if (message == Message::none) document.textureFile = full;
        isPart = message == Message::none && !reason.text.empty();
        if (isPart) document.partlyReadTextures = full;
        return EditOutcome{Message::none, message};
    };
    const auto [undo, message, brokenOff] =
        change(document, Word::stepOpenTextures, read, ChangeKind::openTextures);
    if (brokenOff || isPart)
        noteBrokenOff(editor, ChangeKind::openTextures, full, std::move(before));
    showOpened(editor, full);
    if (message != Message::none) return CommandOutcome::abandoned;
    showTextureTitle(editor, {});
    if (listBefore.slots().size() == document.textures.slots().size())
        noteTexturesRead(editor, full, stamp, replacedSlots(listBefore, document.textures));
    return CommandOutcome::done;
}

/// Makes the file's textures the list, without those that it had. What cannot be read is said in
/// the status bar and leaves everything as it is.
void openTexturesAlone(Editor& editor, const std::string& path)
{
    Document& document = editor.document;
    TextureList list;
    Reason reason;
    const FileStamp stamp = stampOf(path);
    Message message = list.create();
    if (message == Message::none) message = readTextureFile(list, path, &reason);
    if (message != Message::none || !reason.text.empty()) {
        editor.statusLine = expandPlaceholders(
            loadCatalogueText(editor.mainWindow, Word::statusListNotOpened), fileNameOf(path),
            reason.text.empty() ? loadCatalogueText(editor.mainWindow, message) : reason.text);
        editor.keeper.unsavedOnPurpose = false; // the list that was not saved is still there
        return;
    }
    keepUnsaved(editor);
    const auto take = [&] {
        replaceTextures(document.textures, list);
        document.textureFile = path;
        document.partlyReadTextures.clear();
        return EditOutcome{};
    };
    (void)change(document, Word::stepOpenTextures, take, ChangeKind::openTextures);
    markTexturesSaved(document);
    showOpened(editor, path);
    showTextureTitle(editor, {});
    noteTexturesRead(editor, path, stamp, usedSlots(document.textures));
}

/// Whether the list of a model's name is opened with it; asks the first time that there is one,
/// when it is not said yet.
bool wantsTexturesOf(Editor& editor, const std::string& list)
{
    if (editor.listWithModel == ListWithModel::ask) {
        setAlertTexts(editor.alerts, fileNameOf(list), {});
        const AlertButton answer =
            alert(editor.alerts, editor.mainWindow, Message::openListToo, AlertStyle::choice);
        if (!isRunning(editor)) return false;
        editor.listWithModel = answer == AlertButton::yes ? ListWithModel::yes : ListWithModel::no;
    }
    return editor.listWithModel == ListWithModel::yes;
}

/// Writes the list, in the form that a filter stands for, and shows the message of a failure.
CommandOutcome writeTexturesAs(Editor& editor, const std::string& path, DWORD filter)
{
    const TextureList& list = editor.document.textures;
    Message message;
    KeptBefore kept;
    {
        const WaitCursor waiting;
        if (filter != textureSourceFile) kept = keepBeforeSave(editor, path, KeptKind::textures);
        message = filter == textureSourceFile ? writeTextureSource(list, path)
                                              : writeTextureFile(list, path);
    }
    if (message != Message::none) {
        alert(editor.alerts, editor.mainWindow, message, AlertStyle::exclamation);
        return CommandOutcome::abandoned;
    }
    if (filter != textureSourceFile) {
        noteWritten(editor, WatchedPart::textures, {&path, 1});
        rememberPictures(editor, path);
        addRecentTextures(editor, path);
        notePartSaved(editor, KeptKind::textures, path);
    }
    tellVersionNotKept(editor, kept);
    return CommandOutcome::done;
}

} // namespace

CommandOutcome openTexturesWithDialog(Editor& editor)
{
    if (askSaveTextures(editor, Word::openingNewFile) == Decision::stay)
        return CommandOutcome::abandoned;
    FileDialog& dialog = editor.fileDialogs.openTextures;
    offerSamples(editor, dialog);
    // Until there is a list, where that of the last run is.
    if (const std::string& last = editor.session.lastTextureList;
        !last.empty() && editor.document.textureFile.empty())
        dialog.folder = folderOf(last);
    const auto chosen = askOpenFile(editor.mainWindow, editor.fileDialogs.openTextures);
    if (!chosen || chosen->filter != textureListFile) return CommandOutcome::abandoned;
    return loadTextures(editor, chosen->path);
}

CommandOutcome openTexturePath(Editor& editor, const std::string& path)
{
    if (askSaveTextures(editor, Word::openingNewFile) == Decision::stay)
        return CommandOutcome::abandoned;
    if (isTextureFile(path)) return loadTextures(editor, path);
    // An image that came in makes the list another one than any file's.
    if (importTexturePath(editor, path) == CommandOutcome::done)
        markTexturesChanged(editor.document);
    return CommandOutcome::abandoned;
}

void openTexturesOf(Editor& editor, const std::string& modelFile)
{
    const std::string path = textureSavePath(modelFile);
    const Document& document = editor.document;
    const bool isOpen = equalIgnoringCase(path, document.textureFile);
    if (editor.opensModelAlone || editor.listWithModel == ListWithModel::no ||
        !isTextureFile(path) || (isOpen && !areTexturesChanged(document)) ||
        !wantsTexturesOf(editor, path) ||
        askSaveTextures(editor, Word::openingNewFile) == Decision::stay || !isRunning(editor))
        return;
    const WaitCursor waiting;
    openTexturesAlone(editor, path);
}

CommandOutcome saveTextures(Editor& editor)
{
    const std::string& file = editor.document.textureFile;
    if (file.empty()) return saveTexturesAs(editor);
    if (const std::string source = editor.document.partlyReadTextures; !source.empty())
        switch (askPartlyRead(editor, source, textureSavePath(file))) {
        case PartlyRead::saveAs: return saveTexturesAs(editor);
        case PartlyRead::giveUp: return CommandOutcome::abandoned;
        case PartlyRead::replace: break;
        }
    const std::string path = textureSavePath(file);
    const CommandOutcome outcome = writeTexturesAs(editor, path, textureListFile);
    if (outcome == CommandOutcome::done) noteListFile(editor, path);
    return outcome;
}

CommandOutcome saveTexturesAs(Editor& editor)
{
    std::string& file = editor.document.textureFile;
    const std::string& source = editor.document.importedFrom; // what the list came with, too
    const auto chosen =
        askSaveFile(editor.mainWindow, editor.fileDialogs.saveTextures,
                    file.empty() && !source.empty() ? folderOf(source) + titleOf(source) + ".mxt"
                                                    : std::string(cutExtension(file)));
    if (!chosen) return CommandOutcome::abandoned;
    if (writeTexturesAs(editor, chosen->path, chosen->filter) != CommandOutcome::done)
        return CommandOutcome::abandoned;
    file = chosen->path;
    noteListFile(editor, chosen->filter == textureSourceFile ? std::string() : file);
    // Here, since other commands have the list saved as well before they go on.
    markTexturesSaved(editor.document);
    showTextureTitle(editor, file);
    return CommandOutcome::done;
}

} // namespace facetor
