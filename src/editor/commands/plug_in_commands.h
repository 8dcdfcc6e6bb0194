#pragma once

#include "state/command.h"
#include "texture/image_import.h"

#include <string>

namespace facetor {

struct Editor;

/// Makes the lists of image plug-ins from the folder "PlugIn" beside the program, with an alert for
/// each library there that is none. False, after its alert, when there is no image plug-in at all,
/// whatever else is there, or memory is short: the program does not run without.
bool scanPlugIns(Editor& editor);

/// Lets the user choose image files, and a plug-in by the dialog's filter, and puts them into the
/// texture list from the current slot on, with a message for each that cannot be taken. `abandoned`
/// when there was nothing to choose or nothing was chosen.
CommandOutcome importTextures(Editor& editor);

/// Puts an image file into the current slot, through the first plug-in that reads it.
/// `abandoned`, with a message shown, when there is none or it cannot be taken.
CommandOutcome importTexturePath(Editor& editor, const std::string& path);

/// An image file as a texture, through the plug-in of that name.
ImportedImage readPicture(Editor& editor, const std::string& plugIn, const std::string& path);

/// Lets the user choose textures, a file name and a plug-in, and writes each texture as a file with
/// its slot's number in the name, with a message for each that cannot be written. `abandoned` when
/// there was nothing to choose or nothing was chosen.
CommandOutcome exportTextures(Editor& editor);

} // namespace facetor
