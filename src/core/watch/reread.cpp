#include "watch/reread.h"

#include <algorithm>
#include <string>
#include <unordered_map>

namespace facetor {

void carryMarks(Model& next, const Model& before)
{
    std::unordered_map<std::string, std::uint32_t> byName;
    for (std::uint32_t i = before.objectCount; i-- > 0;) byName[before.names[i]] = i; // the first
    for (std::uint32_t i = 0; i < next.objectCount; ++i) {
        const std::string& name = next.names[i];
        std::uint32_t from = i;
        if (i >= before.objectCount || before.names[i] != name) {
            const auto found = byName.find(name);
            if (found == byName.end()) continue;
            from = found->second;
        }
        Object& object = next.objects[i];
        const Object& was = before.objects[from];
        object.flags = (object.flags & ~objectShown) | (was.flags & objectShown);
        const Mesh &to = next.meshes[object.mesh], &of = before.meshes[was.mesh];
        for (std::uint32_t p = 0; p < std::min(to.polygonCount, of.polygonCount); ++p) {
            std::uint32_t& flags = next.attributes[to.attributeTable + p].flags;
            flags = (flags & ~picked) | (before.attributes[of.attributeTable + p].flags & picked);
        }
    }
}

SlotSet usedSlots(const TextureList& list)
{
    SlotSet used;
    for (std::uint32_t slot = 0; slot < textureSlotCount; ++slot) used[slot] = !list.isEmpty(slot);
    return used;
}

SlotSet replacedSlots(const TextureList& before, const TextureList& now)
{
    SlotSet replaced;
    for (std::uint32_t slot = 0; slot < textureSlotCount; ++slot)
        replaced[slot] = before.slot(slot).pixels != now.slot(slot).pixels;
    return replaced;
}

void mergeReread(TextureList& list, const TextureList& reread, const SlotSet& ofFile)
{
    for (std::uint32_t slot = 0; slot < textureSlotCount; ++slot) {
        const TextureSlot& texture = reread.slot(slot);
        if (!reread.isEmpty(slot))
            list.set(slot, texture.width, texture.height, reread.texels(slot));
        else if (ofFile[slot] && !list.isEmpty(slot))
            list.clear(slot);
    }
}

} // namespace facetor
