#pragma once

#include "state/command.h"

namespace facetor {

/// Runs a command: looks its window and number up in the one table, calls its handler, keeps the
/// changed flags as the table says and brings the menus and the status texts up to date. The
/// windows need not be open, but for what shows them. Nothing is done while an alert or a dialog
/// waits for its answer. False for a command that the table does not have.
bool runCommand(Editor& editor, CommandWindow window, int number, LPARAM argument);

} // namespace facetor
