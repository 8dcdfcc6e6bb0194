#pragma once

#include <windows.h>

namespace facetor {

struct Editor;

enum class CommandOutcome {
    done,
    abandoned, ///< the user cancelled, or a message has been shown
};

/// Runs a command of the main window: looks it up in the table, calls its handler, keeps the model
/// changed flag as the table says and writes the status texts anew. `argument` is the message's
/// second one; only commands without a menu item take one. False for a number that the table does
/// not hold, which the system's default handling then gets.
bool runCommand(Editor& editor, int number, LPARAM argument);

} // namespace facetor
