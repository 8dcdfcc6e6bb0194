#pragma once

#include "state/command.h"

namespace facetor {

struct Editor;

/// The target images, in the order of their commands.
enum class TargetImage { model, textures, scene };

/// How long the monitor program may take for its answer, in milliseconds. One that takes longer
/// counts as missing, so that it does not stop the editor for good.
inline constexpr unsigned monitorPatience = 5000;

/// Asks first when the image would overwrite the target's memory, and does nothing unless the
/// answer is Yes. Writes a target image into the shared folder and hands its path to the monitor
/// program. Every failure to write shows message 17; a monitor that is missing, refuses or does not
/// answer in time shows message 38 with its title, the file having been written.
void sendTarget(Editor& editor, TargetImage image);

/// Starts the monitor program of our own, FacetorMonitor.exe beside this program; message 38 with
/// its name when it is not there. One that runs comes to the front.
CommandOutcome startMonitor(Editor& editor);

} // namespace facetor
