#pragma once

#include "state/command.h"

namespace facetor {

struct Editor;

/// Cuts what each picked polygon covers out of the current texture, after questions, as its new
/// texture.
CommandOutcome sliceCurrentTexture(Editor& editor);

} // namespace facetor
