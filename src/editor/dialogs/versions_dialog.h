#pragma once

#include "keep/versions.h"

#include <optional>

namespace facetor {

struct Editor;

/// Lists the earlier versions that are kept of a document, at first of the open ones, each with a
/// picture, and lets the user say whether any are kept at all. The version that is to be opened;
/// none when the user closes the list.
std::optional<Version> askVersion(Editor& editor);

} // namespace facetor
