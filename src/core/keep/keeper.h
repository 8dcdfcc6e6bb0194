#pragma once

#include "keep/recovery_writer.h"
#include "keep/versions.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace facetor {

/// How often the document's thread calls tickKeeper(), in milliseconds.
inline constexpr std::uint32_t keeperPace = 5000;
/// From the begin of one writing to that of the next, in milliseconds. With the pace and the time
/// that a writing takes, what is in no file is never older than a minute.
inline constexpr std::uint64_t keeperPeriod = 45000;

/// What has a document written to recovery files while it is changed, and knows all that can be
/// recovered. Nothing here waits for the disk unless it says so.
struct Keeper {
    std::string folder;  ///< of the recovery files; empty: there are none
    bool enabled = true; ///< the user's choice
    std::uint64_t period = keeperPeriod;

    RecoverySet live; ///< of the document; held while it is changed
    RecoveryState liveState;
    Revision writtenModel = 0, writtenTextures = 0; ///< what the live set holds; 0: nothing
    /// Document::partlyReadModel and partlyReadTextures of it: what a reading that broke off leaves
    /// has the revisions of what was there before.
    std::string writtenPartOfModel, writtenPartOfTextures;
    std::uint64_t lastBegun = 0; ///< by the clock of tickKeeper(); 0: never
    std::string fault;           ///< why the last writing failed; empty when it did not
    std::string toldFault; ///< what of it the user was told last, also of one between two ticks
    std::unique_ptr<DocumentCopy> spare;

    std::vector<Recoverable> recoverable; ///< by this process, or left behind by others
    bool unsavedOnPurpose = false;        ///< the user wanted to save, and then did not

    RecoveryWriter writer;
    RecoveryWriter laterWriter; ///< of the last recoverable document of this run
    std::string laterState;     ///< and the path of its set's state
};

/// Begins, with what others have left behind. Reads it all: some milliseconds a document.
void startKeeper(Keeper& keeper, const std::string& folder);

/// To be called again and again, with a clock in milliseconds that only goes forward: writes what
/// has changed when it is time, and removes what was written once nothing is changed any more.
void tickKeeper(Keeper& keeper, const Document& document, const View& view, std::uint64_t now);

/// Before a step that could lose something: writes what has changed, whatever the time.
void keepNow(Keeper& keeper, const Document& document, const View& view, std::uint64_t now);

/// Leaves the document among the recoverable ones, as it is. It is written aside; one that cannot
/// be is taken away again, with the cause in keeper.fault. False when that is known at once.
bool keepForLater(Keeper& keeper, const Document& document, const View& view);

/// The same of a copy that was made earlier.
bool keepForLater(Keeper& keeper, std::unique_ptr<DocumentCopy> copy);

/// Waits until what is kept for later is written: keeper.recoverable then has no more than that.
void waitForKept(Keeper& keeper);

/// After a save that put a part of another file in the place of `path`: what is recoverable of that
/// file is in none any more, and stays so beyond this run. Waits for the disk; why a set cannot
/// say so is in keeper.fault.
void noteReplaced(Keeper& keeper, KeptKind kind, const std::string& path);

/// A copy of the document, to be kept in case that what comes goes wrong; none when recovery is
/// off or memory is short.
std::unique_ptr<DocumentCopy> copyForLater(const Keeper& keeper, const Document& document,
                                           const View& view);

/// Makes keeper.recoverable[index] the document, writes it to the live set, and only then lets go
/// of what it came from. Waits for the disk. After waitForKept(), which may change the indices.
Message recover(Keeper& keeper, std::size_t index, Document& document, View& view,
                std::string& reason);

enum class KeeperEnd {
    decided,   ///< the user knows what becomes of changes: no file is left of this document
    undecided, ///< he may not: what is changed is left for the next start
};
/// The end of a run. Waits for the disk. What else is recoverable stays so, but for documents of
/// this run that were not changed. Nothing is kept any more afterwards.
void endKeeper(Keeper& keeper, const Document& document, const View& view, KeeperEnd end);

/// Writes the document as far as that can be done in a process that is about to die by a fault of
/// its own; takes no more than some seconds. Not while a change is under way: then what was written
/// last is what can be recovered.
void keepAtCrash(Keeper& keeper, const Document& document, const View& view);

} // namespace facetor
