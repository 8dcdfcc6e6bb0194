#pragma once

#include "engine/engine.h"
#include "view/view.h"

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace facetor {

/// One polygon of a frame's sorted list.
struct OrderedPolygon {
    std::uint32_t object;    ///< that shows it, maybe with the mesh of another one
    std::uint32_t polygon;   ///< index within the object
    std::uint32_t attribute; ///< pool index of its attribute
    std::uint32_t number;    ///< among the polygons of all shown objects, see FrameObjects
    std::uint16_t sort;      ///< the rule that gave its depth, as in the attribute
    float depth;             ///< z of the sort point less the focal length; the larger, the farther
    ScreenQuad point;        ///< the corners on the screen
};

/// The list of a frame that was listed and sorted, far to near.
std::vector<OrderedPolygon> orderedPolygons(const Engine& engine, const Model& model);

/// The polygons of a view's frame far to near, in the order in which it draws them. Needs a model
/// that isSafeToDraw().
std::vector<OrderedPolygon> listDrawOrder(const View& view, Engine& engine, const Model& model,
                                          ClientSize client);

/// Whether two frames draw the same polygons at the same places and depths in the same order.
bool isSameOrder(std::span<const OrderedPolygon> a, std::span<const OrderedPolygon> b);

/// The place of the first marked polygon from place `from` on, else of the first one of all; none
/// when the frame draws no marked one.
std::optional<std::uint32_t> findPicked(std::span<const OrderedPolygon> order, const Model& model,
                                        std::size_t from);

/// The polygons that write a pixel of such a frame, as places in the list. Uses the surface, whose
/// contents are lost.
std::vector<std::uint32_t> findWriters(const View& view, Engine& engine, const Model& model,
                                       ClientSize client, ScreenPoint pixel);

} // namespace facetor
