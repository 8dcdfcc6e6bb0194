#include "output/target_budget.h"

#include "output/gouraud_count.h"
#include "output/target_check.h"
#include "output/target_image.h"
#include "output/target_layout.h"

namespace facetor {

TargetBudget budgetOf(const Model& model, float scale)
{
    const GouraudCounts gouraud = countGouraud(model);
    TargetBudget budget{
        {{"objects", Word::objects, model.objectCount, objectCapacity},
         {"vertices", Word::vertices, model.totalVertexCount, vertexCapacity},
         {"polygons", Word::polygons, model.totalPolygonCount, polygonCapacity},
         {"gouraud", Word::tabGouraud, gouraud.light + gouraud.table, targetGouraudLimit}},
        {}};
    if (!findOverrun(model) && findBeyondFixed(model, scale).empty())
        budget.imageBytes = modelImageSize(model);
    return budget;
}

TargetBudget budgetOf(const TextureList& list)
{
    TargetBudget budget{{{"textures", Word::reportTextures, list.usedCount(), targetTextureLimit},
                         {"textureBytes", Word::budgetTexels, texelBytes(list), targetTexelBytes}},
                        {}};
    if (list.usedCount() > 0 && !findRefusal(list)) budget.imageBytes = textureImageSize(list);
    return budget;
}

} // namespace facetor
