#pragma once

#include "state/command.h"

namespace facetor {

/// Saves what the view shows, without rubber band and outlines, as a PNG file, with or without its
/// background as the user chooses by the kind of file.
CommandOutcome savePicture(Editor& editor);

/// Puts the same, with its background, on the clipboard.
CommandOutcome copyPicture(Editor& editor);

} // namespace facetor
