#pragma once

#include "base/bytes.h"
#include "base/message.h"
#include "model/model.h"
#include "texture/texture_list.h"

#include <bitset>
#include <cstdint>
#include <string>
#include <vector>

namespace facetor {

/// Names one state of a model or a texture list; each change gives a new one.
using Revision = std::uint64_t;

/// The selection marks of all polygons, by pool index.
using Marks = std::bitset<polygonCapacity>;

/// A model and a texture list as they were before an edit. Its memory is allocated once.
struct Snapshot {
    PageArray<std::byte> pools; ///< of the model, end to end
    std::array<std::string, objectCapacity> names;
    TextureList textures;
};

/// Copies both. outOfUndoMemory when memory is short; the snapshot is then of no use.
Message takeSnapshot(Snapshot& snapshot, const Model& model, const TextureList& textures);

/// Bytes of a pool that a step changed: the exclusive or of before and after stands in
/// Step::changed, in the order of the runs. So one copy leads both ways.
struct PoolRun {
    std::uint32_t pool, offset, length;

    bool operator==(const PoolRun&) const = default;
};

struct ChangedName {
    std::uint32_t object;
    std::string before, after;
};

/// A slot before and after; pixels are shared, not copied.
struct ChangedTexture {
    std::uint32_t slot;
    TextureSlot before, after;
    Texels beforeTexels, afterTexels; ///< what keeps the pixels; nothing for an empty slot
};

/// The file that a model or a texture list came from, with the revision that is in it.
struct FileState {
    std::string path;
    Revision saved = 0;
    std::string importedFrom; ///< of a model: Document::importedFrom
    std::string partlyRead;   ///< Document::partlyReadModel or partlyReadTextures
};

/// What one change did, so that it can be taken back and done again.
struct Step {
    Word name{}; ///< of the change, for the user
    std::vector<PoolRun> runs;
    Bytes changed;
    std::vector<ChangedName> names;
    std::vector<ChangedTexture> textures;
    Marks marksBefore, marksAfter;
    Revision modelBefore = 0, modelAfter = 0;
    Revision texturesBefore = 0, texturesAfter = 0;
    bool opensModel = false, opensTextures = false;
    bool changesSource = false;                             ///< Document::importedFrom
    bool breaksOffModel = false, breaksOffTextures = false; ///< a reading that failed half-way
    /// With the flags: of the side of the step where the document is not.
    FileState otherModelFile, otherTextureFile;

    bool changesModel() const { return !runs.empty() || !names.empty(); }
    bool isEmpty() const { return !changesModel() && textures.empty(); }
};

/// What distinguishes the present state from a snapshot, as a step without name and revisions.
/// Marks alone are no change. outOfUndoMemory when memory is short.
Message findChanges(Step& step, const Snapshot& before, Model& model, const TextureList& textures);

enum class Direction { back, forward };

/// Takes the step back or does it again, marks included. Needs a document as the step left it, but
/// for marks and what is no change (an object's being shown).
void applyStep(const Step& step, Direction direction, Model& model, TextureList& textures);

/// Whether taking `other` back does what `step` did.
bool isInverse(const Step& step, const Step& other);
/// Whether both do the same.
bool isSame(const Step& step, const Step& other);

/// The memory that a step keeps, in bytes; pixels that it shares count as its own.
std::size_t sizeOf(const Step& step);

} // namespace facetor
