#pragma once

#include "exchange/model_import.h"
#include "exchange/scene.h"

#include <nlohmann/json_fwd.hpp>

namespace facetor {

// What a glb of Facetor's own holds beside what others see: docs/formats/glb.md.

inline constexpr std::uint32_t ownModelVersion = 1;

/// A number for all that other programs see of a glb: its JSON but for the root's extras, and its
/// binary chunk. It tells a file that another program has changed.
std::uint32_t glbChecksum(const nlohmann::json& json, std::span<const std::byte> binary);

/// Makes the model of it, and the list where `textures` stands for one, whatever the limits of
/// `options` are; only its scale counts. formatNotSupported, with the fault in `reason`, when it is
/// damaged; the model then is as it was.
Message readOwnModel(Model& model, TextureList* textures, const OwnModel& own,
                     const ImportOptions& options, ImportReport& report, Reason& reason);

} // namespace facetor
