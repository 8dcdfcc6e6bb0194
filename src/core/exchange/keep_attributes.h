#pragma once

#include "model/model.h"

#include <cstdint>
#include <vector>

namespace facetor {

/// What an import onto an older model found.
struct KeptPolygons {
    std::uint32_t kept = 0, gone = 0;
    struct Polygon {
        std::uint32_t index, imported; ///< in the pools of the result and of the imported model
    };
    std::vector<Polygon> fresh; ///< the new polygons
    std::vector<Polygon> same;  ///< those found again whose corners begin where the import has them
};

/// Makes `result` of a model that was imported anew and of the older one that it comes after. The
/// geometry is the imported one's. Objects are the older model's by name, its own or the one that
/// an OBJ or the cut of long names makes of it, and stay where they are in its hierarchy; those of
/// them that the import has no more polygons for go, unless others hang from them. Polygons of such
/// an object are found again by their corners' positions as drawn, to within a ten thousandth of
/// the model's size and from whichever corner; the rest by their order, where as many are left on
/// both sides. What is found keeps its attribute and Gouraud table, and its corners come in their
/// old order. Needs models that are isSafeToDraw(), and pools of `result`. formatNotSupported, with
/// the counts in `reason`, when there are too many objects then.
Message keepAttributes(Model& result, const Model& old, const Model& imported,
                       KeptPolygons& polygons, Reason& reason);

} // namespace facetor
