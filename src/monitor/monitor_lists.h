#pragma once

#include "monitor/monitor.h"

namespace facetor {

// What the monitor's window shows: the images that came in, the blocks of the one that is selected,
// and what the command wrote of it.

constexpr int imageList = 1, blockList = 2, outputText = 3; ///< the controls' numbers

/// Makes the lists, the text, the status bar and the preview. False when the system has no room.
bool createChildren(Monitor& monitor);

/// Puts them into the window: the images above; below them the blocks, the command's output and the
/// picture.
void placeChildren(Monitor& monitor);

/// Adds the last of Monitor::entries to the images, and selects it.
void showNewImage(Monitor& monitor);

/// Says what has become of an image. Does nothing for one that was cleared.
void setResult(Monitor& monitor, std::size_t number, const std::string& result);

/// Shows blocks and output of the image that is selected.
void showDetails(const Monitor& monitor);

/// Shows where copies go and what is run in the status bar.
void showStatus(const Monitor& monitor);

/// Forgets the images that are done; those that a command runs on or waits for stay.
void clearList(Monitor& monitor);

} // namespace facetor
