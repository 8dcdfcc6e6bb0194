#pragma once

namespace facetor {

struct Editor;

/// Lets the user choose projection and view angle.
void showScreenDialog(Editor& editor);

} // namespace facetor
