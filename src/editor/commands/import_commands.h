#pragma once

#include "state/command.h"

#include <string>

namespace facetor {

struct Editor;

/// Whether a file is opened by importing it: by its name, unless it begins as a model file does.
bool isForeignModel(const std::string& path);

/// Asks how, and makes a model of another program's file the open one, its textures the list;
/// where the list would lose unsaved changes it asks. Nothing of it is saved then: `unsaved`. Or,
/// as the user chose, as importAgain() does. Until all of the file is read, everything is as it
/// was. The message of a failure has been shown when this returns.
CommandOutcome importModelPath(Editor& editor, const std::string& path);

/// Reads the file that the open model was imported from again, with the same options and no
/// question: geometry and new polygons come from it, what was there before keeps its attributes.
/// The view and the marks stay.
CommandOutcome importAgain(Editor& editor);

/// importAgain() of a file that another program has changed: what fails, with the cause in
/// `reason`, is not shown and leaves everything as it is. A file that the import before could read
/// and this one cannot is a failure, too.
enum class Reimport { done, failed, stopped };
Reimport reimportChanged(Editor& editor, std::string& reason);

/// Shows the report on the last import.
void showImportReport(Editor& editor);

/// Writes the model for other programs, as the user chooses: OBJ with its materials and textures,
/// or glTF. Asks before files other than the chosen one are replaced.
CommandOutcome exportModel(Editor& editor);

} // namespace facetor
