#pragma once

namespace facetor {

struct Editor;

/// Lets the user choose the display colours, the way colours are picked, and how much of the model
/// is drawn while the view is being dragged. Opens on the page that was shown last.
void showPropertyDialog(Editor& editor);

} // namespace facetor
