#pragma once

#include "state/command.h"

#include <string>

namespace facetor {

struct Editor;

// The File menu of the texture list window. None of them needs the window to be open.

/// Asks about a changed texture list, then reads a file into it that the user chooses: slots that
/// the file does not name keep what they hold. A read that fails is not reported; what it left in
/// the list is shown, and the file is among the recent ones all the same. `abandoned` for it, and
/// when the user cancels or chooses the form that is only written.
CommandOutcome openTexturesWithDialog(Editor& editor);

/// The same with a path. A file that is no texture list is imported as an image, into the current
/// slot; that is `abandoned` as well, and leaves the list changed.
CommandOutcome openTexturePath(Editor& editor, const std::string& path);

/// Where the user wants it: opens the texture list that lies beside a model under its name, in
/// place of the one that is open, about which it asks when it is changed.
void openTexturesOf(Editor& editor, const std::string& modelFile);

/// Saves the list under its name with the extension ".mxt"; one without a file as Save as does. The
/// message of a failure has been shown when this returns.
CommandOutcome saveTextures(Editor& editor);

/// Saves the list under a name that the user chooses, as a texture list file or as C source. Either
/// way the list then goes by that name, also in the window's title, and counts as unchanged.
CommandOutcome saveTexturesAs(Editor& editor);

} // namespace facetor
