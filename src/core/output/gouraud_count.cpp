#include "output/gouraud_count.h"

namespace facetor {

GouraudCounts countGouraud(const Model& model)
{
    GouraudCounts counts{0, 0};
    for (std::uint32_t i = 0; i < model.totalPolygonCount; ++i) {
        if (isLightGouraud(model.attributes[i])) ++counts.light;
        if (isTableGouraud(model.attributes[i])) ++counts.table;
    }
    return counts;
}

} // namespace facetor
