#pragma once

#include "app/settings_text.h"

namespace facetor {

/// Where a window goes whose rectangle is remembered from an earlier run, perhaps of another
/// screen: moved into `screen`, and cut to its size if it is larger. A rectangle that is empty or
/// turned about gives `otherwise`, unchanged.
WindowRectangle restoredPlace(const WindowRectangle& remembered, const WindowRectangle& screen,
                              const WindowRectangle& otherwise);

} // namespace facetor
