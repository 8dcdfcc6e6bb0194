#pragma once

namespace facetor {

struct Editor;

/// Lets the user choose the light's direction and colour, and the colour of the ambient light.
void showLightDialog(Editor& editor);

} // namespace facetor
