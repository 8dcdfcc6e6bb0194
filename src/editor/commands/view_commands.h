#pragma once

#include "state/command.h"

#include <cstddef>

namespace facetor {

struct Editor;

/// Brings stored camera `index`, 0 to 3, back; nothing happens when none was stored there.
void recallStoredCamera(Editor& editor, std::size_t index);

/// Keeps the present view as stored camera `index`, 0 to 3, with the sound of a shutter.
void storeCurrentCamera(Editor& editor, std::size_t index);

/// Runs one of the four selection commands; with Ctrl held Select Model and Select Material clear
/// marks instead. Abandoned, with nothing changed and its message shown, when memory is short.
CommandOutcome changeSelection(Editor& editor, int command);

} // namespace facetor
