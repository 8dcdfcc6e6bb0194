#pragma once

#include "attr/polygon_edits.h"
#include "document/document.h"
#include "state/command.h"

namespace facetor {

struct Editor;

// The commands that edit polygons, Undo, and the steps of the history. Each draws the view anew
// afterwards. With Ctrl held, what was changed is no longer picked.

void turnPickedCorners(Editor& editor, CornerTurn turn);
void invertPickedSurface(Editor& editor);
/// Bakes the light of the present view into every polygon with Gouraud shading by light.
void bakeGouraudTable(Editor& editor);

/// Brings back the state before the last edit; done again, the edited one. An edit of textures is
/// not redone.
void undo(Editor& editor);

/// Takes back a step of the history or does it again, whatever it was; nothing at its end.
void step(Editor& editor, Direction direction);

} // namespace facetor
