#include "commands/texture_file_commands.h"

#include "base/text.h"
#include "commands/model_commands.h"
#include "commands/plug_in_commands.h"
#include "commands/sample_folder.h"
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

namespace facetor {

namespace {

/// Numbers of the filters of both file dialogs.
enum TextureFilter : DWORD { textureListFile = 1, textureSourceFile = 2 };

CommandOutcome loadTextures(Editor& editor, const std::string& path)
{
    if (!isRunning(editor)) return CommandOutcome::abandoned;
    Document& document = editor.document;
    const std::string full = fullPath(path);
    const auto read = [&] {
        const WaitCursor waiting;
        const Message message = readTextureFile(document.textures, path);
        if (message == Message::none) document.textureFile = full;
        return EditOutcome{Message::none, message};
    };
    const Message message =
        change(document, Word::stepOpenTextures, read, ChangeKind::openTextures).edit;
    addRecentTextures(editor, full);
    undoClear(document.undo); // what it holds may be of textures that are gone
    redrawTextures(editor);
    requestRedraw(editor);
    if (message != Message::none) return CommandOutcome::abandoned;
    showTextureTitle(editor, {});
    return CommandOutcome::done;
}

/// Writes the list, in the form that a filter stands for, and shows the message of a failure.
CommandOutcome writeTexturesAs(Editor& editor, const std::string& path, DWORD filter)
{
    const TextureList& list = editor.document.textures;
    Message message;
    {
        const WaitCursor waiting;
        message = filter == textureSourceFile ? writeTextureSource(list, path)
                                              : writeTextureFile(list, path);
    }
    if (message != Message::none) {
        alert(editor.alerts, editor.mainWindow, message, AlertStyle::exclamation);
        return CommandOutcome::abandoned;
    }
    if (filter != textureSourceFile) addRecentTextures(editor, path);
    return CommandOutcome::done;
}

} // namespace

CommandOutcome openTexturesWithDialog(Editor& editor)
{
    if (askSaveTextures(editor, Word::openingNewFile) == Decision::stay)
        return CommandOutcome::abandoned;
    offerSamples(editor, editor.fileDialogs.openTextures);
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

CommandOutcome saveTextures(Editor& editor)
{
    const std::string& file = editor.document.textureFile;
    if (file.empty()) return saveTexturesAs(editor);
    return writeTexturesAs(editor, textureSavePath(file), textureListFile);
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
    // Here, since other commands have the list saved as well before they go on.
    markTexturesSaved(editor.document);
    showTextureTitle(editor, file);
    return CommandOutcome::done;
}

} // namespace facetor
