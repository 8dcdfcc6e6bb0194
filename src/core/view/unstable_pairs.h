#pragma once

#include "view/draw_order.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace facetor {

/// Another Z-sort rule for a polygon.
struct SortChange {
    std::uint32_t place; ///< of the polygon in the list
    std::uint16_t sort;  ///< the rule, as in the attribute

    bool operator==(const SortChange&) const = default;
};

/// Two polygons of a frame that overlap on the screen and change places in the list when the camera
/// turns a little: the model flickers there.
struct UnstablePair {
    std::uint32_t farther, nearer; ///< places in the list: `farther` is drawn first
    std::uint32_t degrees;         ///< the smallest turn that changes it
    double overlap;                ///< pixels that both cover
    /// The rules that keep the one in front that lies in front where they overlap: of one polygon
    /// when that will do, else of both; none where no rules do.
    std::vector<SortChange> settledBy;
};

/// The largest turn that findUnstablePairs() tries, in degrees; every whole one below as well.
inline constexpr std::uint32_t largestTurnTried = 3;

/// The search ends when it has found so many: nobody reads more.
inline constexpr std::size_t mostUnstablePairs = 2000;

/// The pairs of a frame that change places when the camera turns to one of its four sides about the
/// model's centre by up to largestTurnTried degrees, the largest overlaps first. `order` is the
/// frame's listDrawOrder(); none of one that it is no longer. Takes some twenty milliseconds for a
/// model that fills the pools; of models whose polygons lie one over the other in thousands not all
/// pairs are found. Needs a model that isSafeToDraw().
std::vector<UnstablePair> findUnstablePairs(const View& view, Engine& engine, const Model& model,
                                            ClientSize client,
                                            std::span<const OrderedPolygon> order);

} // namespace facetor
