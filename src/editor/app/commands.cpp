#include "app/commands.h"

#include "app/main_window.h"
#include "commands/edit_commands.h"
#include "commands/help.h"
#include "commands/hierarchy_commands.h"
#include "commands/import_commands.h"
#include "commands/keep_commands.h"
#include "commands/model_commands.h"
#include "commands/picture_commands.h"
#include "commands/plug_in_commands.h"
#include "commands/select_commands.h"
#include "commands/send_target.h"
#include "commands/slice_command.h"
#include "commands/texture_clipboard.h"
#include "commands/texture_commands.h"
#include "commands/texture_file_commands.h"
#include "commands/transform_commands.h"
#include "commands/view_commands.h"
#include "commands/watch_commands.h"
#include "dialogs/light_dialog.h"
#include "dialogs/property_dialog.h"
#include "dialogs/screen_dialog.h"
#include "session/command_numbers.h"
#include "session/menu_state.h"
#include "state/editor.h"
#include "windows/attribute_window.h"
#include "windows/budget_window.h"
#include "windows/draw_order_window.h"
#include "windows/hierarchy_window.h"
#include "windows/main_tool_bar.h"
#include "windows/model_view_window.h"
#include "windows/recent_menu.h"
#include "windows/slice_view.h"
#include "windows/texture_window.h"
#include "windows/tool_box_window.h"
#include "windows/view_gestures.h"

#include <algorithm>
#include <iterator>
#include <span>
#include <string>

