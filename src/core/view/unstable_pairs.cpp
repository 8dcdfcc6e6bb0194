#include "view/unstable_pairs.h"

#include "view/frame_objects.h"
#include "view/screen_overlap.h"
#include "view/view_tools.h"

#include <algorithm>
#include <array>
#include <numeric>

namespace facetor {

namespace {

/// Overlaps below these are the rounding of corners to pixels: in pixels, and as a share of the
/// smaller polygon.
constexpr double leastOverlap = 4;
constexpr double leastOverlapShare = 0.02;

/// Pairs that are looked at before the search ends: thousands of polygons one over the other have
/// millions, which nobody would wait for.
constexpr std::size_t mostPairsTried = 1'000'000;

constexpr std::array<std::uint16_t, 3> sortRules{sortCentre, sortNearest, sortFarthest};

/// What each rule, in the order of sortRules, makes of a polygon's depth.
struct RuleDepths {
    std::array<float, 3> byRule{};
    bool listed = false;
};

/// The frame seen from one side: by the number of each polygon.
using Frame = std::vector<RuleDepths>;

std::size_t ruleOf(std::uint16_t sort)
{
    return sort == sortNearest ? 1 : sort == sortFarthest ? 2 : 0;
}

/// A corner's position in view space.
const Vertex& cornerOf(const Engine& engine, const Model& model, const PolygonEntry& entry,
                       std::size_t corner)
{
    const Polygon& polygon = model.polygons[entry.attribute]; // parallel to attributes
    return engine.viewVertices[entry.firstVertex + polygon.corner[corner]];
}

Frame measureFrame(View& view, Engine& engine, const Model& model, ClientSize client)
{
    listFrame(view, engine, model, client);
    const FrameObjects objects(engine, model);
    Frame frame(objects.polygonCount());
    for (std::uint32_t i = 0; i < engine.entryCount; ++i) {
        const PolygonEntry& entry = engine.entries[i];
        std::array<float, 4> z{};
        for (std::size_t c = 0; c < 4; ++c) z[c] = cornerOf(engine, model, entry, c).z;
        const auto [nearest, farthest] = std::minmax_element(z.begin(), z.end());
        frame[objects.number(entry)] = {{(z[0] + z[1] + z[2] + z[3]) * 0.25f, *nearest, *farthest},
                                        true};
    }
    return frame;
}

/// A turn of the camera to one side.
struct Turn {
    std::int32_t x, y;
    std::uint32_t degrees;
};

std::vector<Turn> turnsToTry()
{
    std::vector<Turn> turns;
    for (std::uint32_t degrees = 1; degrees <= largestTurnTried; ++degrees) {
        const auto d = static_cast<std::int32_t>(degrees);
        turns.insert(turns.end(),
                     {{d, 0, degrees}, {-d, 0, degrees}, {0, d, degrees}, {0, -d, degrees}});
    }
    return turns;
}

View turnedView(const View& view, Engine& engine, const Turn& turn)
{
    View turned = view;
    // The tool turns by a degree for each pixel that the mouse goes.
    applyViewTool(turned, engine, ViewTool::rotateModel, {turn.x, turn.y, {0, 0}, false});
    return turned;
}

struct Box {
    std::int32_t left, top, right, bottom;
};

Box boxOf(const ScreenQuad& quad)
{
    const auto [left, right] = std::minmax({quad[0].x, quad[1].x, quad[2].x, quad[3].x});
    const auto [top, bottom] = std::minmax({quad[0].y, quad[1].y, quad[2].y, quad[3].y});
    return {left, top, right, bottom};
}

/// Calls `visit(i, j)`, i < j, for all whose boxes overlap by more than a line, until it says
/// false.
template <typename Visit> void visitOverlapping(const std::vector<Box>& boxes, const Visit& visit)
{
    std::vector<std::uint32_t> byLeft(boxes.size());
    std::iota(byLeft.begin(), byLeft.end(), 0u);
    std::ranges::sort(byLeft, {}, [&](std::uint32_t i) { return boxes[i].left; });
    for (std::size_t a = 0; a < byLeft.size(); ++a) {
        const Box& first = boxes[byLeft[a]];
        for (std::size_t b = a + 1; b < byLeft.size(); ++b) {
            const Box& second = boxes[byLeft[b]];
            if (second.left >= first.right) break;
            if (second.top >= first.bottom || first.top >= second.bottom) continue;
            if (!visit(std::min(byLeft[a], byLeft[b]), std::max(byLeft[a], byLeft[b]))) return;
        }
    }
}

/// All that the search goes by.
class PairSearch {
public:
    PairSearch(const View& view, Engine& engine, const Model& model, ClientSize client,
               std::span<const OrderedPolygon> order)
        : order_(order), turns_(turnsToTry())
    {
        for (const Turn& turn : turns_) {
            View turned = turnedView(view, engine, turn);
            frames_.push_back(measureFrame(turned, engine, model, client));
        }
        View present = view;
        frames_.push_back(measureFrame(present, engine, model, client));
        const FrameObjects objects(engine, model);
        corners_.resize(objects.polygonCount());
        for (std::uint32_t i = 0; i < engine.entryCount; ++i)
            for (std::size_t c = 0; c < 4; ++c)
                corners_[objects.number(engine.entries[i])][c] =
                    cornerOf(engine, model, engine.entries[i], c);
        projection_ = {engine.settings.centre, engine.settings.focalLength, view.perspective};
    }

