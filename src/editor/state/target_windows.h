#pragma once

#include "document/document.h"
#include "engine/engine.h"
#include "output/duplicate_textures.h"
#include "output/target_budget.h"
#include "output/target_check.h"
#include "view/draw_order.h"
#include "view/unstable_pairs.h"

#include <windows.h>

#include <cstdint>
#include <optional>
#include <vector>

namespace facetor {

// What the windows hold that show beforehand what the target will. All but their places is gone
// when they close.

/// What a budget depends on.
struct BudgetState {
    Revision model = 0, textures = 0;
    std::size_t steps = 0; ///< done of the history: a file that broke off has no revision
    float scale = 0;       ///< of the model image

    bool operator==(const BudgetState&) const = default;
};

/// The budget window: bars, and the warnings that the target gives none of.
struct BudgetWindow {
    HWND window = nullptr; ///< while it is open
    std::optional<BudgetState> shown;
    bool isChecking = false; ///< the warnings are those of a state before
    std::vector<BudgetPart> parts;
    std::vector<TargetWarning> warnings;
    DuplicateSearch search;
};

/// The drawing order window, and what of it the model view shows.
struct DrawOrderWindow {
    HWND window = nullptr;             ///< while it is open
    Engine engine;                     ///< of its own, so that the view's frame stays as it is
    bool frameIsNew = false;           ///< the view has drawn one since the list was made
    std::vector<OrderedPolygon> order; ///< of the view's frame
    std::uint32_t drawn = 0;           ///< of them the view draws so many; the last one is outlined
    std::uint32_t wanted = 0;          ///< by the user; a frame of fewer draws less for a while
    bool showsAll = true;              ///< and goes on doing so when there are more
    bool isAsking = false;             ///< a click in the view asks about a pixel
    std::optional<ScreenPoint> pixel;  ///< that was asked about
    std::vector<std::uint32_t> writers; ///< of it, as places in the list
    Revision model = 0, textures = 0;   ///< that the writers were looked for with
    std::size_t steps = 0;              ///< done of the history then
    std::vector<UnstablePair> pairs;
    ULONGLONG pairsDue =
        0; ///< when they are looked for, in the system's milliseconds; 0: are found
    ULONGLONG playStart = 0; ///< when Play began, in the system's milliseconds; 0: it does not run
    std::uint32_t playFrom = 0; ///< polygons drawn at that time
};

} // namespace facetor
