#include "engine/draw_entry.h"

#include "engine/rasteriser.h"

#include <algorithm>

namespace facetor {

namespace {

/// From this view-space z of its normal on, a polygon shows its back.
constexpr float backNormalZ = 0.001f;

/// A light level as a neutral-at-16 grey: level -16 gives 0, level 15 and 16 give 31.
Rgb555 levelAsGouraud(int level)
{
    const int g = level + 16 > 31 ? 31 : level + 16;
    return rgb555(g, g, g);
}

std::array<Rgb555, 4> gouraudColours(const Engine& engine, const Model& model,
                                     const PolygonEntry& entry, const PolygonAttribute& attribute,
                                     Facing facing)
{
    if ((attribute.flags & useLight) == 0) return model.gouraud[attribute.gouraud].color;
    std::array<Rgb555, 4> colours;
    for (std::size_t c = 0; c < 4; ++c)
        colours[c] =
            levelAsGouraud(lightLevel(engine.settings.light, entry.vertexNormal[c], facing));
    return colours;
}

/// The texture of a number; beyond the list it is an empty slot's.
TextureSlot textureOf(const Engine& engine, std::uint16_t number)
{
    const auto textures = engine.settings.textures;
    return number < textures.size()
               ? textures[number]
               : TextureSlot{blankTextureSize, blankTextureSize, blankTexture()};
}

void drawShaded(Engine& engine, const Model& model, const PolygonEntry& entry,
                const PolygonAttribute& attribute, Facing facing)
{
    const std::uint32_t flags = attribute.flags;
    if ((flags & polyLine) != 0) {
        drawOutline(engine.surface, entry.point, attribute.color);
        return;
    }
    const bool textured = (flags & textureMap) != 0 && !engine.settings.textures.empty();
    if ((flags & gouraudShading) != 0) {
        const auto colours = gouraudColours(engine, model, entry, attribute, facing);
        if (textured)
            fillTexturedGouraud(engine, entry.point, textureOf(engine, attribute.texture), colours,
                                flags);
        else
            fillGouraud(engine, entry.point, attribute.color, colours, flags);
        return;
    }
    const int level = (flags & useLight) != 0
                          ? lightLevel(engine.settings.light, entry.normal, facing)
                          : maxLightLevel;
    if (textured)
        fillTextured(engine, entry.point, textureOf(engine, attribute.texture), level, flags);
    else
        fillFlat(engine, entry.point, attribute.color, level, flags);
}

Facing facingOf(const PolygonEntry& entry)
{
    return entry.normal.z < backNormalZ ? Facing::front : Facing::back;
}

} // namespace

bool isOutline(std::uint32_t drawFlags, const PolygonAttribute& attribute)
{
    if ((drawFlags & drawWireframe) != 0) return true;
    return (drawFlags & drawFlat) == 0 && (attribute.flags & polyLine) != 0;
}

bool isHidden(std::uint32_t drawFlags, const PolygonEntry& entry, const PolygonAttribute& attribute)
{
    return (drawFlags & (drawWireframe | drawFlat)) == 0 && facingOf(entry) == Facing::back &&
           (attribute.plane & dualPlaneBit) == 0;
}

void drawPlain(Engine& engine, const Model& model, const PolygonEntry& entry,
               const PolygonAttribute& attribute)
{
    const std::uint32_t drawFlags = engine.settings.drawFlags;
    if ((drawFlags & drawWireframe) != 0) {
        drawOutline(engine.surface, entry.point, attribute.color);
    } else if ((drawFlags & drawFlat) != 0) {
        const int level = (attribute.flags & useLight) != 0
                              ? lightLevel(engine.settings.light, entry.normal, Facing::front)
                              : maxLightLevel;
        fillFlat(engine, entry.point, attribute.color, level, attribute.flags | useLight);
    } else {
        drawShaded(engine, model, entry, attribute, facingOf(entry));
    }
}

namespace {

void drawEntry(Engine& engine, const Model& model, const PolygonEntry& entry)
{
    const PolygonAttribute& attribute = model.attributes[entry.attribute];
    if (isHidden(engine.settings.drawFlags, entry, attribute)) return;
    drawPlain(engine, model, entry, attribute);
    if ((attribute.flags & picked) != 0) {
        const Rgb555 colour = engine.settings.pickedColour;
        fillFlat(engine, entry.point, colour, 0, meshMode);
        drawOutline(engine.surface, entry.point, colour);
    }
}

} // namespace

void drawPolygons(Engine& engine, const Model& model, std::uint32_t count)
{
    for (std::uint32_t i = 0; i < std::min(count, engine.entryCount); ++i)
        drawEntry(engine, model, engine.entries[engine.sortList[i]]);
}

} // namespace facetor
