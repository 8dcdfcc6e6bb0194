#pragma once

#include "base/file_lock.h"
#include "keep/recovery_file.h"

#include <optional>
#include <string>
#include <vector>

namespace facetor {

// Where documents are recovered from: a folder with a set of files for each of them. While a
// process holds a set's lock, the set is its own; the system gives the lock free when the process
// ends, and what a process leaves behind is found by the next one that looks.

/// One document's files: NAME.recovery, NAME-NUMBER.mxt of its texture list and NAME.lock. Its
/// name is drawn by lot.
class RecoverySet {
public:
    /// Makes a set of a new name in the folder, which is made as well. False, with the cause in
    /// `reason`, when it cannot be.
    [[nodiscard]] bool create(const std::string& folder, std::string& reason);
    /// Takes a set that no process holds. False when one does.
    [[nodiscard]] bool claim(const std::string& folder, const std::string& name);
    bool isHeld() const { return lock_.isHeld(); }
    /// The same files without the lock: for who writes them while the set is held here.
    RecoverySet withoutLock() const;

    std::string statePath() const;
    std::string texturesPath(std::uint32_t number) const;

    /// Removes the set's files and gives it up.
    void remove();
    /// Gives it up as it is: to be found by the next process.
    void leave() { lock_.release(); }
    /// Removes its texture lists but for the one of that number.
    void removeOtherTextures(std::uint32_t number) const;

private:
    std::string folder_, name_;
    FileLock lock_;
};

/// Writes one state of a document into its set: the texture list under its number unless
/// `texturesChecksum` says that it is there, then, which makes the whole of it the one that counts,
/// the model and the rest. Fills in what the state says of the list's file. recoveryNotWritten,
/// with the cause in `reason`: what was written before stands.
Message writeRecovery(const RecoverySet& set, RecoveryState& state, const Model& model,
                      const TextureList& textures, bool texturesAreThere, std::string& reason);

/// A document that can be recovered.
struct Recoverable {
    RecoverySet set;
    RecoveryState state;          ///< of a damaged one, what can be told
    std::uint64_t size = 0;       ///< of its files, in bytes
    bool damaged = false;         ///< the model cannot be read
    bool texturesDamaged = false; ///< the list cannot, or is missing
    std::string reason;           ///< why
};

/// Takes the sets that no process holds, those written last first. Each is read and checked.
std::vector<Recoverable> findRecoverable(const std::string& folder);

/// Reads a recoverable document. Needs pools and slots, and one that is not `damaged`; with
/// `texturesDamaged` the list has what could be read of it.
Message readRecoverable(const Recoverable& recoverable, RecoveryState& state, Model& model,
                        TextureList& textures, std::string& reason);

/// Makes a set say the same of what is changed as `state` does; the rest of it stays.
/// recoveryNotWritten, with the cause in `reason`: what was written before stands.
Message writeChangedFlags(const Recoverable& recoverable, std::string& reason);

/// Makes the document what was kept, as one change that can be stepped back over: under its own
/// paths, and changed where it was. The view becomes the kept one; its matrix is the engine's
/// business.
void takeRecovered(Document& document, View& view, const RecoveryState& state, const Model& model,
                   const TextureList& textures);

} // namespace facetor
