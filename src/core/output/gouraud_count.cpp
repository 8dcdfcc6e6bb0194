#include "output/gouraud_count.h"

namespace facetor {

namespace {

void count(GouraudCounts& counts, const PolygonAttribute& attribute)
{
    if (isLightGouraud(attribute)) ++counts.light;
    if (isTableGouraud(attribute)) ++counts.table;
}

} // namespace

GouraudCounts countGouraud(const Model& model)
{
    GouraudCounts counts{0, 0};
    for (std::uint32_t i = 0; i < model.totalPolygonCount; ++i) count(counts, model.attributes[i]);
    return counts;
}

GouraudCounts countImageGouraud(const Model& model)
{
    GouraudCounts counts{0, 0};
    for (std::uint32_t k = 0; k < model.objectCount; ++k) {
        const Mesh& mesh = model.meshes[model.objects[k].mesh];
        for (std::uint32_t i = 0; i < mesh.polygonCount; ++i)
            count(counts, model.attributes[mesh.attributeTable + i]);
    }
    return counts;
}

} // namespace facetor
