#pragma once

#include "state/window_state.h"
#include "texture/texture_rules.h"

#include <windows.h>

#include <cstdint>
#include <optional>

namespace facetor {

struct Editor;

// What the dialogs of the texture list window share.

/// Shows a fault over the dialog.
void showFault(Editor& editor, HWND dialog, const InputFault& fault);

/// Enables or disables a field and its label, which comes before it.
void enableField(HWND dialog, int field, BOOL enabled);

/// The number in a field. When there is none, names the field in a message, gives it the keyboard
/// and returns none; one that is disabled counts as 0 then.
std::optional<std::int32_t> readField(Editor& editor, HWND dialog, int field, Word name);

/// The extent in two fields. None, with a message shown, when they hold what is refused.
std::optional<SlotExtent> readExtent(Editor& editor, HWND dialog, int from, int to);

/// The controls that choose between the current texture and an extent.
struct ExtentControls {
    int current, extent, from, to;
};

/// Shows `choice` in the controls.
void fillExtent(HWND dialog, const ExtentControls& controls, const ExtentChoice& choice);

/// Enables the two fields while the extent is chosen, for a press of any button of the dialog.
void enableExtent(HWND dialog, const ExtentControls& controls);

/// Takes the controls into `choice`. False, with a message shown, when they hold what is refused.
bool takeExtent(Editor& editor, HWND dialog, const ExtentControls& controls, ExtentChoice& choice);

} // namespace facetor
