#include "output/target_budget.h"

#include "output/attribute_packing.h"
#include "output/gouraud_count.h"
#include "output/target_check.h"
#include "output/target_image.h"
#include "output/target_layout.h"

#include <algorithm>

namespace facetor {

namespace {

// The images that hold as much as fits, in bytes: every pool full, each vertex with a normal, as
// many Gouraud tables, textures and texels as there may be.
constexpr std::uint64_t largestModelImage =
    4 * blockHeadSize + 4 + objectCapacity * (matrixSize + objectSize + dataHeaderSize) +
    vertexCapacity * 2 * pointSize +
    polygonCapacity * (polygonSize + std::uint32_t{packedAttributeSize}) +
    targetGouraudLimit * gouraudSize;
constexpr std::uint64_t largestTextureImage =
    2 * blockHeadSize + targetTextureLimit * textureEntrySize + targetTexelBytes;

std::vector<BudgetPart> partsOf(const Model& model)
{
    const GouraudCounts gouraud = countImageGouraud(model);
    return {{"objects", Word::objects, model.objectCount, objectCapacity},
            {"vertices", Word::vertices, model.totalVertexCount, vertexCapacity},
            {"polygons", Word::polygons, model.totalPolygonCount, polygonCapacity},
            {"gouraud", Word::tabGouraud, gouraud.light + gouraud.table, targetGouraudLimit}};
}

std::vector<BudgetPart> partsOf(const TextureList& list)
{
    return {{"textures", Word::reportTextures, list.usedCount(), targetTextureLimit},
            {"textureBytes", Word::budgetTexels, texelBytes(list), targetTexelBytes}};
}

} // namespace

TargetBudget budgetOf(const Model& model, float scale)
{
    TargetBudget budget{partsOf(model), {}};
    if (!findOverrun(model) && findBeyondFixed(model, scale).empty())
        budget.imageBytes = modelImageSize(model);
    return budget;
}

TargetBudget budgetOf(const TextureList& list)
{
    TargetBudget budget{partsOf(list), {}};
    if (list.usedCount() > 0 && !findRefusal(list)) budget.imageBytes = textureImageSize(list);
    return budget;
}

std::vector<BudgetPart> budgetParts(const Model& model, const TextureList& list)
{
    std::vector<BudgetPart> parts = partsOf(model);
    for (const BudgetPart& part : partsOf(list)) parts.push_back(part);
    parts.push_back(
        {"modelImage", Word::budgetModelImage, modelImageSize(model), largestModelImage});
    parts.push_back(
        {"textureImage", Word::budgetTextureImage, textureImageSize(list), largestTextureImage});
    return parts;
}

double shareOf(const BudgetPart& part)
{
    return std::min(1.0, static_cast<double>(part.used) / static_cast<double>(part.limit));
}

} // namespace facetor
