#include "texture/texture_commands_win.h"

#include "app/editor_win.h"
#include "app/main_tool_bar_win.h"
#include "app/model_view_window.h"
#include "app/recent_menu_win.h"
#include "resources/resource_ids.h"
#include "texture/plug_in_commands_win.h"
#include "texture/slice_dialog.h"
#include "texture/texture_clipboard_win.h"
#include "texture/texture_file_commands_win.h"
#include "texture/texture_text.h"
#include "texture/transform_dialogs.h"
#include "ui/window_data_win.h"

#include <algorithm>
#include <iterator>
#include <string>

namespace facetor {

namespace {

/// What a command does to the texture list's changed flag once its handler has returned.
enum class ListFlag {
    keep,
    set, ///< always, also when there was nothing to do
    setOnSuccess,
    clearOnSuccess,
};

using TextureHandler = CommandOutcome (*)(Editor& editor, int number, LPARAM argument);

struct TextureCommand {
    int first, last;
    TextureHandler handler;
    ListFlag flag;
};

/// A command that needs nothing but the editor.
template <CommandOutcome (*action)(Editor&)> CommandOutcome perform(Editor& editor, int, LPARAM)
{
    return action(editor);
}

CommandOutcome onOpenPath(Editor& editor, int, LPARAM argument)
{
    if (!argument) return CommandOutcome::abandoned;
    return openTexturePath(editor, reinterpret_cast<const char*>(argument));
}

CommandOutcome onClose(Editor& editor, int, LPARAM)
{
    if (const HWND window = editor.textureWindow.window) SendMessageA(window, WM_CLOSE, 0, 0);
    return CommandOutcome::done;
}

CommandOutcome onScroll(Editor& editor, int number, LPARAM)
{
    scrollTextures(editor, static_cast<GridScroll>(number - IDM_TEXTURE_LINE_DOWN));
    return CommandOutcome::done;
}

CommandOutcome onUndo(Editor& editor, int, LPARAM)
{
    SendMessageA(editor.mainWindow, WM_COMMAND, IDM_EDIT_UNDO, 0);
    return CommandOutcome::done;
}

CommandOutcome onDelete(Editor& editor, int, LPARAM)
{
    TextureList& list = editor.document.textures;
    return finishTextureEdit(editor, deleteTexture(list, editor.undo, list.current));
}

CommandOutcome onCut(Editor& editor, int number, LPARAM argument)
{
    // What could not be copied is not taken away.
    if (copyTexture(editor) != CommandOutcome::done) return CommandOutcome::abandoned;
    return onDelete(editor, number, argument);
}

/// Inserts or removes a slot; with Shift held, polygons keep their pictures.
template <auto edit> CommandOutcome moveSlots(Editor& editor, int, LPARAM)
{
    const PolygonNumbers numbers =
        isKeyDown(VK_SHIFT) ? PolygonNumbers::follow : PolygonNumbers::keep;
    Document& document = editor.document;
    TextureList& list = document.textures;
    const EditOutcome outcome = edit(list, editor.undo, document.model, list.current, numbers);
    if (numbers == PolygonNumbers::follow && outcome.edit == Message::none)
        document.modelChanged = true; // its polygons have other numbers now
    return finishTextureEdit(editor, outcome);
}

CommandOutcome onDeleteAll(Editor& editor, int, LPARAM)
{
    const AlertButton answer =
        alert(editor.alerts, editor.mainWindow, Message::cannotUndoAfter, AlertStyle::question);
    if (answer == AlertButton::cancel) return CommandOutcome::abandoned;
    // There is no way back: what was to be saved and was not is kept.
    if (answer == AlertButton::yes && saveTexturesAs(editor) != CommandOutcome::done)
        return CommandOutcome::abandoned;
    editor.document.textures.clearAll();
    if (isTextureEdit(editor.undo)) undoClear(editor.undo);
    return finishTextureEdit(editor, {});
}

CommandOutcome onInformation(Editor& editor, int, LPARAM)
{
    const TextureList& list = editor.document.textures;
    const HWND owner = editor.mainWindow;
    const std::string text = textureInformation(list.current, list.slot(list.current),
                                                loadCatalogueText(owner, Word::width),
                                                loadCatalogueText(owner, Word::height));
    MessageBoxA(owner, text.c_str(), loadCatalogueText(owner, Word::textureInformation).c_str(),
                MB_OK);
    return CommandOutcome::done;
}

CommandOutcome onRecent(Editor& editor, int number, LPARAM)
{
    const std::string path = recentTexturesOf(editor, number); // a copy: opening changes the list
    return path.empty() ? CommandOutcome::abandoned : openTexturePath(editor, path);
}

/// A dialog and what it does, whatever comes of it.
template <void (*action)(Editor&)> CommandOutcome show(Editor& editor, int, LPARAM)
{
    action(editor);
    return CommandOutcome::done;
}

CommandOutcome onSlice(Editor& editor, int, LPARAM)
{
    return sliceCurrentTexture(editor) ? CommandOutcome::done : CommandOutcome::abandoned;
}

constexpr TextureCommand textureCommands[] = {
    {IDM_FILE_OPEN_PATH, IDM_FILE_OPEN_PATH, onOpenPath, ListFlag::clearOnSuccess},
    // What the question about unsaved textures sends; here it means this window's own Save as.
    {IDM_FILE_SAVE_AS, IDM_FILE_SAVE_AS, perform<saveTexturesAs>, ListFlag::clearOnSuccess},
    {IDM_TEXTURE_OPEN, IDM_TEXTURE_OPEN, perform<openTexturesWithDialog>, ListFlag::clearOnSuccess},
    {IDM_TEXTURE_SAVE, IDM_TEXTURE_SAVE, perform<saveTextures>, ListFlag::clearOnSuccess},
    {IDM_TEXTURE_SAVE_AS, IDM_TEXTURE_SAVE_AS, perform<saveTexturesAs>, ListFlag::clearOnSuccess},
    {IDM_TEXTURE_CLOSE, IDM_TEXTURE_CLOSE, onClose, ListFlag::keep},
    {IDM_TEXTURE_LINE_DOWN, IDM_TEXTURE_PAGE_UP, onScroll, ListFlag::keep},
    {IDM_TEXTURE_UNDO, IDM_TEXTURE_UNDO, onUndo, ListFlag::set},
    {IDM_TEXTURE_CUT, IDM_TEXTURE_CUT, onCut, ListFlag::set},
    {IDM_TEXTURE_COPY, IDM_TEXTURE_COPY, perform<copyTexture>, ListFlag::set},
    {IDM_TEXTURE_PASTE, IDM_TEXTURE_PASTE, perform<pasteTexture>, ListFlag::set},
    {IDM_TEXTURE_DELETE, IDM_TEXTURE_DELETE, onDelete, ListFlag::set},
    {IDM_TEXTURE_INSERT, IDM_TEXTURE_INSERT, moveSlots<insertSlot>, ListFlag::set},
    {IDM_TEXTURE_BACKSPACE, IDM_TEXTURE_BACKSPACE, moveSlots<removeSlot>, ListFlag::set},
    {IDM_TEXTURE_SCALE, IDM_TEXTURE_SCALE, show<showScaleDialog>, ListFlag::set},
    {IDM_TEXTURE_FLIP, IDM_TEXTURE_FLIP, show<showFlipDialog>, ListFlag::set},
    {IDM_TEXTURE_ROTATE, IDM_TEXTURE_ROTATE, show<showRotateDialog>, ListFlag::set},
    {IDM_TEXTURE_EMPTY_CLIPBOARD, IDM_TEXTURE_EMPTY_CLIPBOARD, show<emptyClipboard>,
     ListFlag::keep},
    {IDM_TEXTURE_IMPORT, IDM_TEXTURE_IMPORT, perform<importTextures>, ListFlag::setOnSuccess},
    {IDM_TEXTURE_EXPORT, IDM_TEXTURE_EXPORT, perform<exportTextures>, ListFlag::keep},
    {IDM_TEXTURE_INFORMATION, IDM_TEXTURE_INFORMATION, onInformation, ListFlag::keep},
    {IDM_TEXTURE_SLICE, IDM_TEXTURE_SLICE, onSlice, ListFlag::setOnSuccess},
    {IDM_TEXTURE_SHOW_SLICED, IDM_TEXTURE_SHOW_SLICED, show<toggleShowSliced>, ListFlag::keep},
    {IDM_RECENT_TEXTURES_1, IDM_RECENT_TEXTURES_4, onRecent, ListFlag::clearOnSuccess},
    {IDM_TEXTURE_DELETE_ALL, IDM_TEXTURE_DELETE_ALL, onDeleteAll, ListFlag::clearOnSuccess},
};
static_assert(static_cast<int>(GridScroll::pageUp) == IDM_TEXTURE_PAGE_UP - IDM_TEXTURE_LINE_DOWN,
              "the steps of scrolling have the order of their commands");

} // namespace

void runTextureCommand(Editor& editor, int number, LPARAM argument)
{
    const auto* command = std::ranges::find_if(textureCommands, [&](const auto& candidate) {
        return candidate.first <= number && number <= candidate.last;
    });
    if (command == std::end(textureCommands)) return;
    const CommandOutcome outcome = command->handler(editor, number, argument);
    bool& changed = editor.document.texturesChanged;
    if (command->flag == ListFlag::set) changed = true;
    if (outcome == CommandOutcome::done && command->flag == ListFlag::setOnSuccess) changed = true;
    if (outcome == CommandOutcome::done && command->flag == ListFlag::clearOnSuccess)
        changed = false;
    refreshMenuState(editor);
}

CommandOutcome finishTextureEdit(Editor& editor, const EditOutcome& outcome)
{
    const auto warn = [&](Message message) {
        if (message != Message::none)
            alert(editor.alerts, editor.mainWindow, message, AlertStyle::exclamation);
    };
    warn(outcome.undo);
    if (outcome.edit == Message::textureWidthNotMultipleOf8) {
        setAlertTexts(editor.alerts, loadCatalogueText(editor.mainWindow, outcome.edit), {});
        warn(Message::dataError);
    } else {
        warn(outcome.edit);
    }
    redrawTextures(editor);
    requestRedraw(editor);
    return outcome.edit == Message::none ? CommandOutcome::done : CommandOutcome::abandoned;
}

} // namespace facetor
