#include "app/commands_win.h"

#include "app/editor_win.h"
#include "app/main_window.h"
#include "app/model_commands_win.h"
#include "app/model_view_window.h"
#include "resources/resource_ids.h"

#include <algorithm>
#include <iterator>
#include <span>

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

CommandOutcome onFixedView(Editor& editor, int number, LPARAM)
{
    showFixedView(editor, static_cast<FixedView>(number - IDM_CAMERA_FORWARD));
    return CommandOutcome::done;
}

constexpr Command mainCommands[] = {
    {IDM_FILE_EXIT, IDM_FILE_EXIT, onExit, ChangedFlag::keep},
    {IDM_FILE_OPEN_PATH, IDM_FILE_OPEN_PATH, onOpenPath, ChangedFlag::clearOnSuccess},
    {IDM_CAMERA_FORWARD, IDM_CAMERA_BOTTOM, onFixedView, ChangedFlag::keep},
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
    return true;
}

} // namespace facetor
