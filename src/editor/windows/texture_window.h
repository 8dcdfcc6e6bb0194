#pragma once

#include "session/texture_grid.h"

#include <windows.h>

#include <cstdint>
#include <string>

namespace facetor {

struct Editor;
struct TextureWindow;

/// The texture list window's class name.
inline constexpr char textureWindowClass[] = "szTexClass";

/// Registers the window's class; false when the system refuses it.
bool registerTextureWindow(const Editor& editor);

/// Opens the texture list window where it was last, or closes it.
void toggleTextureWindow(Editor& editor);

/// Shows as the window's title, if it is open, the file that the list was last saved as; "Texture
/// List" for an empty name, as whenever it is opened.
void showTextureTitle(const Editor& editor, const std::string& file);

/// Shows the textures anew, if the window is open.
void redrawTextures(Editor& editor);

/// Makes a slot the current texture: the window's, the attribute window's and that of the view.
/// Needs slot < textureSlotCount.
void chooseTexture(Editor& editor, std::uint32_t slot);

/// The same, and scrolls the window, if it is open, until the slot is in sight.
void showTexture(Editor& editor, std::uint32_t slot);

/// Scrolls the window, if it is open, and enables what leads back to the start.
void scrollTextures(Editor& editor, GridScroll step);

/// The grid's area in the window. Needs an open window.
GridArea gridArea(const TextureWindow& textures);

} // namespace facetor
