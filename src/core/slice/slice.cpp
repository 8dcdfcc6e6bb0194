#include "slice/slice.h"

#include "engine/hierarchy.h"
#include "texture/texel.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <new>
#include <utility>

namespace facetor {

namespace {

constexpr int gridSteps = 10; ///< cells along each side of the quadrilateral

/// Source positions are kept within this, far beyond any picture, so that no arithmetic overflows.
constexpr std::int64_t farthest = 1 << 24;

struct GridPoint {
    int x, y;
};

/// [step from corner 0 to 1][step from corner 0 to 3]
using Grid = std::array<std::array<GridPoint, gridSteps + 1>, gridSteps + 1>;

/// Eleven points from one to another, the steps added up in single precision and truncated.
std::array<ScreenPoint, gridSteps + 1> pointsBetween(ScreenPoint from, ScreenPoint to)
{
    std::array<ScreenPoint, gridSteps + 1> points;
    float x = static_cast<float>(from.x), y = static_cast<float>(from.y);
    const float stepX = 0.1f * static_cast<float>(to.x - from.x);
    const float stepY = 0.1f * static_cast<float>(to.y - from.y);
    for (ScreenPoint& point : points) {
        point = {static_cast<std::int32_t>(x), static_cast<std::int32_t>(y)};
        x += stepX;
        y += stepY;
    }
    return points;
}

Grid sourceGrid(const SliceRecord& record, const PlacedTexture& picture)
{
    const InclusiveRectangle& place = picture.place;
    const auto toTexel = [](std::int64_t view, std::int64_t start, std::int64_t end,
                            std::int64_t size) {
        return static_cast<int>(
            std::clamp((view - start) * size / (end - start), -farthest, farthest));
    };
    const auto first = pointsBetween(record.corner[0], record.corner[1]);
    const auto second = pointsBetween(record.corner[3], record.corner[2]);
    Grid grid;
    for (std::size_t i = 0; i <= gridSteps; ++i) {
        const auto points = pointsBetween(first[i], second[i]);
        for (std::size_t j = 0; j <= gridSteps; ++j)
            grid[i][j] = {toTexel(points[j].x, place.left, place.right, picture.texture.width),
                          toTexel(points[j].y, place.top, place.bottom, picture.texture.height)};
    }
    return grid;
}

Grid destinationGrid(int width, int height)
{
    const auto place = [](std::size_t step, int size) {
        const int at = static_cast<int>(static_cast<float>(step) * 0.1f * static_cast<float>(size));
        return std::min(at, size - 1);
    };
    Grid grid;
    for (std::size_t i = 0; i <= gridSteps; ++i)
        for (std::size_t j = 0; j <= gridSteps; ++j)
            grid[i][j] = {place(i, width), place(j, height)};
    return grid;
}

/// Applies the offset mode to one coordinate; negative where there is nothing.
int offsetCoordinate(int at, int size, SliceOffset offset)
{
    switch (offset) {
    case SliceOffset::repeatEdge: return std::clamp(at, 0, size - 1);
    case SliceOffset::wrapAround:
        if (at >= size) at -= size;
        if (at < 0) at += size;
        break;
    case SliceOffset::transparent: break;
    }
    return at < size ? at : -1;
}

struct Sampler {
    const TextureSlot& source;
    SliceOffset offset;
    Sampling sampling;

