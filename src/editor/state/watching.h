#pragma once

#include "document/step.h"
#include "exchange/foreign_file.h"
#include "ui/file_looker.h"
#include "watch/file_watch.h"
#include "watch/picture_links.h"
#include "watch/reread.h"

#include <map>
#include <string>
#include <vector>

namespace facetor {

/// The main window's: the files have been looked at. No arguments.
inline constexpr UINT messageFilesLooked = WM_APP + 1;
/// The main window's timer for the next look.
inline constexpr UINT_PTR fileWatchTimer = 2;

/// What the editor knows of files that other programs may write.
struct Watching {
    bool files = false, pictures = false; ///< the user's choices
    FileWatch watch;
    FileLooker looker;
    std::vector<std::string> looked; ///< the paths that it looks at
    PictureLinks links;              ///< of the slots that came from images
    std::string picturesPath;        ///< where they are kept between runs; empty: they are not
    /// What holds the list that is named by a file: by Document::textureFile, where it was read or
    /// saved. Save keeps to the extension of lists, and C source holds none.
    std::map<std::string, std::string> listFiles;
    SlotSet slotsOfFile;         ///< what the texture list's file held when it was read or written
    Revision importedModel = 0;  ///< the model as the last import left it; 0: there was none
    ImportedSlots importedSlots; ///< what imports have put into the texture list
    std::vector<std::string> fileNotes; ///< what that import could not read of the files it names
};

} // namespace facetor
