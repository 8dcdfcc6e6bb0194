#include "engine/engine.h"

#include "engine/rasteriser.h"

#include <algorithm>
#include <bit>
#include <utility>

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

/// Whether a polygon is drawn as lines: what is in its attribute counts as a whole only without
/// the draw flags.
bool isOutline(std::uint32_t drawFlags, const PolygonAttribute& attribute)
{
    if ((drawFlags & drawWireframe) != 0) return true;
    return (drawFlags & drawFlat) == 0 && (attribute.flags & polyLine) != 0;
}

Facing facingOf(const PolygonEntry& entry)
{
    return entry.normal.z < backNormalZ ? Facing::front : Facing::back;
}

/// Whether the polygon in the list is left out because of the side that it shows.
bool isHidden(std::uint32_t drawFlags, const PolygonEntry& entry, const PolygonAttribute& attribute)
{
    return (drawFlags & (drawWireframe | drawFlat)) == 0 && facingOf(entry) == Facing::back &&
           (attribute.plane & dualPlaneBit) == 0;
}

/// The polygon without its mark.
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

/// Finds out what a polygon writes: of the surface its rectangle is prepared, drawn into and read.
class WriteCounter {
public:
    explicit WriteCounter(Engine& engine) : engine_(engine), counts_(engine.surface.pixelCount()) {}

    /// The polygons' part of the surface; false when it has none.
    bool select(const ScreenQuad& quad)
    {
        const auto [left, right] = std::minmax({quad[0].x, quad[1].x, quad[2].x, quad[3].x});
        const auto [top, bottom] = std::minmax({quad[0].y, quad[1].y, quad[2].y, quad[3].y});
        left_ = std::max(left, 0);
        top_ = std::max(top, 0);
        right_ = std::min(right, engine_.surface.width - 1);
        bottom_ = std::min(bottom, engine_.surface.height - 1);
        return left_ <= right_ && top_ <= bottom_;
    }

    /// Counts what `fill` writes in shadow mode, each time of which takes a bit from white.
    template <typename Fill> void countFill(const Fill& fill)
    {
        prepare(31);
        fill();
        collect([](Rgb555 pixel) { return 5 - std::popcount(pixel & 31u); });
    }

    /// The four lines of an outline, of which one writes a pixel once.
    void countOutline(const ScreenQuad& quad)
    {
        constexpr std::array<std::array<std::size_t, 2>, 4> edges{{{0, 1}, {0, 3}, {2, 1}, {2, 3}}};
        for (const auto& [from, to] : edges) {
            prepare(0);
            drawLine(engine_.surface, quad[from], quad[to], 1);
            collect([](Rgb555 pixel) { return static_cast<int>(pixel); });
        }
    }

    std::vector<std::uint8_t> take() { return std::move(counts_); }

private:
    Rgb555* rowOf(std::int32_t y)
    {
        FrameSurface& surface = engine_.surface;
        return surface.pixels() +
               static_cast<std::ptrdiff_t>(surface.height - 1 - y) * surface.width;
    }
    void prepare(Rgb555 value)
    {
        for (std::int32_t y = top_; y <= bottom_; ++y)
            std::fill(rowOf(y) + left_, rowOf(y) + right_ + 1, value);
    }
    template <typename Times> void collect(const Times& times)
    {
        for (std::int32_t y = top_; y <= bottom_; ++y)
            for (std::int32_t x = left_; x <= right_; ++x) {
                std::uint8_t& count = counts_[static_cast<std::size_t>(y) *
                                                  static_cast<std::size_t>(engine_.surface.width) +
                                              static_cast<std::size_t>(x)];
                count = static_cast<std::uint8_t>(std::min(count + times(rowOf(y)[x]), 255));
            }
    }

    Engine& engine_;
    std::vector<std::uint8_t> counts_;
    std::int32_t left_ = 0, top_ = 0, right_ = 0, bottom_ = 0;
};

} // namespace

void drawPolygons(Engine& engine, const Model& model, std::uint32_t count)
{
    for (std::uint32_t i = 0; i < std::min(count, engine.entryCount); ++i)
        drawEntry(engine, model, engine.entries[engine.sortList[i]]);
}

std::vector<std::uint8_t> countWrites(Engine& engine, const Model& model, std::uint32_t count)
{
    WriteCounter counter(engine);
    const std::uint32_t drawFlags = engine.settings.drawFlags;
    for (std::uint32_t i = 0; i < std::min(count, engine.entryCount); ++i) {
        const PolygonEntry& entry = engine.entries[engine.sortList[i]];
        PolygonAttribute attribute = model.attributes[entry.attribute];
        if (!counter.select(entry.point) || isHidden(drawFlags, entry, attribute)) continue;
        attribute.flags |= shadowMode;
        if (isOutline(drawFlags, attribute))
            counter.countOutline(entry.point);
        else
            counter.countFill([&] { drawPlain(engine, model, entry, attribute); });
        if ((attribute.flags & picked) == 0) continue;
        counter.countFill(
            [&] { fillFlat(engine, entry.point, 0, 0, std::uint32_t{meshMode} | shadowMode); });
        counter.countOutline(entry.point);
    }
    return counter.take();
}

} // namespace facetor
