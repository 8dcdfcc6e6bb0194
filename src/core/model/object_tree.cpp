#include "model/object_tree.h"

namespace facetor {

std::uint32_t parentOf(const Model& model, std::uint32_t index)
{
    const std::uint32_t depth = model.objects[index].depth;
    if (depth == 0) return noObject;
    for (std::uint32_t i = index; i-- > 0;)
        if (model.objects[i].depth < depth) return i;
    return noObject;
}

std::uint32_t subtreeEnd(const Model& model, std::uint32_t index)
{
    std::uint32_t end = index + 1;
    while (end < model.objectCount && model.objects[end].depth > model.objects[index].depth) ++end;
    return end;
}

std::uint32_t setVisibility(Model& model, std::uint32_t index, Branch branch, Visibility visibility)
{
    const std::uint32_t end = branch == Branch::collapsed ? subtreeEnd(model, index) : index + 1;
    for (std::uint32_t i = index; i < end; ++i) {
        std::uint32_t& flags = model.objects[i].flags;
        flags = (flags & ~objectShown) | static_cast<std::uint32_t>(visibility);
    }
    return end;
}

} // namespace facetor
