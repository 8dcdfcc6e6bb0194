#include "view/view_picture.h"

#include <new>

namespace facetor {

Message takePicture(ViewPicture& picture, View& view, Engine& engine, const Model& model,
                    ClientSize client, const PlacedTexture* behind, Background background)
{
    const FrameSurface& surface = engine.surface;
    view.frameNeedsDrawing = true;
    paintFrame(view, engine, model, client, behind);
    view.frameNeedsDrawing = true; // the surface is used below
    picture = {
        static_cast<std::uint32_t>(surface.width), static_cast<std::uint32_t>(surface.height), {}};
    try {
        picture.texels.reserve(surface.pixelCount());
        for (std::int32_t y = 0; y < surface.height; ++y)
            for (std::int32_t x = 0; x < surface.width; ++x)
                picture.texels.push_back(surface.at(x, y) | opaqueBit);
        if (background == Background::kept) return Message::none;
        const std::vector<std::uint8_t> writes = countWrites(engine, model, view.drawnPolygons);
        for (std::size_t i = 0; i < writes.size(); ++i)
            if (writes[i] == 0) picture.texels[i] = 0;
    } catch (const std::bad_alloc&) {
        picture = {};
        return Message::outOfMemory;
    }
    return Message::none;
}

} // namespace facetor
