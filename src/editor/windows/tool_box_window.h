#pragma once

#include "session/settings_text.h"
#include "view/view_tools.h"

#include <windows.h>

namespace facetor {

struct Editor;

/// The tool box's class name.
inline constexpr char toolBoxClass[] = "szToolClass";

bool registerToolBox(const Editor& editor);

/// Creates the tool box, not yet shown, with its top-left corner at that of `place`. False when the
/// system refuses.
bool createToolBox(Editor& editor, const WindowRectangle& place);

/// Where the tool box goes when no place is remembered.
inline constexpr WindowRectangle toolBoxStartPlace{64, 64, 132, 178};

/// Makes a tool current that was chosen from the menu.
void chooseToolFromMenu(Editor& editor, ViewTool tool);

void showToolBox(Editor& editor, bool shown);
/// Shows the tool box, or hides it if it is visible.
void toggleToolBox(Editor& editor);

} // namespace facetor
