#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace facetor {

/// How names of objects and files go into C source: as they are, which compiles only where they
/// are identifiers, or changed so that it always does.
enum class SourceNames { asTheyAre, identifiers };

/// The name with an underscore for every character that C identifiers do not have. What stands
/// before it in the source, like "point_", makes a digit in front or an empty name harmless.
std::string toIdentifier(std::string_view name, SourceNames names);

/// toIdentifier() of each, different ones for all: a number is appended where two would be the
/// same. Names that need no change keep theirs.
std::vector<std::string> toIdentifiers(std::span<const std::string> given, SourceNames names);

/// The name for a comment: nothing in it ends the comment, begins another or breaks the line.
std::string toComment(std::string_view name, SourceNames names);

} // namespace facetor
