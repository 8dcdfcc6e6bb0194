#pragma once

#include "texture/texture_edits.h"
#include "texture/texture_rules.h"

namespace facetor {

struct Editor;

/// Which slots a transform is for, as its dialog was left.
struct ExtentChoice {
    SlotExtent extent{0, 0};
    bool useExtent = false;
};

/// What the dialogs of the transforms remember from one use to the next.
struct TransformSettings {
    TextureFlip flip;
    ExtentChoice flipExtent;
    TextureTurn turn = TextureTurn::clockwise;
    ExtentChoice turnExtent;
    TextureSize newSize{8, 8}; ///< as last confirmed; the dialog begins with the texture's own
    Sampling sampling = Sampling::nearest;
    ExtentChoice scaleExtent;
};

// The commands that flip, turn and scale the current texture or an extent of textures, each with
// its dialog. An empty current slot is refused before the dialog.

void showFlipDialog(Editor& editor);
void showRotateDialog(Editor& editor);
void showScaleDialog(Editor& editor);

} // namespace facetor
