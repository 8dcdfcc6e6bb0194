#pragma once

#include <cstdint>

namespace facetor {

struct Editor;

/// Lets the user edit an object's translation, rotation and scaling as numbers, and look at the
/// result while the dialog is open. Cancel restores the object exactly. OK marks the model changed
/// when the object is no longer what it was. Needs index < objectCount.
void showObjectDialog(Editor& editor, std::uint32_t index);

} // namespace facetor