    Rgb555 operator()(double x, double y) const
    {
        const int wholeX = static_cast<int>(x), wholeY = static_cast<int>(y);
        const int ix = offsetCoordinate(wholeX, source.width, offset);
        const int iy = offsetCoordinate(wholeY, source.height, offset);
        if (ix < 0 || iy < 0) return 0;
        const auto column = static_cast<std::size_t>(ix), row = static_cast<std::size_t>(iy);
        if (sampling == Sampling::nearest) return source.pixels[row * source.width + column];
        return smoothTexel(source.pixels, source.width, source.height, column, row,
                           static_cast<float>(x - wholeX), static_cast<float>(y - wholeY));
    }
};

struct TriangleMap {
    std::array<GridPoint, 3> destination, source;
};

/// Twice the signed area on which c lies beside a to b.
int edgeFunction(GridPoint a, GridPoint b, int x, int y)
{
    return (b.x - a.x) * (y - a.y) - (b.y - a.y) * (x - a.x);
}

/// A position between the source corners that belong to the two destination corners furthest apart,
/// for a destination triangle that is only a line or a point.
std::array<double, 2> positionOnLine(const TriangleMap& map, int x, int y)
{
    const auto distance = [](GridPoint p, int px, int py) {
        return std::abs(p.x - px) + std::abs(p.y - py);
    };
    std::size_t from = 0, to = 0;
    int length = 0;
    for (const auto& [i, j] : {std::pair<std::size_t, std::size_t>{0, 1}, {1, 2}, {2, 0}}) {
        const GridPoint end = map.destination[j];
        const int between = distance(map.destination[i], end.x, end.y);
        if (between <= length) continue;
        from = i;
        to = j;
        length = between;
    }
    const GridPoint a = map.source[from], b = map.source[to];
    const double share =
        length == 0 ? 0 : static_cast<double>(distance(map.destination[from], x, y)) / length;
    return {a.x + (b.x - a.x) * share, a.y + (b.y - a.y) * share};
}

/// Writes `texelAt(source x, source y)` to every texel of the destination triangle, edges included.
template <typename TexelAt>
void fillTriangle(std::span<Rgb555> texels, int width, const TriangleMap& map,
                  const TexelAt& texelAt)
{
    const auto& [a, b, c] = map.destination;
    const auto& [sa, sb, sc] = map.source;
    const auto [left, right] = std::minmax({a.x, b.x, c.x});
    const auto [top, bottom] = std::minmax({a.y, b.y, c.y});
    const auto [leastX, mostX] = std::minmax({sa.x, sb.x, sc.x});
    const auto [leastY, mostY] = std::minmax({sa.y, sb.y, sc.y});
    const double area = edgeFunction(a, b, c.x, c.y);
    for (int y = top; y <= bottom; ++y)
        for (int x = left; x <= right; ++x) {
            const std::int64_t ofC = edgeFunction(a, b, x, y), ofA = edgeFunction(b, c, x, y),
                               ofB = edgeFunction(c, a, x, y);
            if ((ofA < 0 || ofB < 0 || ofC < 0) && (ofA > 0 || ofB > 0 || ofC > 0)) continue;
            const auto [sx, sy] =
                area == 0
                    ? positionOnLine(map, x, y)
                    : std::array{static_cast<double>(ofA * sa.x + ofB * sb.x + ofC * sc.x) / area,
                                 static_cast<double>(ofA * sa.y + ofB * sb.y + ofC * sc.y) / area};
            texels[static_cast<std::size_t>(y * width + x)] = texelAt(
                std::clamp<double>(sx, leastX, mostX), std::clamp<double>(sy, leastY, mostY));
        }
}

std::uint32_t pickedCount(const Model& model)
{
    const std::span attributes(model.attributes.data(), model.totalPolygonCount);
    return static_cast<std::uint32_t>(std::ranges::count_if(
        attributes, [](const PolygonAttribute& a) { return (a.flags & picked) != 0; }));
}

/// Gives the picked polygons their new textures and returns what they cover on the screen.
void assignSlices(std::vector<SliceRecord>& records, Model& model, MatrixStack& stack,
                  const EngineSettings& engine, const SliceSlots& slots)
{
    const auto visit = [&](std::uint32_t object) {
        const Mesh& mesh = model.meshes[model.objects[object].mesh];
        for (std::uint32_t i = 0; i < mesh.polygonCount && records.size() < slots.count; ++i) {
            PolygonAttribute& attribute = model.attributes[mesh.attributeTable + i];
            if ((attribute.flags & picked) == 0) continue;
            SliceRecord record{{}, attribute.color};
            for (std::size_t c = 0; c < 4; ++c) {
                const std::uint16_t corner = model.polygons[mesh.polygonTable + i].corner[c];
                record.corner[c] =
                    projectPoint(engine, transformPoint(model.vertices[mesh.vertexTable + corner],
                                                        stack.current()));
            }
            attribute.texture = static_cast<std::uint16_t>(slots.first + records.size());
            attribute.flags &= ~(std::uint32_t{flipHorizontal} | flipVertical);
            attribute.flags |= textureMap;
            records.push_back(record);
        }
    };
    const bool pushed = pushMatrix(stack);
    walkObjects(stack, model, 0, ObjectPlacement::withoutMatrix, visit);
    if (pushed) popMatrix(stack);
}

} // namespace

std::optional<InputFault> sliceFault(const SliceSettings& settings, std::uint32_t currentSlot)
{
    if (const auto fault = textureSizeFault(settings.width, settings.height)) return fault;
    if (settings.appendix != SliceAppendix::chosen) return std::nullopt;
    if (settings.chosenSlot <= static_cast<std::int32_t>(currentSlot))
        return InputFault{Message::dataError, Word::slotBehindCurrent};
    if (settings.chosenSlot >= static_cast<std::int32_t>(textureSlotCount))
        return outOf(Word::polygons);
    return std::nullopt;
}

SliceSlots sliceSlots(const TextureList& list, const SliceSettings& settings,
                      std::uint32_t polygons)
{
    std::uint32_t first = list.current + 1;
    if (settings.appendix == SliceAppendix::last) first = list.usedCount();
    if (settings.appendix == SliceAppendix::chosen)
        first = static_cast<std::uint32_t>(settings.chosenSlot);
    first = std::min(first, textureSlotCount);
    return {first, std::min(polygons, textureSlotCount - first)};
}

void warpSlice(std::span<Rgb555> texels, const SliceSettings& settings, const SliceRecord& record,
               const PlacedTexture& picture, Rgb555 transparentColour)
{
    const Grid source = sourceGrid(record, picture);
    const Grid destination = destinationGrid(settings.width, settings.height);
    const Sampler sample{picture.texture, settings.offset, settings.sampling};
    const auto texelAt = [&](double x, double y) -> Rgb555 {
        const Rgb555 texel = sample(x, y);
        const bool shows = texel != 0 && ((texel ^ transparentColour) & 0x7FFF) != 0;
        return shows || !settings.materialColour ? texel : record.colour | opaqueBit;
    };
    for (std::size_t i = 0; i < gridSteps; ++i)
        for (std::size_t j = 0; j < gridSteps; ++j)
            for (const std::size_t half : {0u, 1u}) { // on either side of the diagonal
                const auto corners = [&](const Grid& grid) -> std::array<GridPoint, 3> {
                    return {grid[i][j], half == 0 ? grid[i + 1][j] : grid[i][j + 1],
                            grid[i + 1][j + 1]};
                };
                fillTriangle(texels, settings.width, {corners(destination), corners(source)},
                             texelAt);
            }
}

Message sliceTextures(TextureList& list, Model& model, MatrixStack& stack,
                      const EngineSettings& engine, const SliceSettings& settings,
                      const InclusiveRectangle& place, Rgb555 transparentColour)
{
    assert(settings.width > 0 && settings.height > 0);
    const SliceSlots slots = sliceSlots(list, settings, pickedCount(model));
    const auto texelCount =
        static_cast<std::size_t>(settings.width) * static_cast<std::size_t>(settings.height);
    std::vector<Texels> blocks;
    std::vector<SliceRecord> records;
    try {
        blocks.resize(slots.count);
        records.reserve(slots.count);
    } catch (const std::bad_alloc&) {
        return Message::outOfMemory;
    }
    for (Texels& block : blocks)
        if (!block.allocate(texelCount)) return Message::outOfMemory;

    assignSlices(records, model, stack, engine, slots);
    const PlacedTexture picture{list.slot(list.current), place};
    for (std::size_t i = 0; i < records.size(); ++i)
        warpSlice({blocks[i].data(), texelCount}, settings, records[i], picture, transparentColour);
    // Only now: the picture itself may be in one of the slots.
    for (std::size_t i = 0; i < records.size(); ++i)
        list.set(slots.first + static_cast<std::uint32_t>(i),
                 static_cast<std::uint16_t>(settings.width),
                 static_cast<std::uint16_t>(settings.height), std::move(blocks[i]));
    return Message::none;
}

} // namespace facetor
