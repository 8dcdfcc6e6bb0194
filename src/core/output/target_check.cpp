#include "output/target_check.h"

#include "base/text.h"
#include "output/gouraud_count.h"
#include "output/source_names.h"
#include "output/target_image.h"
#include "output/target_layout.h"

#include <algorithm>
#include <array>
#include <bitset>
#include <cmath>
#include <span>

namespace facetor {

namespace {

constexpr std::array<std::string_view, targetCodeCount> names{
    "texture-count", "texture-memory", "texture-height", "texture-width",  "gouraud-count",
    "fixed-range",   "slot-empty",     "slot-range",     "texture-unused", "texture-duplicate",
    "quad-bent",     "quad-crossed",   "no-area",        "name-c",         "depth"};

using Warnings = std::vector<TargetWarning>;

struct Point {
    double x, y, z;
};

Point operator-(const Point& a, const Point& b)
{
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}

double dot(const Point& a, const Point& b)
{
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

Point cross(const Point& a, const Point& b)
{
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

double length(const Point& a)
{
    return std::sqrt(dot(a, a));
}

using Corners = std::array<Point, 4>;

enum class QuadFault { none, bent, crossed, concave, noArea };

/// Twice an area, or a part of it, below this counts as none, for a polygon whose longest edge or
/// diagonal is 1: what the rounding of coordinates to singles makes of a line.
constexpr double smallestArea = 1e-6;

/// More than this between the two halves of a quadrilateral: 5 degrees.
const double bentCosine = std::cos(5.0 * 3.14159265358979323846 / 180.0);

/// Whether the triangles on both sides of the diagonal from corner `from` form an edge of more than
/// 5 degrees. A half without area forms none.
bool isBent(const Corners& at, std::size_t from, double smallest)
{
    const Point &a = at[from], &b = at[from + 1], &c = at[from + 2], &d = at[(from + 3) % 4];
    const Point first = cross(b - a, c - a), second = cross(c - a, d - a);
    const double lengths = length(first) * length(second);
    if (length(first) <= smallest || length(second) <= smallest) return false;
    return dot(first, second) < bentCosine * lengths;
}

QuadFault faultOf(const Corners& at)
{
    const auto edge = [&](std::size_t k) { return at[(k + 1) % 4] - at[k]; };
    const Point across = at[2] - at[0], other = at[3] - at[1];
    double longest = std::max(length(across), length(other));
    for (std::size_t k = 0; k < 4; ++k) longest = std::max(longest, length(edge(k)));
    const double smallest = smallestArea * longest * longest;

    std::array<Point, 4> turn; // at each corner, its length twice the area of the triangle there
    double largest = 0;
    for (std::size_t k = 0; k < 4; ++k) {
        turn[k] = cross(edge((k + 3) % 4), edge(k));
        largest = std::max(largest, length(turn[k]));
    }
    if (!(largest > smallest)) return QuadFault::noArea;
    for (std::size_t k = 0; k < 4; ++k)
        if (length(edge(k)) <= smallestArea * longest) return QuadFault::none; // a triangle

    // Seen along the normal of the whole, a convex outline turns the same way at every corner.
    const Point normal = cross(across, other);
    const double size = length(normal);
    if (size <= smallest) return QuadFault::crossed; // as much on one side as on the other
    std::size_t backwards = 0;
    for (const Point& t : turn)
        if (dot(t, normal) < -smallest * size) ++backwards;
    if (backwards == 2) return QuadFault::crossed;
    if (backwards > 0) return QuadFault::concave;
    return isBent(at, 0, smallest) || isBent(at, 1, smallest) ? QuadFault::bent : QuadFault::none;
}

TargetWarning ofPolygon(const Model& model, TargetCode code, std::uint32_t object,
                        std::uint32_t polygon, Word text, std::string word1 = {})
{
    return {code, object, polygon, {}, text, std::move(word1), {}, model.names[object]};
}

void checkShape(Warnings& found, const Model& model, std::uint32_t k, std::uint32_t i)
{
    const Mesh& mesh = model.meshes[model.objects[k].mesh];
    const Polygon& polygon = model.polygons[mesh.polygonTable + i];
    Corners at;
    for (std::size_t c = 0; c < 4; ++c) {
        const Vertex& v = model.vertices[mesh.vertexTable + polygon.corner[c]];
        at[c] = {v.x, v.y, v.z};
    }
    const auto add = [&](TargetCode code, Word text) {
        found.push_back(ofPolygon(model, code, k, i, text));
    };
    const QuadFault fault = faultOf(at);
    if (fault == QuadFault::noArea || !isFinite(polygon.normal))
        return add(TargetCode::noArea, Word::warnNoArea);
    if (fault == QuadFault::bent) add(TargetCode::quadBent, Word::warnBent);
    if (fault == QuadFault::crossed) add(TargetCode::quadCrossed, Word::warnCrossed);
    if (fault == QuadFault::concave) add(TargetCode::quadCrossed, Word::warnConcave);
}

void checkSlot(Warnings& found, const Model& model, std::uint32_t k, std::uint32_t i,
               const TextureList* list)
{
    const Mesh& mesh = model.meshes[model.objects[k].mesh];
    const PolygonAttribute& attribute = model.attributes[mesh.attributeTable + i];
    if ((attribute.flags & textureMap) == 0) return;
    const auto add = [&](TargetCode code, Word text) {
        found.push_back(ofPolygon(model, code, k, i, text, std::to_string(attribute.texture)));
        found.back().slot = attribute.texture;
    };
    if (attribute.texture >= textureSlotCount)
        add(TargetCode::slotRange, Word::warnSlotRange);
    else if (list && list->isEmpty(attribute.texture))
        add(TargetCode::slotEmpty, Word::warnSlotEmpty);
}

TargetWarning ofSlot(TargetCode code, std::uint32_t slot, Word text, std::string word1 = {})
{
    return {code, {}, {}, slot, text, std::move(word1), {}, {}};
}

TargetWarning ofFile(TargetCode code, Word text, std::uint64_t count, std::uint64_t limit)
{
    return {code, {}, {}, {}, text, std::to_string(count), std::to_string(limit), {}};
}

std::bitset<textureSlotCount> shownSlots(const Model& model)
{
    std::bitset<textureSlotCount> shown;
    for (std::uint32_t k = 0; k < model.objectCount; ++k) {
        const Mesh& mesh = model.meshes[model.objects[k].mesh];
        for (std::uint32_t i = 0; i < mesh.polygonCount; ++i) {
            const PolygonAttribute& attribute = model.attributes[mesh.attributeTable + i];
            if ((attribute.flags & textureMap) != 0 && attribute.texture < textureSlotCount)
                shown.set(attribute.texture);
        }
    }
    return shown;
}

void checkSize(Warnings& found, const TextureSlot& slot, std::uint32_t i)
{
    const auto add = [&](TargetCode code, Word text, std::uint32_t value) {
        found.push_back(ofSlot(code, i, text, std::to_string(value)));
    };
    if (slot.height > targetTextureHeight)
        add(TargetCode::textureHeight, Word::warnTextureHeight, slot.height);
    if (slot.width > targetTextureWidth || slot.width % 8 != 0)
        add(TargetCode::textureWidth, Word::warnTextureWidth, slot.width);
}

/// The overruns of the list as a whole.
void checkTotals(Warnings& found, const TextureList& list)
{
    if (const std::uint32_t used = list.usedCount(); used > targetTextureLimit)
        found.push_back(
            ofFile(TargetCode::textureCount, Word::warnTextureCount, used, targetTextureLimit));
    if (const std::uint64_t bytes = texelBytes(list); bytes > targetTexelBytes)
        found.push_back(
            ofFile(TargetCode::textureMemory, Word::warnTextureMemory, bytes, targetTexelBytes));
}

/// The first fault of the sizes with such a code.
template <typename IsMeant>
std::optional<TargetWarning> findFirst(const TextureList& list, const IsMeant& isMeant)
{
    Warnings found;
    checkTotals(found, list);
    for (std::uint32_t i = 0; i < list.usedCount(); ++i) checkSize(found, list.slot(i), i);
    for (const TargetWarning& warning : found)
        if (isMeant(warning.code)) return warning;
    return std::nullopt;
}

} // namespace

std::string_view nameOf(TargetCode code)
{
    return names[static_cast<std::size_t>(code)];
}

bool isOverrun(TargetCode code)
{
    return code == TargetCode::textureCount || code == TargetCode::textureMemory ||
           code == TargetCode::textureHeight || code == TargetCode::gouraudCount;
}

std::string describe(const TargetWarning& warning)
{
    return describe(warning, [](Word word) { return catalogueText(word); });
}

std::optional<TargetWarning> findOverrun(const Model& model)
{
    const GouraudCounts gouraud = countImageGouraud(model);
    if (gouraud.light + gouraud.table <= targetGouraudLimit) return std::nullopt;
    return ofFile(TargetCode::gouraudCount, Word::warnGouraudCount, gouraud.light + gouraud.table,
                  targetGouraudLimit);
}

std::optional<TargetWarning> findOverrun(const TextureList& list)
{
    return findFirst(list, isOverrun);
}

std::optional<TargetWarning> findRefusal(const TextureList& list)
{
    return findFirst(
        list, [](TargetCode code) { return isOverrun(code) || code == TargetCode::textureWidth; });
}

std::vector<TargetWarning> checkTarget(const Model& model, float scale, const TextureList* list)
{
    Warnings found;
    if (auto overrun = findOverrun(model)) found.push_back(std::move(*overrun));
    for (const BeyondFixed& fault : findBeyondFixed(model, scale))
        found.push_back({TargetCode::fixedRange,
                         fault.object,
                         {},
                         {},
                         fault.object ? Word::warnFixedRange : Word::warnFixedScale,
                         formatShortest(fault.value),
                         {},
                         fault.object ? model.names[*fault.object] : std::string()});
    for (std::uint32_t k = 0; k < model.objectCount; ++k) {
        const auto add = [&](TargetCode code, Word text, std::string word1) {
            found.push_back({code, k, {}, {}, text, std::move(word1), {}, model.names[k]});
        };
        const Object& object = model.objects[k];
        if (toIdentifier(model.names[k], SourceNames::identifiers) != model.names[k])
            add(TargetCode::nameC, Word::warnName, {});
        if (object.depth >= targetDepthLimit)
            add(TargetCode::depth, Word::warnDepth, std::to_string(object.depth));
        for (std::uint32_t i = 0; i < model.meshes[object.mesh].polygonCount; ++i) {
            checkSlot(found, model, k, i, list);
            checkShape(found, model, k, i);
        }
    }
    return found;
}

std::vector<TargetWarning> checkTarget(const TextureList& list, const Model* model)
{
    DuplicateSearch search;
    search.begin(list);
    while (!search.step(allTexels)) {
    }
    return checkTarget(list, model, search.found());
}

std::vector<TargetWarning> checkTarget(const TextureList& list, const Model* model,
                                       const DuplicateTextures& duplicates)
{
    Warnings found;
    checkTotals(found, list);
    const auto shown = model ? shownSlots(*model) : std::bitset<textureSlotCount>().set();
    for (std::uint32_t i = 0; i < list.usedCount(); ++i) {
        if (list.isEmpty(i)) continue;
        checkSize(found, list.slot(i), i);
        if (!shown[i]) found.push_back(ofSlot(TargetCode::textureUnused, i, Word::warnUnused));
        if (const auto same = duplicates.find(i); same != duplicates.end())
            found.push_back(ofSlot(TargetCode::textureDuplicate, i, Word::warnDuplicate,
                                   std::to_string(same->second)));
    }
    return found;
}

} // namespace facetor
