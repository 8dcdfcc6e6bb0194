#include "texture/texture_file_commands_win.h"

#include "app/editor_win.h"
#include "app/file_names.h"
#include "app/model_commands_win.h"
#include "app/model_view_window.h"
#include "app/recent_menu_win.h"
#include "app/sample_folder_win.h"
#include "base/text.h"
#include "output/texture_source.h"
#include "texture/plug_in_commands_win.h"
#include "texture/texture_file.h"
#include "texture/texture_window.h"
#include "ui/handles_win.h"
#include "ui/window_data_win.h"

namespace facetor {

namespace {

/// Numbers of the filters of both file dialogs.
enum TextureFilter : DWORD { textureListFile = 1, textureSourceFile = 2 };

CommandOutcome loadTextures(Editor& editor, const std::string& path)
{
    Message message;
    {
        const WaitCursor waiting;
        message = readTextureFile(editor.document.textures, path);
    }
    const std::string full = fullPath(path);
    addRecentTextures(editor, full);
    undoClear(editor.undo); // what it holds may be of textures that are gone
    redrawTextures(editor);
    requestRedraw(editor);
    if (message != Message::none) return CommandOutcome::abandoned;
    editor.document.textureFile = full;
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
        editor.document.texturesChanged = true;
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
    const auto chosen = askSaveFile(editor.mainWindow, editor.fileDialogs.saveTextures,
                                    std::string(cutExtension(file)));
    if (!chosen) return CommandOutcome::abandoned;
    if (writeTexturesAs(editor, chosen->path, chosen->filter) != CommandOutcome::done)
        return CommandOutcome::abandoned;
    file = chosen->path;
    // Here, since other commands have the list saved as well before they go on.
    editor.document.texturesChanged = false;
    showTextureTitle(editor, file);
    return CommandOutcome::done;
}

} // namespace facetor
