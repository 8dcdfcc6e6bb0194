#include "commands/sample_folder.h"

#include "state/editor.h"
#include "ui/window_data.h"

namespace facetor {

void offerSamples(const Editor& editor, FileDialog& dialog)
{
    dialog.folder.clear();
    if (!editor.recentModels.empty() || !editor.recentTextures.empty()) return;
    const std::string program = programFolder(editor.mainWindow);
    if (program.empty()) return; // "\\Samples" alone would be that of the drive
    const std::string samples = program + "\\Samples";
    const DWORD attributes = GetFileAttributesA(samples.c_str());
    if (attributes != INVALID_FILE_ATTRIBUTES && attributes & FILE_ATTRIBUTE_DIRECTORY)
        dialog.folder = samples;
}

} // namespace facetor
