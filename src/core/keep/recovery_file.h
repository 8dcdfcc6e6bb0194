#pragma once

#include "base/bytes.h"
#include "base/message.h"
#include "document/document.h"
#include "view/view.h"

#include <cstdint>
#include <span>
#include <string>

namespace facetor {

// The file that a document is recovered from: docs/formats/recovery.md.

/// What it holds beside the model. The texture list lies in a file of its own, which is written
/// only when the list has changed.
struct RecoveryState {
    std::string modelFile, importedFrom, textureFile; ///< as Document has them
    std::string partlyReadModel, partlyReadTextures;
    bool modelChanged = false, texturesChanged = false; ///< what no file of the user's holds
    std::int64_t writtenAt = 0;                         ///< seconds since 1970
    std::uint32_t currentTexture = 0;
    std::uint32_t texturesNumber = 0; ///< in the name of the list's file; 0 for an empty list
    std::uint64_t texturesSize = 0;   ///< of that file, in bytes
    std::uint32_t texturesChecksum = 0;
    View view; ///< cameras, projection and light; neither the background nor what a drag shows
};

/// What stands in a document besides model and textures.
RecoveryState stateOf(const Document& document, const View& view);

/// The whole file, with a checksum behind it.
Bytes writeRecoveryFile(const RecoveryState& state, const Model& model);

/// Reads both. formatNotSupported, with the cause in `reason`, for what is not whole, with the
/// checksum that stands in it, or says what no document can be. Needs the model's pools; what is in
/// them is the file's only when this succeeds. Angles, selection marks and hidden objects, which a
/// model file does not keep, come back as they were; the view where it can be.
Message readRecoveryFile(RecoveryState& state, Model& model, std::span<const std::byte> bytes,
                         std::string& reason);

} // namespace facetor
