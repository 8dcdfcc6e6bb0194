#pragma once

#include "base/file_stamp.h"
#include "state/command.h"
#include "watch/file_watch.h"
#include "watch/reread.h"

#include <span>
#include <string>

namespace facetor {

struct Editor;

// The files of the document that other programs may write. What becomes of a change is decided by
// FileWatch; here it is carried out.

/// Watches the files that the document has now, to be called after each command. Those that are
/// watched already stay as they were read; others are known as they are now.
void followDocument(Editor& editor);

/// The same after a step, which brings files back as they were read before: what has become of them
/// meanwhile is still to be found.
void followStep(Editor& editor);

/// These files of a part have just been written by the editor: they are known as they are now. What
/// another program has done to the others is still to be found.
void noteWritten(Editor& editor, WatchedPart part, std::span<const std::string> written);

/// The texture list's file has just been read, which had that stamp before; those slots are its.
void noteTexturesRead(Editor& editor, const std::string& path, const FileStamp& stamp,
                      const SlotSet& slots);

/// The list with the document's name for it stands in this file; empty: in none.
void noteListFile(Editor& editor, const std::string& path);

/// Takes what the last look at the files saw. True when something is to be done about it now, by
/// the command for that.
bool takeLook(Editor& editor);

/// Has the files looked at again, as long as something has changed that is not done with.
void onWatchTimer(Editor& editor);

/// Reads one part of the document again that another program has changed, after a question where
/// that would lose changes. A read that fails changes nothing and is tried again; the last failure
/// is told in the status bar.
CommandOutcome rereadChanged(Editor& editor);

/// Switches the watching of models and texture lists, and that of pictures, on and off.
void toggleWatching(Editor& editor);
void toggleWatchingPictures(Editor& editor);

} // namespace facetor
