#pragma once

#include "engine/engine.h"
#include "model/model.h"
#include "view/selection.h"

#include <cstdint>

namespace facetor {

// Selection commands by what polygons have in common and by what they touch, and polygons out of
// sight. Those that are hidden keep their marks, whatever is asked for. Each needs a model that
// isSafeToDraw().

/// Marks what is not marked, and the other way round.
void invertSelection(Model& model, const HiddenPolygons& hidden);

/// Marks every polygon that touches a marked one: a corner of both lies in the same place of the
/// same object.
void growSelection(Model& model, const HiddenPolygons& hidden);

/// Unmarks every polygon that touches one that is not marked. A hidden one does not count.
void shrinkSelection(Model& model, const HiddenPolygons& hidden);

/// Marks or unmarks all polygons that are joined to a marked one, directly or by others.
void selectConnected(Model& model, const HiddenPolygons& hidden, Mark mark);

/// The same of what is joined to one polygon, marked or not. Needs polygon <
/// model.totalPolygonCount.
void selectConnectedTo(Model& model, const HiddenPolygons& hidden, std::uint32_t polygon,
                       Mark mark);

/// What polygons can have in common. Bit 15 of a colour does not count.
enum class Likeness {
    colour,
    texture,   ///< of polygons with a texture
    attribute, ///< all that the console draws the polygon by
};

/// Marks or unmarks every polygon that has the same as a marked one.
void selectLike(Model& model, const HiddenPolygons& hidden, Likeness likeness, Mark mark);

/// Marks or unmarks the polygons of objects `first` to `end` - 1. Needs end <= model.objectCount.
void selectObjects(Model& model, const HiddenPolygons& hidden, std::uint32_t first,
                   std::uint32_t end, Mark mark);

/// The object that a polygon belongs to. Needs polygon < model.totalPolygonCount.
std::uint32_t objectOf(const Model& model, std::uint32_t polygon);

/// Takes the marked polygons out of sight and unmarks them.
void hidePicked(Model& model, HiddenPolygons& hidden);

/// Takes the marks of hidden polygons away, after what marks without asking what is in sight.
void dropHidden(Model& model, const HiddenPolygons& hidden);

/// Brings all hidden polygons back, marked.
void showHidden(Model& model, HiddenPolygons& hidden);

} // namespace facetor
