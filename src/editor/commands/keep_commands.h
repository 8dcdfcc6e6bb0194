#pragma once

#include "document/document.h"
#include "keep/recovery_writer.h"
#include "keep/versions.h"
#include "state/command.h"

#include <memory>
#include <string>

namespace facetor {

struct Editor;

/// Keeps the file that a save is about to replace as an earlier version. The save goes on in any
/// case; what it cannot keep is told by tellVersionNotKept().
struct KeptBefore {
    Message message = Message::none;
    std::string reason;
};
KeptBefore keepBeforeSave(const Editor& editor, const std::string& path, KeptKind kind);

/// After the save: says in the status bar that the earlier version is not kept, and why; the first
/// time in a run in an alert, too.
void tellVersionNotKept(Editor& editor, const KeptBefore& kept);

/// Before a step that could lose what is changed: has it written to the recovery file.
void keepBeforeRisk(Editor& editor);

/// Before another document takes the place of this one: leaves it among the recoverable ones when
/// the user wanted to save it and then did not.
void keepUnsaved(Editor& editor);

/// After a reading that broke off half-way and has left a part of `path` in the document: leaves
/// what the document was before, of which `before` is a copy, among the recoverable ones, and has
/// the next save ask.
void noteBrokenOff(Editor& editor, ChangeKind kind, const std::string& path,
                   std::unique_ptr<DocumentCopy> before);

/// Whether a save puts what was only partly read from `source` over `target`, or asks for another
/// name, or is given up: what the user says.
enum class PartlyRead { replace, saveAs, giveUp };
PartlyRead askPartlyRead(Editor& editor, const std::string& source, const std::string& target);

/// After a save to `path`, which takes what was only partly read as well: the next one asks no
/// more, and what is recoverable of the file that stood there stays so.
void notePartSaved(Editor& editor, KeptKind kind, const std::string& path);

/// Lists what can be recovered, if anything, and recovers what the user chooses. `unsaved` when
/// something has been.
CommandOutcome recoverDocument(Editor& editor);

/// Lists earlier versions and opens the one that the user chooses as a new document: without a
/// file, and changed. `unsaved` when it has been opened.
CommandOutcome openEarlierVersion(Editor& editor);

} // namespace facetor
