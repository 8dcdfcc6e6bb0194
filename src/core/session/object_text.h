#pragma once

#include "base/message.h"
#include "model/model.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace facetor {

// An object's placement as text: to be read, and to be edited.

/// The longest name that the rename dialog gives an object, and the longest that the tree shows and
/// lets be edited in place, in bytes.
inline constexpr std::size_t longestObjectName = 127;
inline constexpr std::size_t longestObjectLabel = 64;

/// The titles of translation, rotation and scaling.
inline constexpr std::array<Word, 3> objectGroups{Word::groupTranslation, Word::groupRotation,
                                                  Word::groupScaling};

/// The object's number, translation, rotation in degrees, scaling and matrix, four decimals each,
/// under the texts of objectGroups. Needs index < model.objectCount.
std::string objectInformation(const Model& model, std::uint32_t index,
                              const std::array<std::string, 3>& groupTitles);

/// The fields of the object editor: translation x, y, z, rotation x, y, z in degrees, scaling x, y,
/// z.
inline constexpr std::size_t objectFieldCount = 9;
using ObjectFields = std::array<std::string, objectFieldCount>;
/// The longest text that a field is taken with, in bytes.
inline constexpr std::size_t longestObjectField = 15;

/// Three decimals each.
ObjectFields formatObjectFields(const Object& object);

/// Takes translation, rotation and scaling from the fields. When one is too long, no number or an
/// angle that cannot be held, the object stays as it is and the index of the first such field is
/// returned. What a field does not show is lost: rotations are cut to whole angle units.
std::optional<std::size_t> parseObjectFields(Object& object, const ObjectFields& fields);

/// The title of the group of three that a field belongs to. Needs field < objectFieldCount.
Word objectFieldGroup(std::size_t field);

} // namespace facetor
