#pragma once

#include <cstddef>
#include <optional>

namespace facetor {

struct Editor;

/// Lists what can be recovered, each with a picture; what the user deletes there is gone. The place
/// in editor.keeper.recoverable of what is to be recovered; none when the user leaves that for
/// later.
std::optional<std::size_t> askRecovery(Editor& editor);

} // namespace facetor
