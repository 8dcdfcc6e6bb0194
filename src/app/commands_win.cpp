#include "app/commands_win.h"

#include "app/edit_commands_win.h"
#include "app/editor_win.h"
#include "app/help_win.h"
#include "app/hierarchy_window.h"
#include "app/light_dialog.h"
#include "app/main_tool_bar_win.h"
#include "app/main_window.h"
#include "app/menu_state.h"
#include "app/model_commands_win.h"
#include "app/model_view_window.h"
#include "app/property_dialog.h"
#include "app/recent_menu_win.h"
#include "app/screen_dialog.h"
#include "app/send_target_win.h"
#include "app/view_commands_win.h"
#include "attr/attribute_window.h"
#include "resources/resource_ids.h"

#include <algorithm>
#include <iterator>
#include <span>
#include <string>

namespace facetor {

namespace {

/// What a command does to the model changed flag once its handler has returned.
enum class ChangedFlag {
    keep,
    set,            ///< always, also when the user cancelled or there was nothing to do
    clearOnSuccess, ///< the model is now as it stands in its file
};

using CommandHandler = CommandOutcome (*)(Editor& editor, int number, LPARAM argument);

/// A command, or a run of commands that one handler tells apart by their numbers.
struct Command {
    int first, last;
    CommandHandler handler;
    ChangedFlag changed;
};

CommandOutcome onOpen(Editor& editor, int, LPARAM)
{
    return openModelWithDialog(editor);
}

CommandOutcome onSave(Editor& editor, int, LPARAM)
{
    return saveModel(editor);
}

CommandOutcome onSaveAs(Editor& editor, int, LPARAM)
{
    return saveModelAs(editor);
}

CommandOutcome onExit(Editor& editor, int, LPARAM)
{
    SendMessageA(editor.mainWindow, WM_CLOSE, 0, 0);
    return CommandOutcome::done;
}

CommandOutcome onOpenPath(Editor& editor, int, LPARAM argument)
{
    if (!argument) return CommandOutcome::abandoned;
    return openModelPath(editor, reinterpret_cast<const char*>(argument));
}

/// A command that needs nothing but the editor, and whose outcome does not matter.
template <void (*action)(Editor&)> CommandOutcome perform(Editor& editor, int, LPARAM)
{
    action(editor);
    return CommandOutcome::done;
}

CommandOutcome onFixedView(Editor& editor, int number, LPARAM)
{
    showFixedView(editor, static_cast<FixedView>(number - IDM_CAMERA_FORWARD));
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

CommandOutcome onToolBox(Editor& editor, int, LPARAM)
{
    toggleToolBox(editor);
    return CommandOutcome::done;
}

CommandOutcome onSendTarget(Editor& editor, int number, LPARAM)
{
    sendTarget(editor, static_cast<TargetImage>(number - IDM_SEND_MODEL));
    return CommandOutcome::done;
}

constexpr Command mainCommands[] = {
    {IDM_FILE_OPEN, IDM_FILE_OPEN, onOpen, ChangedFlag::clearOnSuccess},
    {IDM_FILE_EXIT, IDM_FILE_EXIT, onExit, ChangedFlag::keep},
    {IDM_FILE_OPEN_PATH, IDM_FILE_OPEN_PATH, onOpenPath, ChangedFlag::clearOnSuccess},
    {IDM_VIEW_ATTRIBUTES, IDM_VIEW_ATTRIBUTES, perform<toggleAttributeWindow>, ChangedFlag::keep},
    {IDM_VIEW_HIERARCHY, IDM_VIEW_HIERARCHY, perform<toggleHierarchyWindow>, ChangedFlag::keep},
    {IDM_EDIT_UNDO, IDM_EDIT_UNDO, perform<undoLastEdit>, ChangedFlag::set},
    {IDM_FILE_SAVE, IDM_FILE_SAVE, onSave, ChangedFlag::clearOnSuccess},
    {IDM_FILE_SAVE_AS, IDM_FILE_SAVE_AS, onSaveAs, ChangedFlag::clearOnSuccess},
    {IDM_EDIT_PROPERTY, IDM_EDIT_PROPERTY, perform<showPropertyDialog>, ChangedFlag::keep},
    {IDM_HELP_CONTENTS, IDM_HELP_CONTENTS, perform<showHelp>, ChangedFlag::keep},
    {IDM_HELP_ABOUT, IDM_HELP_ABOUT, perform<showAbout>, ChangedFlag::keep},
    {IDM_TEXTURE_OPEN, IDM_TEXTURE_SAVE, onTextures, ChangedFlag::keep},
    {IDM_VIEW_TEXTURES, IDM_VIEW_TEXTURES, perform<toggleTextureWindow>, ChangedFlag::keep},
    {IDM_TEXTURE_UNDO, IDM_TEXTURE_UNDO, onTextures, ChangedFlag::keep},
    {IDM_TEXTURE_COPY, IDM_TEXTURE_BACKSPACE, onTextures, ChangedFlag::keep},
    {IDM_OPTIONS_LIGHT, IDM_OPTIONS_LIGHT, perform<showLightDialog>, ChangedFlag::set},
    {IDM_OPTIONS_SCREEN, IDM_OPTIONS_SCREEN, perform<showScreenDialog>, ChangedFlag::set},
    {IDM_CAMERA_FORWARD, IDM_CAMERA_BOTTOM, onFixedView, ChangedFlag::keep},
    {IDM_CAMERA_RECALL_1, IDM_CAMERA_RECALL_4, onRecallCamera, ChangedFlag::keep},
    {IDM_CAMERA_STORE_1, IDM_CAMERA_STORE_4, onStoreCamera, ChangedFlag::keep},
    {IDM_ROTATE_CLOCKWISE, IDM_ROTATE_HALF_TURN, onRotateVertices, ChangedFlag::set},
    {IDM_INVERT_SURFACE, IDM_INVERT_SURFACE, perform<invertPickedSurface>, ChangedFlag::set},
    {IDM_GOURAUD_TABLE, IDM_GOURAUD_TABLE, perform<bakeGouraudTable>, ChangedFlag::set},
    {IDM_SELECT_MODEL, IDM_SELECT_MATERIAL, onSelect, ChangedFlag::keep},
    {IDM_TEXTURE_INFORMATION, IDM_TEXTURE_INFORMATION, onTextures, ChangedFlag::keep},
    {IDM_SEND_MODEL, IDM_SEND_SCENE, onSendTarget, ChangedFlag::keep},
    {IDM_TOOL_ROTATE, IDM_TOOL_SCALE, onTool, ChangedFlag::keep},
    {IDM_TOOL_SELECT, IDM_TOOL_MOVE_SLICE, onTool, ChangedFlag::keep},
    {IDM_RECENT_MODEL_1, IDM_RECENT_MODEL_4, onRecentModel, ChangedFlag::keep},
    {IDM_VIEW_TOOL_BOX, IDM_VIEW_TOOL_BOX, onToolBox, ChangedFlag::keep},
};

constexpr bool ascending(std::span<const Command> commands)
{
    int before = 0;
    for (const Command& command : commands) {
        if (command.first <= before || command.last < command.first) return false;
        before = command.last;
    }
    return true;
}

static_assert(ascending(mainCommands), "each command once, in order of its number");
static_assert(static_cast<int>(FixedView::bottom) == IDM_CAMERA_BOTTOM - IDM_CAMERA_FORWARD &&
                  static_cast<int>(FixedView::left) == IDM_CAMERA_LEFT - IDM_CAMERA_FORWARD,
              "the fixed views have the order of their commands");
static_assert(static_cast<int>(CornerTurn::counterClockwise) ==
                  IDM_ROTATE_COUNTERCLOCKWISE - IDM_ROTATE_CLOCKWISE,
              "and so have the turns of corners");

} // namespace

bool runCommand(Editor& editor, int number, LPARAM argument)
{
    const auto* command = std::ranges::find_if(mainCommands, [&](const Command& candidate) {
        return candidate.first <= number && number <= candidate.last;
    });
    if (command == std::end(mainCommands)) return false;
    const CommandOutcome outcome = command->handler(editor, number, argument);
    if (command->changed == ChangedFlag::set) editor.document.modelChanged = true;
    if (command->changed == ChangedFlag::clearOnSuccess && outcome == CommandOutcome::done)
        editor.document.modelChanged = false;
    refreshStatus(editor);
    refreshMenuState(editor);
    return true;
}

} // namespace facetor
