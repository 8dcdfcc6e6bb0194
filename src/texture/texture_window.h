#pragma once

#include "texture/texture_grid.h"

#include <windows.h>

#include <cstdint>
#include <string>

namespace facetor {

struct Editor;

/// The texture list window's class name.
inline constexpr char textureWindowClass[] = "szTexClass";

/// The texture list window: a tool window over the main one that shows the slots as a grid of
/// thumbnails. What it was scrolled to outlives it; where it was is kept in editor.settings.
struct TextureWindow {
    HWND window = nullptr;          ///< while it is open
    HWND toolBar = nullptr;         ///< while it is open
    std::int32_t topSlot = 0;       ///< in the first cell; 0 to 4096, where the grid is empty
    std::uint32_t marqueePhase = 0; ///< counts the steps of the frame around the current texture
    int wheel = 0;                  ///< turns of the mouse wheel that are no whole row yet
};

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

/// Scrolls the window, if it is open, and enables what leads back to the start.
void scrollTextures(Editor& editor, GridScroll step);

/// The grid's area in the window. Needs an open window.
GridArea gridArea(const TextureWindow& textures);

} // namespace facetor
