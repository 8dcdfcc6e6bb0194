#pragma once

#include "base/message.h"

#include <windows.h>

#include <optional>
#include <string>

namespace facetor {

struct Editor;

/// Shows as the main window's title the program's title, " - " and the name of the model's file.
void showTitle(Editor& editor);

/// The title of a window beside the main one: the program's title, " - " and a catalogue text.
void setWindowTitle(const Editor& editor, HWND window, Word word);

/// As the title shows it: the path of the model's file; for a model without one the name of the
/// file that it was imported from, or "Untitled".
std::string shownModelFile(const Editor& editor);

/// Folder and name, without an extension, under which an imported model without a file is offered
/// to be saved; none for every other model.
std::optional<std::string> importedName(const Editor& editor);

} // namespace facetor
