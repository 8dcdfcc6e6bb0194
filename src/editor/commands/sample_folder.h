#pragma once

namespace facetor {

struct Editor;
struct FileDialog;

/// Lets a dialog for opening files begin in the folder of the samples beside the program, for as
/// long as no file was opened or saved: whoever starts for the first time finds something to open.
/// Without that folder, and afterwards, it begins where the system puts it.
void offerSamples(const Editor& editor, FileDialog& dialog);

} // namespace facetor
