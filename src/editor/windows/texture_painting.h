#pragma once

#include <windows.h>

namespace facetor {

struct Editor;

// What the open texture list window shows. Only cells that need it are painted, and each part of
// the window in one step, so that scrolling does not flicker.

/// Handles the paint message.
void paintTextures(Editor& editor);

/// Handles the erase message: only the tool bar, which has its background from here, is erased.
void eraseBehindToolBar(const Editor& editor, HDC dc);

/// Lets the frame around the current texture run on by a step.
void stepMarquee(Editor& editor);

} // namespace facetor
