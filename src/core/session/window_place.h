#pragma once

#include "session/settings_text.h"

#include <vector>

namespace facetor {

/// The rectangle around all monitors, and the monitors within it, which need not fill it; without
/// any the rectangle is one.
struct Screen {
    WindowRectangle bounds;
    std::vector<WindowRectangle> monitors;

    Screen(const WindowRectangle& one) : bounds(one) {}
};

/// Where a window goes whose rectangle is remembered from an earlier run, perhaps of another
/// screen: moved into `screen`, and cut to its size if it is larger; where no monitor would show
/// enough of its caption to take hold of it, moved into the nearest one. A rectangle that is empty
/// or turned about gives `otherwise`, unchanged.
WindowRectangle restoredPlace(const WindowRectangle& remembered, const Screen& screen,
                              const WindowRectangle& otherwise);

/// Where the main window goes when nothing is remembered: beside the tool box, with its top on the
/// same line, so that the tool box hides nothing; moved into `work`, the part of the screen that no
/// task bar takes, and cut to its size. `width` and `height` are what it would like.
WindowRectangle firstPlace(std::int32_t width, std::int32_t height, const WindowRectangle& toolBox,
                           const WindowRectangle& work);

/// Where a tool window opens that keeps its `present` size: with its corner where it is remembered,
/// or, when that is empty, to the right of its owner; moved into `screen`.
WindowRectangle toolWindowPlace(const WindowRectangle& remembered, const WindowRectangle& present,
                                const WindowRectangle& owner, const Screen& screen);

} // namespace facetor
