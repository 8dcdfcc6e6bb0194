#pragma once

#include "app/commands_win.h"

#include <string>

namespace facetor {

struct Editor;

/// Makes the lists of image plug-ins from the folder "PlugIn" beside the program, with an alert for
/// each library there that is none. False, after its alert, when there is none at all or memory is
/// short: the program does not run without.
bool scanPlugIns(Editor& editor);

/// Lets the user choose image files, and a plug-in by the dialog's filter, and puts them into the
/// texture list from the current slot on. `abandoned` when none came in.
CommandOutcome importTextures(Editor& editor);

/// Puts an image file into the current slot, through the first plug-in that reads it.
/// `abandoned`, with a message shown, when there is none or it cannot be taken.
CommandOutcome importTexturePath(Editor& editor, const std::string& path);

/// Lets the user choose textures, a file name and a plug-in, and writes each texture as a file with
/// its slot's number in the name. The first that cannot be written ends it, `abandoned`, with a
/// message shown; those before it stay.
CommandOutcome exportTextures(Editor& editor);

} // namespace facetor
