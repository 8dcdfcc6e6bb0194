#include "engine/engine.h"

#include "engine/span_ends.h"
#include "engine/trigonometry.h"

namespace facetor {

Message startEngine(Engine& engine)
{
    engine.settings = EngineSettings{};
    setViewAngle(engine, defaultViewAngle);
    if (!createFrameSurface(engine.surface) || !initialiseStack(engine.stack) ||
        !engine.viewVertices.allocate(vertexCapacity) ||
        !engine.screenPoints.allocate(vertexCapacity) ||
        !engine.entries.allocate(polygonCapacity) || !engine.sortList.allocate(polygonCapacity) ||
        !engine.sortScratch.allocate(2 * std::size_t{polygonCapacity}) ||
        !engine.spanEnds.allocate(2 * spanEndsCapacity) ||
        !engine.gouraudTexture.allocate(gouraudTextureSize * gouraudTextureSize) ||
        !engine.litTexels.allocate(litTexelCapacity + 8) || !engine.cellShapes.allocate()) {
        stopEngine(engine);
        return Message::outOfMemory;
    }
    resetFrame(engine);
    return Message::none;
}

void stopEngine(Engine& engine)
{
    engine = Engine{};
}

void setViewAngle(Engine& engine, Angle angle)
{
    engine.settings.focalLength =
        static_cast<float>(focalScreenWidth / (tangent(angle >> 1) * 2.0));
}

void setDrawFlags(Engine& engine, std::uint32_t flags, bool on)
{
    std::uint32_t& current = engine.settings.drawFlags;
    current = on ? current | flags : current & ~flags;
}

void resetFrame(Engine& engine)
{
    engine.entryCount = 0;
    engine.vertexCount = 0;
    engine.polygonCount = 0;
    engine.opacity.forget();
    engine.cellShapes.beginFrame();
}

} // namespace facetor
