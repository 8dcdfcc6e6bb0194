#pragma once

#include "app/commands_win.h"
#include "texture/texture_edits.h"

#include <windows.h>

namespace facetor {

struct Editor;

/// Runs a command of the texture list window: looks it up in the table, calls its handler and keeps
/// the texture list's changed flag as the table says. Does nothing for a number that the table does
/// not hold. The window need not be open.
void runTextureCommand(Editor& editor, int number, LPARAM argument);

/// Shows the messages of an edit and the list as it now is. `abandoned` when the edit was not
/// carried out.
CommandOutcome finishTextureEdit(Editor& editor, const EditOutcome& outcome);

} // namespace facetor
