#pragma once

#include "document/document.h"

#include <functional>

namespace facetor {

struct Editor;

/// PickedAfter::clear while Ctrl is held.
PickedAfter pickedAfterByCtrl();

/// Carries out an edit of the model that Undo knows, says so when memory is too short for Undo, and
/// draws the view anew.
void editModel(Editor& editor, Word name, ModelEdit edit,
               const std::function<void(Model&)>& action);

} // namespace facetor
