#pragma once

namespace facetor {

struct Editor;

/// The command that slices the current texture onto the picked polygons: asks whether to save
/// first, because it cannot be undone, then how to slice. Returns whether textures were made.
bool sliceCurrentTexture(Editor& editor);

} // namespace facetor
