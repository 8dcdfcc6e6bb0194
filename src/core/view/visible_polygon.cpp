#include "view/visible_polygon.h"

#include <vector>

namespace facetor {

namespace {

/// Fewer pixels than this are nothing to be seen.
constexpr std::size_t leastPixels = 6;

std::vector<Rgb555> drawnPixels(View& view, Engine& engine, const Model& model, ClientSize client)
{
    view.frameNeedsDrawing = true;
    paintFrame(view, engine, model, client);
    const Rgb555* first = engine.surface.pixels();
    return {first, first + engine.surface.pixelCount()};
}

} // namespace

std::size_t countVisiblePixels(const View& view, Engine& engine, Model& model,
                               std::uint32_t attribute, ClientSize client)
{
    View plain = view;
    plain.dragging = false;
    plain.drawnPolygons = allPolygons;
    std::uint32_t& flags = model.attributes[attribute].flags;
    const std::uint32_t before = flags;
    flags &= ~std::uint32_t{picked};
    const std::vector<Rgb555> unmarked = drawnPixels(plain, engine, model, client);
    flags |= picked;
    const std::vector<Rgb555> marked = drawnPixels(plain, engine, model, client);
    flags = before;
    std::size_t count = 0;
    for (std::size_t i = 0; i < marked.size(); ++i)
        if (marked[i] != unmarked[i]) ++count;
    return count;
}

FixedView findBestView(const View& view, Engine& engine, Model& model, std::uint32_t attribute,
                       ClientSize client)
{
    FixedView best = FixedView::forward;
    std::size_t most = 0;
    for (const FixedView direction : {FixedView::forward, FixedView::back, FixedView::left,
                                      FixedView::right, FixedView::top, FixedView::bottom}) {
        View turned = view;
        applyFixedView(turned, engine, direction);
        const std::size_t count = countVisiblePixels(turned, engine, model, attribute, client);
        if (count <= most) continue;
        most = count;
        best = direction;
    }
    return best;
}

void bringIntoSight(View& view, Engine& engine, Model& model, std::uint32_t attribute,
                    ClientSize client)
{
    view.frameNeedsDrawing = true;
    if (countVisiblePixels(view, engine, model, attribute, client) >= leastPixels) return;
    View turned = view;
    applyFixedView(turned, engine, findBestView(view, engine, model, attribute, client));
    if (countVisiblePixels(turned, engine, model, attribute, client) == 0) return;
    view = turned;
    view.frameNeedsDrawing = true;
}

} // namespace facetor
