#include "engine/draw_entry.h"
#include "engine/rasteriser.h"

#include <algorithm>
#include <utility>

namespace facetor {

namespace {

/// Finds out how often polygons write the pixels of an area: the part of it that a polygon may
/// reach is prepared, drawn into and read.
class WriteCounter {
public:
    WriteCounter(Engine& engine, const InclusiveRectangle& area)
        : engine_(engine), area_(area), counts_(engine.surface.pixelCount())
    {
        engine_.settings.countsWrites = true;
    }
    ~WriteCounter() { engine_.settings.countsWrites = false; }
    WriteCounter(const WriteCounter&) = delete;
    WriteCounter& operator=(const WriteCounter&) = delete;

    /// Counts what an entry of the list writes.
    void count(const Model& model, const PolygonEntry& entry)
    {
        const std::uint32_t drawFlags = engine_.settings.drawFlags;
        const PolygonAttribute& attribute = model.attributes[entry.attribute];
        if (!select(entry.point) || isHidden(drawFlags, entry, attribute)) return;
        if (isOutline(drawFlags, attribute))
            countOutline(entry.point);
        else
            countFill([&] { drawPlain(engine_, model, entry, attribute); });
        if ((attribute.flags & picked) == 0) return;
        countFill([&] { fillFlat(engine_, entry.point, 0, 0, meshMode); });
        countOutline(entry.point);
    }

    std::uint8_t& at(std::int32_t x, std::int32_t y)
    {
        return counts_[static_cast<std::size_t>(y) *
                           static_cast<std::size_t>(engine_.surface.width) +
                       static_cast<std::size_t>(x)];
    }
    std::vector<std::uint8_t> take() { return std::move(counts_); }

private:
    /// The polygon's part of the area; false when it has none.
    bool select(const ScreenQuad& quad)
    {
        const auto [left, right] = std::minmax({quad[0].x, quad[1].x, quad[2].x, quad[3].x});
        const auto [top, bottom] = std::minmax({quad[0].y, quad[1].y, quad[2].y, quad[3].y});
        left_ = std::max(left, area_.left);
        top_ = std::max(top, area_.top);
        right_ = std::min(right, area_.right);
        bottom_ = std::min(bottom, area_.bottom);
        return left_ <= right_ && top_ <= bottom_;
    }

    template <typename Fill> void countFill(const Fill& fill)
    {
        prepare();
        fill();
        collect();
    }

    /// The four lines of an outline, of which one writes a pixel once: with a one.
    void countOutline(const ScreenQuad& quad)
    {
        constexpr std::array<std::array<std::size_t, 2>, 4> edges{{{0, 1}, {0, 3}, {2, 1}, {2, 3}}};
        for (const auto& edge : edges)
            countFill([&] { drawLine(engine_.surface, quad[edge[0]], quad[edge[1]], 1); });
    }

    Rgb555* rowOf(std::int32_t y)
    {
        return engine_.surface.rows().row(engine_.surface.height - 1 - y);
    }
    void prepare()
    {
        for (std::int32_t y = top_; y <= bottom_; ++y)
            std::fill(rowOf(y) + left_, rowOf(y) + right_ + 1, Rgb555{0});
    }
    void collect()
    {
        for (std::int32_t y = top_; y <= bottom_; ++y)
            for (std::int32_t x = left_; x <= right_; ++x)
                at(x, y) = static_cast<std::uint8_t>(std::min(at(x, y) + rowOf(y)[x], 255));
    }

    Engine& engine_;
    InclusiveRectangle area_;
    std::vector<std::uint8_t> counts_;
    std::int32_t left_ = 0, top_ = 0, right_ = 0, bottom_ = 0;
};

} // namespace

std::vector<std::uint8_t> countWrites(Engine& engine, const Model& model, std::uint32_t count)
{
    WriteCounter counter(engine, {0, 0, engine.surface.width - 1, engine.surface.height - 1});
    for (std::uint32_t i = 0; i < std::min(count, engine.entryCount); ++i)
        counter.count(model, engine.entries[engine.sortList[i]]);
    return counter.take();
}

std::vector<std::uint32_t> findWriters(Engine& engine, const Model& model, ScreenPoint pixel)
{
    std::vector<std::uint32_t> writers;
    const FrameSurface& surface = engine.surface;
    if (pixel.x < 0 || pixel.x >= surface.width || pixel.y < 0 || pixel.y >= surface.height)
        return writers;
    WriteCounter counter(engine, {pixel.x, pixel.y, pixel.x, pixel.y});
    for (std::uint32_t i = 0; i < engine.entryCount; ++i) {
        counter.at(pixel.x, pixel.y) = 0;
        counter.count(model, engine.entries[engine.sortList[i]]);
        if (counter.at(pixel.x, pixel.y) > 0) writers.push_back(i);
    }
    return writers;
}

} // namespace facetor
