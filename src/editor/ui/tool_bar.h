#pragma once

#include "base/message.h"

#include <windows.h>

#include <commctrl.h>

#include <span>

namespace facetor {

/// One entry of a tool bar. A separator has the command 0.
struct ToolBarEntry {
    int image;   ///< index in the tool bar's bitmap
    int command; ///< what a click sends to the owner
    BYTE state;  ///< TBSTATE_ flags
    BYTE style;  ///< TBSTYLE_ flags
};

/// A bitmap resource with images of the same size side by side; light grey, 192 of each colour, is
/// where the face of the buttons shows.
struct ToolBarImages {
    int resource;
    int size; ///< width and height of one, in pixels
};

/// Creates a visible tool bar with tool tips. `style` adds to the control's style. nullptr when the
/// system refuses.
HWND createToolBar(HWND owner, std::span<const ToolBarEntry> entries, const ToolBarImages& images,
                   DWORD style);

/// Frees the images of a tool bar, which does not do that itself; for its owner's destroy message.
void releaseToolBarImages(HWND toolBar);

/// Enables or greys, presses or releases the button of a command; does nothing without one.
void setButtonState(HWND toolBar, int command, bool enabled, bool pressed);

/// A command's tool tip.
struct ToolTip {
    int command;
    Word text;
};

/// Answers a notification that asks for a tool tip's text. Returns false for every other one, and
/// for a command without a tip.
bool answerToolTip(HWND window, LPARAM notification, std::span<const ToolTip> tips);

} // namespace facetor
