#pragma once

#include "engine/placed_texture.h"

#include <windows.h>

#include <optional>

namespace facetor {

struct Editor;

/// Where the picture lies: until the user moves it in the middle of the view, with the current
/// texture's proportions.
InclusiveRectangle slicePlace(const Editor& editor);

/// The current texture where it lies, while it is to be shown.
std::optional<PlacedTexture> shownSlice(Editor& editor);

/// Shows the picture behind the model or hides it, and enables or disables the tool that moves it;
/// if that was the current one, the tool before it comes back.
void toggleShowSliced(Editor& editor);

// The mouse with the tool that moves the picture; positions in client pixels.

void onSliceDown(Editor& editor, POINT position);
void onSliceDrag(Editor& editor, POINT delta);
/// Moves sides of the picture, given as PlacementSide bits.
void moveSlice(Editor& editor, unsigned sides, POINT delta);
/// Shows the cursor that says what a drag from where it is does. False for the usual one.
bool showSliceCursor(Editor& editor);
/// Draws the outline of the picture with its handles.
void paintSliceOutline(Editor& editor, HDC dc);

} // namespace facetor
