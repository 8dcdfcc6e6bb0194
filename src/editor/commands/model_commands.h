#pragma once

#include "base/message.h"
#include "state/command.h"

#include <string>

namespace facetor {

struct Editor;

/// Asks what becomes of a changed model before `reason` ("opening new file" or "ending"). Yes runs
/// Save as, whatever comes of it; Cancel means stay. Goes on without a question when the model has
/// not been changed.
Decision askSaveModel(Editor& editor, Word reason);

/// The same question about the texture list; Yes runs its Save as.
Decision askSaveTextures(Editor& editor, Word reason);

/// Asks about a changed model, then opens the model file. The message of a failure has been shown
/// when this returns. A file that is no model leaves the model alone; one that is broken further
/// inside leaves what could be read, under the old title.
CommandOutcome openModelPath(Editor& editor, const std::string& path);

/// The same with a model that the user chooses in a file dialog.
CommandOutcome openModelWithDialog(Editor& editor);

/// Saves the model under its name with the extension ".mx3"; one without a file as Save as does.
CommandOutcome saveModel(Editor& editor);

/// Saves the model under a name that the user chooses, as a model file or as C source. Either way
/// the model then goes by that name with ".mx3".
CommandOutcome saveModelAs(Editor& editor);

/// Opens a file that was dropped or named on the command line: a texture list by what the file
/// begins with, anything else as a model, through its command.
void openAnyPath(Editor& editor, const std::string& path);

} // namespace facetor
