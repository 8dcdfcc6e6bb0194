#pragma once

namespace facetor {

struct Editor;

/// Opens the help beside the program: the help file in the system's help viewer, or the same as a
/// page in the browser; says so when neither is there.
void showHelp(Editor& editor);

/// Shows what the program's version resource says about it.
void showAbout(Editor& editor);

} // namespace facetor
