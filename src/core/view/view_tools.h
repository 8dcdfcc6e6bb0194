#pragma once

#include "engine/engine.h"
#include "view/view.h"

#include <cstdint>

namespace facetor {

/// What a left-button drag in the model view does.
enum class ViewTool { rotateModel, translateModel, scaleModel, selectPolygons, moveSlicedTexture };

/// One mouse move of a drag, in client pixels.
struct ToolMove {
    std::int32_t dx, dy;
    ScreenPoint cursor; ///< where the mouse is now
    bool shift;
};

/// Changes the view matrix by one mouse move of the tool; tools that do not move the model, and a
/// move by nothing, change nothing. All of them act in the frame of the model:
/// - rotating turns about an axis across the move by as many degrees as the mouse moved pixels, or
///   with Shift about the line of sight, the way the mouse goes around the model's origin;
/// - translating goes ten view units the way the mouse moved, however far that was; with Shift,
///   up and down move along the line of sight;
/// - scaling is by 0.9 for a move left or up, whichever was longer, else by 1.1.
void applyViewTool(View& view, Engine& engine, ViewTool tool, const ToolMove& move);

} // namespace facetor
