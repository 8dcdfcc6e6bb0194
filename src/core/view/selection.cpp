#include "view/selection.h"

#include <algorithm>
#include <new>
#include <span>
#include <vector>

namespace facetor {

namespace {

/// Whether the point lies within the polygon by the winding rule. Edges are half-open downwards,
/// and a point on one counts to its right: so a shared edge belongs to exactly one of two
/// neighbours.
bool isInside(const ScreenQuad& quad, ScreenPoint point)
{
    int winding = 0;
    for (std::size_t i = 0; i < quad.size(); ++i) {
        const ScreenPoint &a = quad[i], &b = quad[(i + 1) % quad.size()];
        if ((a.y <= point.y) == (b.y <= point.y)) continue;
        const ScreenPoint &upper = a.y < b.y ? a : b, &lower = a.y < b.y ? b : a;
        // Positive right of the edge, when one looks down along it on the screen.
        const std::int64_t side =
            (std::int64_t{point.x} - upper.x) * (std::int64_t{lower.y} - upper.y) -
            (std::int64_t{lower.x} - upper.x) * (std::int64_t{point.y} - upper.y);
        if (side >= 0) winding += a.y < b.y ? 1 : -1;
    }
    return winding != 0;
}

bool liesWithin(const ScreenQuad& quad, const InclusiveRectangle& rectangle)
{
    return std::all_of(quad.begin(), quad.end(), [&](const ScreenPoint& point) {
        return point.x >= rectangle.left && point.x <= rectangle.right &&
               point.y >= rectangle.top && point.y <= rectangle.bottom;
    });
}

void apply(PolygonAttribute& attribute, Mark mark)
{
    if (mark == Mark::set)
        attribute.flags |= picked;
    else
        attribute.flags &= ~std::uint32_t{picked};
}

std::span<PolygonAttribute> attributesOf(Model& model, std::uint32_t mesh)
{
    return {model.attributes.data() + model.meshes[mesh].attributeTable,
            model.meshes[mesh].polygonCount};
}

void markEntry(Model& model, const PolygonEntry& entry, Mark mark, bool wholeObject)
{
    if (!wholeObject) return apply(model.attributes[entry.attribute], mark);
    for (PolygonAttribute& attribute : attributesOf(model, entry.mesh)) apply(attribute, mark);
}

InclusiveRectangle rectangleBetween(ScreenPoint a, ScreenPoint b)
{
    return {std::min(a.x, b.x), std::min(a.y, b.y), std::max(a.x, b.x), std::max(a.y, b.y)};
}

std::span<PolygonAttribute> attributesInUse(Model& model)
{
    return {model.attributes.data(), model.totalPolygonCount};
}

} // namespace

std::optional<std::uint32_t> hitTest(const Engine& engine, ScreenPoint point, std::uint32_t skip)
{
    for (std::uint32_t i = engine.entryCount; i-- > 0;) {
        const std::uint32_t entry = engine.sortList[i];
        if (isInside(engine.entries[entry].point, point) && skip-- == 0) return entry;
    }
    return std::nullopt;
}

std::optional<std::uint32_t> pickPolygons(Model& model, const Engine& engine, RubberBand& band,
                                          const PickInput& input)
{
    const Mark mark = input.ctrl ? Mark::clear : Mark::set;
    if (band.open) {
        band.rectangle = rectangleBetween(band.start, input.cursor);
        if (input.buttonHeld) return std::nullopt;
        for (const PolygonEntry& entry : std::span(engine.entries.data(), engine.entryCount))
            if (liesWithin(entry.point, band.rectangle)) markEntry(model, entry, mark, input.shift);
        band = RubberBand{};
        return std::nullopt;
    }
    if (!input.buttonHeld) return std::nullopt;
    const std::optional<std::uint32_t> hit = hitTest(engine, input.cursor, input.tab ? 1 : 0);
    if (!hit) {
        band = {true, input.cursor, rectangleBetween(input.cursor, input.cursor)};
        return std::nullopt;
    }
    const PolygonEntry& entry = engine.entries[*hit];
    markEntry(model, entry, mark, input.shift && !input.tab);
    return entry.attribute;
}

std::optional<std::uint32_t> pickNeighbour(Model& model, const Engine& engine, Neighbour neighbour,
                                           bool keepMarks)
{
    const std::span<PolygonAttribute> attributes = attributesInUse(model);
    const bool forward = neighbour == Neighbour::next;
    const auto size = static_cast<std::uint32_t>(attributes.size());
    // How far a polygon is from where the search starts, in the direction of the search.
    std::uint32_t start = forward ? size - 1 : 0;
    for (std::uint32_t i = 0; i < size; ++i)
        if (isPicked(attributes[i]) && (forward || !isPicked(attributes[start]))) start = i;
    const auto distance = [&](std::uint32_t i) {
        return forward ? (i + size - start - 1) % size : (start + size - i - 1) % size;
    };
    std::optional<std::uint32_t> nearest;
    for (const PolygonEntry& entry : std::span(engine.entries.data(), engine.entryCount))
        if (!nearest || distance(entry.attribute) < distance(*nearest)) nearest = entry.attribute;
    if (!nearest) return std::nullopt;
    if (!keepMarks) selectAll(model, Mark::clear);
    apply(attributes[*nearest], Mark::set);
    return nearest;
}

void selectModel(Model& model, Mark mark)
{
    for (std::uint32_t k = 0; k < model.objectCount; ++k) {
        const std::span<PolygonAttribute> attributes = attributesOf(model, k);
        if (std::none_of(attributes.begin(), attributes.end(), isPicked)) continue;
        for (PolygonAttribute& attribute : attributes) apply(attribute, mark);
    }
}

Message selectMaterial(Model& model, Mark mark)
{
    constexpr std::uint16_t colourBits = 0x7FFF;
    const std::span<PolygonAttribute> attributes = attributesInUse(model);
    std::vector<PolygonAttribute> samples; // as they were before any mark changes
    try {
        std::copy_if(attributes.begin(), attributes.end(), std::back_inserter(samples), isPicked);
    } catch (const std::bad_alloc&) {
        return Message::outOfMemory;
    }
    for (PolygonAttribute& attribute : attributes) {
        const bool textured = (attribute.flags & textureMap) != 0;
        const bool matches =
            std::any_of(samples.begin(), samples.end(), [&](const PolygonAttribute& sample) {
                return textured ? attribute.texture == sample.texture
                                : ((attribute.color ^ sample.color) & colourBits) == 0;
            });
        if (matches) apply(attribute, mark);
    }
    return Message::none;
}

void selectAll(Model& model, Mark mark)
{
    for (PolygonAttribute& attribute : attributesInUse(model)) apply(attribute, mark);
}

void selectOnly(Model& model, std::span<const std::uint32_t> attributes)
{
    selectAll(model, Mark::clear);
    for (const std::uint32_t attribute : attributes) apply(model.attributes[attribute], Mark::set);
}

std::uint32_t countPicked(const Model& model)
{
    const PolygonAttribute* first = model.attributes.data();
    return static_cast<std::uint32_t>(
        std::count_if(first, first + model.totalPolygonCount, isPicked));
}

bool isAnyPicked(const Model& model)
{
    const PolygonAttribute* first = model.attributes.data();
    return std::any_of(first, first + model.totalPolygonCount, isPicked);
}

} // namespace facetor
