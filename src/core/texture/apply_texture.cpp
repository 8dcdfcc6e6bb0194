#include "texture/apply_texture.h"

#include <span>

namespace facetor {

void applyTextureToPicked(Model& model, std::uint16_t slot, const TextureApplication& application)
{
    const std::uint32_t flips = (application.flipHorizontal ? flipHorizontal : 0u) |
                                (application.flipVertical ? flipVertical : 0u);
    for (PolygonAttribute& attribute :
         std::span(model.attributes.data(), model.totalPolygonCount)) {
        if ((attribute.flags & picked) == 0) continue;
        attribute.flags &= ~std::uint32_t{flipHorizontal | flipVertical | textureMap};
        attribute.flags |= flips;
        if (!application.flipsOnly) {
            attribute.texture = slot;
            attribute.flags |= textureMap;
        }
        if (application.after == PickedAfter::clear) attribute.flags &= ~std::uint32_t{picked};
    }
}

} // namespace facetor