    std::vector<UnstablePair> find() const
    {
        std::vector<Box> boxes;
        boxes.reserve(order_.size());
        for (const OrderedPolygon& polygon : order_) boxes.push_back(boxOf(polygon.point));
        std::vector<UnstablePair> pairs;
        std::size_t tried = 0;
        visitOverlapping(boxes, [&](std::uint32_t i, std::uint32_t j) {
            if (++tried > mostPairsTried || pairs.size() == mostUnstablePairs) return false;
            const std::uint32_t degrees = smallestTurn(i, j);
            if (degrees == 0) return true;
            const ScreenOverlap overlap = overlapOf(order_[i].point, order_[j].point);
            const double smaller = std::min(areaOf(order_[i].point), areaOf(order_[j].point));
            if (overlap.area >= leastOverlap && overlap.area >= leastOverlapShare * smaller)
                pairs.push_back({i, j, degrees, overlap.area, settle(i, j, overlap)});
            return true;
        });
        std::ranges::stable_sort(pairs, std::greater<>(), &UnstablePair::overlap);
        return pairs;
    }

private:
    /// How much farther polygon i is than j in a frame by these rules; 0 where one is not listed.
    float lead(const Frame& frame, std::uint32_t i, std::uint32_t j, std::size_t ruleI,
               std::size_t ruleJ) const
    {
        const RuleDepths &a = frame[order_[i].number], &b = frame[order_[j].number];
        return a.listed && b.listed ? a.byRule[ruleI] - b.byRule[ruleJ] : 0.0f;
    }

    /// The turn after which j, now drawn behind i, is drawn first; 0 when none of them does that.
    std::uint32_t smallestTurn(std::uint32_t i, std::uint32_t j) const
    {
        const std::size_t ruleI = ruleOf(order_[i].sort), ruleJ = ruleOf(order_[j].sort);
        for (std::size_t t = 0; t < turns_.size(); ++t)
            if (lead(frames_[t], i, j, ruleI, ruleJ) < 0) return turns_[t].degrees;
        return 0;
    }

    /// Whether these rules put i behind j (`wanted` 1) or before it (-1) from all sides, or, for 0,
    /// the one or the other.
    bool isSettled(std::uint32_t i, std::uint32_t j, std::size_t ruleI, std::size_t ruleJ,
                   int wanted) const
    {
        for (const Frame& frame : frames_) {
            const bool areListed = frame[order_[i].number].listed && frame[order_[j].number].listed;
            if (!areListed) continue;
            const float leads = lead(frame, i, j, ruleI, ruleJ);
            const int way = leads > 0 ? 1 : leads < 0 ? -1 : 0;
            if (wanted == 0) wanted = way;
            if (way == 0 || way != wanted) return false;
        }
        return true;
    }

    std::vector<SortChange> settle(std::uint32_t i, std::uint32_t j,
                                   const ScreenOverlap& overlap) const
    {
        const int wanted = compareDepth(corners_[order_[i].number], corners_[order_[j].number],
                                        overlap.middle, projection_);
        const std::size_t ruleI = ruleOf(order_[i].sort), ruleJ = ruleOf(order_[j].sort);
        for (std::size_t rule = 0; rule < sortRules.size(); ++rule) {
            if (isSettled(i, j, ruleI, rule, wanted)) return {{j, sortRules[rule]}};
            if (isSettled(i, j, rule, ruleJ, wanted)) return {{i, sortRules[rule]}};
        }
        for (std::size_t a = 0; a < sortRules.size(); ++a)
            for (std::size_t b = 0; b < sortRules.size(); ++b)
                if (isSettled(i, j, a, b, wanted)) return {{i, sortRules[a]}, {j, sortRules[b]}};
        return {};
    }

    std::span<const OrderedPolygon> order_;
    std::vector<Turn> turns_;
    std::vector<Frame> frames_;        ///< for each turn; last the present one
    std::vector<ViewCorners> corners_; ///< by number, in the present frame
    Projection projection_{};
};

} // namespace

std::vector<UnstablePair> findUnstablePairs(const View& view, Engine& engine, const Model& model,
                                            ClientSize client,
                                            std::span<const OrderedPolygon> order)
{
    if (!isSameOrder(listDrawOrder(view, engine, model, client), order)) return {};
    return PairSearch(view, engine, model, client, order).find();
}

} // namespace facetor
