#pragma once

#include "attr/attribute_fields.h"
#include "base/geometry.h"
#include "engine/engine.h"
#include "session/texture_grid.h"
#include "slice/slice.h"
#include "slice/slice_placement.h"
#include "texture/texture_rules.h"
#include "texture/texture_transforms.h"
#include "view/view_tools.h"

#include <windows.h>

#include <cstdint>
#include <optional>

namespace facetor {

// What windows and dialogs remember, those that are closed included.

/// The tool box: a small window with a button for each view tool.
struct ToolBox {
    HWND window = nullptr;
    HWND toolBar = nullptr;
    ViewTool tool = ViewTool::rotateModel;     ///< what a drag in the model view does
    ViewTool menuTool = ViewTool::rotateModel; ///< chosen last from the menu, which checks it
};

/// The texture list window: a tool window over the main one that shows the slots as a grid of
/// thumbnails. What it was scrolled to outlives it; where it was is kept in editor.settings.
struct TextureWindow {
    HWND window = nullptr;          ///< while it is open
    HWND toolBar = nullptr;         ///< while it is open
    std::int32_t topSlot = 0;       ///< in the first cell; 0 to 4096, where the grid is empty
    std::uint32_t marqueePhase = 0; ///< counts the steps of the frame around the current texture
    int wheel = 0;                  ///< turns of the mouse wheel that are no whole row yet
};

/// The picture that is to be sliced, as it lies behind the model.
struct SliceView {
    SliceSettings settings; ///< as the slice dialog was left
    bool shown = false;
    std::optional<InclusiveRectangle> place; ///< where the user has moved it; none until then
    unsigned dragged = 0;                    ///< sides that the mouse moves, as PlacementSide bits
    ViewTool toolBefore = ViewTool::rotateModel; ///< the tool before Move Sliced Texture
};

/// What the attribute window knows besides the working attribute.
struct AttributeEditing {
    AttributeFields touched = 0; ///< what the user has set since a polygon was picked
    AttributeFields mixed = 0;   ///< shown as not the same in all picked polygons
    bool showsMixed = false;
    bool isRefreshing = false; ///< while fields are set that the user has not touched
    std::optional<std::uint32_t> lastPicked;
    std::optional<WorkingAttribute> copied;
};

/// What the status bar's parts behind the documented ones show.
struct FurtherStatus {
    std::uint32_t pickedPolygons = 0;
    std::uint64_t texelBytes = 0;
    bool modified = false;

    bool operator==(const FurtherStatus&) const = default;
};

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

} // namespace facetor
