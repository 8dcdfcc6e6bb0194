#pragma once

#include "session/plug_in_list.h"

#include <optional>

namespace facetor {

struct Editor;

/// Lets the user choose the textures to export, beginning with what was chosen last. None when the
/// user cancels. An extent that makes no sense is refused while the dialog is open.
std::optional<ExportChoice> askExportChoice(Editor& editor);

} // namespace facetor
