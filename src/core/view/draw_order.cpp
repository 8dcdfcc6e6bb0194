#include "view/draw_order.h"

#include "view/frame_objects.h"

#include <algorithm>

namespace facetor {

namespace {

void sortFrame(const View& view, Engine& engine, const Model& model, ClientSize client)
{
    View shown = view;
    listFrame(shown, engine, model, client);
    sortPolygons(engine);
}

} // namespace

std::vector<OrderedPolygon> orderedPolygons(const Engine& engine, const Model& model)
{
    const FrameObjects objects(engine, model);
    std::vector<OrderedPolygon> order;
    order.reserve(engine.entryCount);
    for (std::uint32_t i = 0; i < engine.entryCount; ++i) {
        const PolygonEntry& entry = engine.entries[engine.sortList[i]];
        order.push_back({objects.object(entry), entry.polygon, entry.attribute,
                         objects.number(entry), model.attributes[entry.attribute].sort, entry.depth,
                         entry.point});
    }
    return order;
}

std::vector<OrderedPolygon> listDrawOrder(const View& view, Engine& engine, const Model& model,
                                          ClientSize client)
{
    sortFrame(view, engine, model, client);
    return orderedPolygons(engine, model);
}

bool isSameOrder(std::span<const OrderedPolygon> a, std::span<const OrderedPolygon> b)
{
    const auto isSamePoint = [](const ScreenPoint& p, const ScreenPoint& q) {
        return p.x == q.x && p.y == q.y;
    };
    return std::ranges::equal(a, b, [&](const OrderedPolygon& p, const OrderedPolygon& q) {
        return p.attribute == q.attribute && p.object == q.object && p.number == q.number &&
               p.sort == q.sort && p.depth == q.depth &&
               std::ranges::equal(p.point, q.point, isSamePoint);
    });
}

std::optional<std::uint32_t> findPicked(std::span<const OrderedPolygon> order, const Model& model,
                                        std::size_t from)
{
    const std::size_t count = order.size();
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t place = (std::min(from, count) + i) % count;
        if (isPicked(model.attributes[order[place].attribute]))
            return static_cast<std::uint32_t>(place);
    }
    return std::nullopt;
}

std::vector<std::uint32_t> findWriters(const View& view, Engine& engine, const Model& model,
                                       ClientSize client, ScreenPoint pixel)
{
    View atRest = view; // a drag may draw outlines alone
    atRest.dragging = false;
    sortFrame(atRest, engine, model, client);
    return findWriters(engine, model, pixel);
}

} // namespace facetor
