#pragma once

namespace facetor {

struct Editor;

/// Opens the window that shows how full the target gets and what it cannot show, where it was last,
/// or closes it. It follows every edit while it is open; the warnings are looked for when there is
/// nothing else to do, a part at a time. Nothing of it is computed while it is closed.
void toggleBudgetWindow(Editor& editor);

} // namespace facetor