namespace facetor {

namespace {

/// What a command does to a changed flag once its handler has returned.
enum class Flag {
    keep,
    set, ///< always, also when the user cancelled or there was nothing to do
    setOnSuccess,
    clearOnSuccess, ///< what it is about is now as it stands in its file
};

using CommandHandler = CommandOutcome (*)(Editor& editor, int number, LPARAM argument);

/// A command, or a run of commands that one handler tells apart by their numbers.
struct Command {
    CommandWindow window;
    int first, last;
    CommandHandler handler;
    Flag model = Flag::keep;
    Flag textures = Flag::keep;
};

/// A command that needs nothing but the editor, and whose outcome does not matter.
template <void (*action)(Editor&)> CommandOutcome perform(Editor& editor, int, LPARAM)
{
    action(editor);
    return CommandOutcome::done;
}

/// The same of a command whose outcome does.
template <CommandOutcome (*action)(Editor&)> CommandOutcome perform(Editor& editor, int, LPARAM)
{
    return action(editor);
}

/// A file whose path is the message's argument.
template <CommandOutcome (*open)(Editor&, const std::string&)>
CommandOutcome openPath(Editor& editor, int, LPARAM argument)
{
    if (!argument) return CommandOutcome::abandoned;
    return open(editor, reinterpret_cast<const char*>(argument));
}

CommandOutcome onExit(Editor& editor, int, LPARAM)
{
    SendMessageA(editor.mainWindow, WM_CLOSE, 0, 0);
    return CommandOutcome::done;
}

CommandOutcome onStep(Editor& editor, int number, LPARAM)
{
    step(editor, number == IDM_EDIT_STEP_BACK ? Direction::back : Direction::forward);
    return CommandOutcome::done;
}

CommandOutcome onFixedView(Editor& editor, int number, LPARAM)
{
    showFixedView(editor, static_cast<FixedView>(number - IDM_CAMERA_FORWARD));
    return CommandOutcome::done;
}

CommandOutcome onZoom(Editor& editor, int number, LPARAM)
{
    setViewZoom(editor, number - IDM_VIEW_ZOOM_1 + 1);
    return CommandOutcome::done;
}

CommandOutcome onFrame(Editor& editor, int number, LPARAM)
{
    frameInView(editor, number == IDM_VIEW_FIT_PICKED ? Framed::picked : Framed::model);
    return CommandOutcome::done;
}

CommandOutcome onRecallCamera(Editor& editor, int number, LPARAM)
{
    recallStoredCamera(editor, static_cast<std::size_t>(number - IDM_CAMERA_RECALL_1));
    return CommandOutcome::done;
}

CommandOutcome onStoreCamera(Editor& editor, int number, LPARAM)
{
    storeCurrentCamera(editor, static_cast<std::size_t>(number - IDM_CAMERA_STORE_1));
    return CommandOutcome::done;
}

CommandOutcome onRotateVertices(Editor& editor, int number, LPARAM)
{
    turnPickedCorners(editor, static_cast<CornerTurn>(number - IDM_ROTATE_CLOCKWISE));
    return CommandOutcome::done;
}

CommandOutcome onSelect(Editor& editor, int number, LPARAM)
{
    return changeSelection(editor, number);
}

CommandOutcome onSelectMore(Editor& editor, int number, LPARAM)
{
    selectMore(editor, number);
    return CommandOutcome::done;
}

CommandOutcome onTool(Editor& editor, int number, LPARAM)
{
    chooseToolFromMenu(editor, toolOf(number));
    return CommandOutcome::done;
}

CommandOutcome onRecentModel(Editor& editor, int number, LPARAM)
{
    if (const std::string path = recentModelOf(editor, number); !path.empty())
        SendMessageA(editor.mainWindow, WM_COMMAND, IDM_FILE_OPEN_PATH,
                     reinterpret_cast<LPARAM>(path.c_str()));
    return CommandOutcome::done;
}

/// A command of the texture list window; nothing while that is closed.
CommandOutcome onTextures(Editor& editor, int number, LPARAM argument)
{
    if (const HWND window = editor.textureWindow.window)
        SendMessageA(window, WM_COMMAND, static_cast<WPARAM>(number), argument);
    return CommandOutcome::done;
}

CommandOutcome onSendTarget(Editor& editor, int number, LPARAM)
{
    sendTarget(editor, static_cast<TargetImage>(number - IDM_SEND_MODEL));
    return CommandOutcome::done;
}

/// Save and Save as, of the model or the texture list: what was saved goes to the target as well
/// when the user wants that.
template <CommandOutcome (*save)(Editor&), TargetImage image>
CommandOutcome onSave(Editor& editor, int, LPARAM)
{
    const CommandOutcome outcome = save(editor);
    if (outcome == CommandOutcome::done && editor.resendsOnSave) sendTarget(editor, image);
    return outcome;
}

CommandOutcome onSendOnSave(Editor& editor, int, LPARAM)
{
    editor.resendsOnSave = !editor.resendsOnSave;
    return CommandOutcome::done;
}

CommandOutcome onWithTextures(Editor& editor, int, LPARAM)
{
    editor.listWithModel =
        editor.listWithModel == ListWithModel::yes ? ListWithModel::no : ListWithModel::yes;
    return CommandOutcome::done;
}

CommandOutcome onCloseTextures(Editor& editor, int, LPARAM)
{
    if (const HWND window = editor.textureWindow.window) SendMessageA(window, WM_CLOSE, 0, 0);
    return CommandOutcome::done;
}

CommandOutcome onScroll(Editor& editor, int number, LPARAM)
{
    scrollTextures(editor, static_cast<GridScroll>(number - IDM_TEXTURE_LINE_DOWN));
    return CommandOutcome::done;
}

CommandOutcome onTextureUndo(Editor& editor, int, LPARAM)
{
    SendMessageA(editor.mainWindow, WM_COMMAND, IDM_EDIT_UNDO, 0);
    return CommandOutcome::done;
}

CommandOutcome onDelete(Editor& editor, int, LPARAM)
{
    return deleteCurrentTexture(editor, Word::stepDelete);
}

CommandOutcome onMoveSlots(Editor& editor, int number, LPARAM)
{
    return moveSlots(editor, number == IDM_TEXTURE_INSERT ? SlotMove::insert : SlotMove::remove);
}

CommandOutcome onRecentTextures(Editor& editor, int number, LPARAM)
{
    const std::string path = recentTexturesOf(editor, number); // a copy: opening changes the list
    return path.empty() ? CommandOutcome::abandoned : openTexturePath(editor, path);
}

CommandOutcome onShowObject(Editor& editor, int number, LPARAM)
{
    showSelectedObject(editor,
                       number == IDM_HIERARCHY_SHOW ? Visibility::shown : Visibility::hidden);
    return CommandOutcome::done;
}

constexpr CommandWindow inMain = CommandWindow::main;
constexpr CommandWindow inTextures = CommandWindow::textures;
constexpr CommandWindow inHierarchy = CommandWindow::hierarchy;

// window, first and last number, handler, the model's changed flag, the texture list's
constexpr Command commands[] = {
    {inMain, IDM_FILE_OPEN, IDM_FILE_OPEN, perform<openModelWithDialog>, Flag::clearOnSuccess},
    {inMain, IDM_FILE_EXIT, IDM_FILE_EXIT, onExit},
    {inMain, IDM_FILE_OPEN_PATH, IDM_FILE_OPEN_PATH, openPath<openModelPath>, Flag::clearOnSuccess},
    {inMain, IDM_VIEW_ATTRIBUTES, IDM_VIEW_ATTRIBUTES, perform<toggleAttributeWindow>},
    {inMain, IDM_VIEW_HIERARCHY, IDM_VIEW_HIERARCHY, perform<toggleHierarchyWindow>},
    {inMain, IDM_EDIT_UNDO, IDM_EDIT_UNDO, perform<undo>, Flag::set},
    {inMain, IDM_FILE_SAVE, IDM_FILE_SAVE, onSave<saveModel, TargetImage::model>,
     Flag::clearOnSuccess},
    {inMain, IDM_FILE_SAVE_AS, IDM_FILE_SAVE_AS, onSave<saveModelAs, TargetImage::model>,
     Flag::clearOnSuccess},
    {inMain, IDM_EDIT_PROPERTY, IDM_EDIT_PROPERTY, perform<showPropertyDialog>},
    {inMain, IDM_HELP_CONTENTS, IDM_HELP_CONTENTS, perform<showHelp>},
    {inMain, IDM_HELP_ABOUT, IDM_HELP_ABOUT, perform<showAbout>},
    {inMain, IDM_TEXTURE_OPEN, IDM_TEXTURE_SAVE, onTextures},
    {inMain, IDM_VIEW_TEXTURES, IDM_VIEW_TEXTURES, perform<toggleTextureWindow>},
    {inMain, IDM_TEXTURE_UNDO, IDM_TEXTURE_UNDO, onTextures},
    {inMain, IDM_TEXTURE_COPY, IDM_TEXTURE_BACKSPACE, onTextures},
    {inMain, IDM_OPTIONS_LIGHT, IDM_OPTIONS_LIGHT, perform<showLightDialog>, Flag::set},
    {inMain, IDM_OPTIONS_SCREEN, IDM_OPTIONS_SCREEN, perform<showScreenDialog>, Flag::set},
    {inMain, IDM_CAMERA_FORWARD, IDM_CAMERA_BOTTOM, onFixedView},
    {inMain, IDM_CAMERA_RECALL_1, IDM_CAMERA_RECALL_4, onRecallCamera},
    {inMain, IDM_CAMERA_STORE_1, IDM_CAMERA_STORE_4, onStoreCamera},
    {inMain, IDM_ROTATE_CLOCKWISE, IDM_ROTATE_HALF_TURN, onRotateVertices, Flag::set},
    {inMain, IDM_INVERT_SURFACE, IDM_INVERT_SURFACE, perform<invertPickedSurface>, Flag::set},
    {inMain, IDM_GOURAUD_TABLE, IDM_GOURAUD_TABLE, perform<bakeGouraudTable>, Flag::set},
    {inMain, IDM_SELECT_MODEL, IDM_SELECT_MATERIAL, onSelect},
    {inMain, IDM_TEXTURE_INFORMATION, IDM_TEXTURE_INFORMATION, onTextures},
    {inMain, IDM_SEND_MODEL, IDM_SEND_SCENE, onSendTarget},
    {inMain, IDM_TOOL_ROTATE, IDM_TOOL_SCALE, onTool},
    {inMain, IDM_TOOL_SELECT, IDM_TOOL_MOVE_SLICE, onTool},
    {inMain, IDM_RECENT_MODEL_1, IDM_RECENT_MODEL_4, onRecentModel},
    {inMain, IDM_VIEW_TOOL_BOX, IDM_VIEW_TOOL_BOX, perform<toggleToolBox>},
    {inMain, IDM_EDIT_STEP_BACK, IDM_EDIT_STEP_FORWARD, onStep},
    {inMain, IDM_FILE_IMPORT_AGAIN, IDM_FILE_IMPORT_AGAIN, perform<importAgain>},
    {inMain, IDM_FILE_IMPORT_REPORT, IDM_FILE_IMPORT_REPORT, perform<showImportReport>},
    {inMain, IDM_FILE_EXPORT, IDM_FILE_EXPORT, perform<exportModel>},
    {inMain, IDM_FILE_VERSIONS, IDM_FILE_VERSIONS, perform<openEarlierVersion>},
    {inMain, IDM_FILE_RECOVER, IDM_FILE_RECOVER, perform<recoverDocument>},
    {inMain, IDM_FILE_WATCH, IDM_FILE_WATCH, perform<toggleWatching>},
    {inMain, IDM_FILE_WITH_TEXTURES, IDM_FILE_WITH_TEXTURES, onWithTextures},
    {inMain, IDM_FILE_REREAD, IDM_FILE_REREAD, perform<rereadChanged>},
    {inMain, IDM_SEND_ON_SAVE, IDM_SEND_ON_SAVE, onSendOnSave},
    {inMain, IDM_START_MONITOR, IDM_START_MONITOR, perform<startMonitor>},
    {inMain, IDM_VIEW_BUDGET, IDM_VIEW_BUDGET, perform<toggleBudgetWindow>},
    {inMain, IDM_VIEW_DRAW_ORDER, IDM_VIEW_DRAW_ORDER, perform<toggleDrawOrderWindow>},
    {inMain, IDM_VIEW_FIT, IDM_VIEW_FIT_PICKED, onFrame},
    {inMain, IDM_SELECT_INVERT, IDM_SHOW_HIDDEN, onSelectMore},
    {inMain, IDM_SHOW_MIXED, IDM_SHOW_MIXED, perform<toggleMixedValues>},
    {inMain, IDM_FILE_SAVE_PICTURE, IDM_FILE_SAVE_PICTURE, perform<savePicture>},
    {inMain, IDM_FILE_COPY_PICTURE, IDM_FILE_COPY_PICTURE, perform<copyPicture>},
    {inMain, IDM_VIEW_ZOOM_1, IDM_VIEW_ZOOM_3, onZoom},
    {inTextures, IDM_FILE_OPEN_PATH, IDM_FILE_OPEN_PATH, openPath<openTexturePath>, Flag::keep,
     Flag::clearOnSuccess},
    // What the question about unsaved textures sends; here it means this window's own Save as.
    {inTextures, IDM_FILE_SAVE_AS, IDM_FILE_SAVE_AS, onSave<saveTexturesAs, TargetImage::textures>,
     Flag::keep, Flag::clearOnSuccess},
    {inTextures, IDM_TEXTURE_OPEN, IDM_TEXTURE_OPEN, perform<openTexturesWithDialog>, Flag::keep,
     Flag::clearOnSuccess},
    {inTextures, IDM_TEXTURE_SAVE, IDM_TEXTURE_SAVE, onSave<saveTextures, TargetImage::textures>,
     Flag::keep, Flag::clearOnSuccess},
    {inTextures, IDM_TEXTURE_SAVE_AS, IDM_TEXTURE_SAVE_AS,
     onSave<saveTexturesAs, TargetImage::textures>, Flag::keep, Flag::clearOnSuccess},
    {inTextures, IDM_TEXTURE_CLOSE, IDM_TEXTURE_CLOSE, onCloseTextures},
    {inTextures, IDM_TEXTURE_LINE_DOWN, IDM_TEXTURE_PAGE_UP, onScroll},
    {inTextures, IDM_TEXTURE_UNDO, IDM_TEXTURE_UNDO, onTextureUndo, Flag::keep, Flag::set},
    {inTextures, IDM_TEXTURE_CUT, IDM_TEXTURE_CUT, perform<cutTexture>, Flag::keep, Flag::set},
    {inTextures, IDM_TEXTURE_COPY, IDM_TEXTURE_COPY, perform<copyTexture>, Flag::keep, Flag::set},
    {inTextures, IDM_TEXTURE_PASTE, IDM_TEXTURE_PASTE, perform<pasteTexture>, Flag::keep,
     Flag::set},
    {inTextures, IDM_TEXTURE_DELETE, IDM_TEXTURE_DELETE, onDelete, Flag::keep, Flag::set},
    {inTextures, IDM_TEXTURE_INSERT, IDM_TEXTURE_BACKSPACE, onMoveSlots, Flag::keep, Flag::set},
    {inTextures, IDM_TEXTURE_SCALE, IDM_TEXTURE_SCALE, perform<scaleByDialog>, Flag::keep,
     Flag::set},
    {inTextures, IDM_TEXTURE_FLIP, IDM_TEXTURE_FLIP, perform<flipByDialog>, Flag::keep, Flag::set},
    {inTextures, IDM_TEXTURE_ROTATE, IDM_TEXTURE_ROTATE, perform<turnByDialog>, Flag::keep,
     Flag::set},
    {inTextures, IDM_TEXTURE_EMPTY_CLIPBOARD, IDM_TEXTURE_EMPTY_CLIPBOARD, perform<emptyClipboard>},
    {inTextures, IDM_TEXTURE_IMPORT, IDM_TEXTURE_IMPORT, perform<importTextures>, Flag::keep,
     Flag::setOnSuccess},
    {inTextures, IDM_TEXTURE_EXPORT, IDM_TEXTURE_EXPORT, perform<exportTextures>},
    {inTextures, IDM_TEXTURE_INFORMATION, IDM_TEXTURE_INFORMATION, perform<showTextureInformation>},
    {inTextures, IDM_TEXTURE_SLICE, IDM_TEXTURE_SLICE, perform<sliceCurrentTexture>, Flag::keep,
     Flag::setOnSuccess},
    {inTextures, IDM_TEXTURE_SHOW_SLICED, IDM_TEXTURE_SHOW_SLICED, perform<toggleShowSliced>},
    {inTextures, IDM_RECENT_TEXTURES_1, IDM_RECENT_TEXTURES_4, onRecentTextures, Flag::keep,
     Flag::clearOnSuccess},
    {inTextures, IDM_TEXTURE_DELETE_ALL, IDM_TEXTURE_DELETE_ALL, perform<deleteAllTextures>,
     Flag::keep, Flag::clearOnSuccess},
    {inTextures, IDM_TEXTURE_WATCH, IDM_TEXTURE_WATCH, perform<toggleWatchingPictures>},
    {inHierarchy, IDM_HIERARCHY_RENAME, IDM_HIERARCHY_RENAME, perform<renameSelected>},
    {inHierarchy, IDM_HIERARCHY_CLOSE, IDM_HIERARCHY_CLOSE, perform<toggleHierarchyWindow>},
    {inHierarchy, IDM_HIERARCHY_SHOW, IDM_HIERARCHY_HIDE, onShowObject},
    {inHierarchy, IDM_HIERARCHY_INFORMATION, IDM_HIERARCHY_INFORMATION,
     perform<showObjectInformation>},
    {inHierarchy, IDM_HIERARCHY_PICK, IDM_HIERARCHY_PICK, perform<pickSelectedObject>},
    {inHierarchy, IDM_HIERARCHY_LINK, IDM_HIERARCHY_LINK, perform<toggleTreeLink>},
};

constexpr bool ascending(std::span<const Command> all)
{
    const Command* before = nullptr;
    for (const Command& command : all) {
        if (command.last < command.first) return false;
        if (before && before->window == command.window && command.first <= before->last)
            return false;
        if (before && before->window > command.window) return false;
        before = &command;
    }
    return true;
}

static_assert(ascending(commands), "each command of a window once, in order of its number");
static_assert(static_cast<int>(GridScroll::pageUp) == IDM_TEXTURE_PAGE_UP - IDM_TEXTURE_LINE_DOWN,
              "the steps of scrolling have the order of their commands");
static_assert(static_cast<int>(FixedView::bottom) == IDM_CAMERA_BOTTOM - IDM_CAMERA_FORWARD &&
                  static_cast<int>(FixedView::left) == IDM_CAMERA_LEFT - IDM_CAMERA_FORWARD,
              "the fixed views have the order of their commands");
static_assert(static_cast<int>(CornerTurn::counterClockwise) ==
                  IDM_ROTATE_COUNTERCLOCKWISE - IDM_ROTATE_CLOCKWISE,
              "and so have the turns of corners");

/// Sets or clears one changed flag as the table says.
void keepFlag(Document& document, Flag flag, CommandOutcome outcome, void (*setFlag)(Document&),
              void (*clearFlag)(Document&))
{
    const bool done = outcome == CommandOutcome::done;
    if (flag == Flag::set || (flag == Flag::setOnSuccess && done)) setFlag(document);
    if (flag == Flag::clearOnSuccess && done) clearFlag(document);
}

} // namespace

bool runCommand(Editor& editor, CommandWindow window, int number, LPARAM argument)
{
    const auto* command = std::ranges::find_if(commands, [&](const Command& candidate) {
        return candidate.window == window && candidate.first <= number && number <= candidate.last;
    });
    if (command == std::end(commands)) return false;
    // What was posted before, or comes from another program, arrives while an alert or a dialog is
    // up as well: a second one over it would hide it for good.
    if (!IsWindowEnabled(editor.mainWindow)) return true;
    // Reading again comes by itself, and may have nothing to say in place of what the user reads.
    if (window != CommandWindow::main || number != IDM_FILE_REREAD) editor.statusLine.clear();
    const CommandOutcome outcome = command->handler(editor, number, argument);
    if (!isRunning(editor)) return true; // the command was the last one, or waited for its end
    Document& document = editor.document;
    keepFlag(document, command->model, outcome, markModelChanged, markModelSaved);
    keepFlag(document, command->textures, outcome, markTexturesChanged, markTexturesSaved);
    followDocument(editor);
    refreshStatus(editor);
    refreshMenuState(editor);
    return true;
}

} // namespace facetor
