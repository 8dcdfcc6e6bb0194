#pragma once

#include "attr/model_snapshot.h"
#include "attr/polygon_edits.h"

namespace facetor {

struct Editor;

// The commands that edit polygons, and Undo. Each keeps what it is about to change in the undo slot
// first, and draws the view anew afterwards. With Ctrl held, what was changed is no longer picked.

/// Keeps what an edit is about to change; when memory is short, says so and clears the slot. The
/// edit goes ahead in either case.
void rememberForUndo(Editor& editor, ModelEdit edit);

/// PickedAfter::clear while Ctrl is held.
PickedAfter pickedAfterByCtrl();

void turnPickedCorners(Editor& editor, CornerTurn turn);
void invertPickedSurface(Editor& editor);
/// Bakes the light of the present view into every polygon with Gouraud shading by light.
void bakeGouraudTable(Editor& editor);

/// Brings back the state before the last edit; done again, the edited one. An edit of textures is
/// not redone.
void undoLastEdit(Editor& editor);

} // namespace facetor
