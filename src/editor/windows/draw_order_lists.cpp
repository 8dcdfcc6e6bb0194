#include "windows/draw_order_lists.h"

#include "base/text.h"
#include "state/editor.h"
#include "ui/window_data.h"

#include <algorithm>

namespace facetor {

namespace {

std::string expanded(const Editor& editor, Word word, const std::string& text1,
                     const std::string& text2 = {})
{
    return expandPlaceholders(loadCatalogueText(editor.mainWindow, word), text1, text2);
}

std::string sortName(const Editor& editor, std::uint16_t sort)
{
    return loadCatalogueText(editor.mainWindow, sort == sortNearest    ? Word::sortNearestName
                                                : sort == sortFarthest ? Word::sortFarthestName
                                                                       : Word::sortCentreName);
}

std::string depthText(const OrderedPolygon& polygon)
{
    return formatFixed(polygon.depth, 1, 0, PositiveSign::none);
}

std::string objectText(const Editor& editor, const OrderedPolygon& polygon)
{
    return std::to_string(polygon.object) + " \"" + editor.document.model.names[polygon.object] +
           '"';
}

std::string nameText(const Editor& editor, const OrderedPolygon& polygon)
{
    return expanded(editor, Word::polygonName, objectText(editor, polygon),
                    std::to_string(polygon.polygon));
}

std::string shortName(const Editor& editor, const OrderedPolygon& polygon)
{
    return objectText(editor, polygon) + ", " + std::to_string(polygon.polygon);
}

std::string settlingText(const Editor& editor, const UnstablePair& pair)
{
    if (pair.settledBy.empty()) return loadCatalogueText(editor.mainWindow, Word::orderUnsettled);
    std::string text;
    for (const SortChange& change : pair.settledBy) {
        if (!text.empty()) text += "; ";
        text += expanded(editor, Word::orderSetting,
                         shortName(editor, editor.drawOrder.order[change.place]),
                         sortName(editor, change.sort));
    }
    return text;
}

} // namespace

std::string placeText(const Editor& editor, std::size_t place)
{
    const auto& order = editor.drawOrder.order;
    if (place >= order.size()) return {};
    const OrderedPolygon& polygon = order[place];
    return expanded(
        editor, Word::orderSetting, nameText(editor, polygon),
        expanded(editor, Word::orderDepth, depthText(polygon), sortName(editor, polygon.sort)));
}

std::string writerText(const Editor& editor, std::size_t row, int column)
{
    const DrawOrderWindow& shown = editor.drawOrder;
    if (row >= shown.writers.size() || shown.writers[row] >= shown.order.size()) return {};
    const std::uint32_t place = shown.writers[row];
    const OrderedPolygon& polygon = shown.order[place];
    switch (column) {
    case 0: return std::to_string(place + 1);
    case 1: return nameText(editor, polygon);
    case 2: return sortName(editor, polygon.sort);
    default: return depthText(polygon);
    }
}

std::string pairText(const Editor& editor, std::size_t row, int column)
{
    const DrawOrderWindow& shown = editor.drawOrder;
    if (row >= shown.pairs.size()) return {};
    const UnstablePair& pair = shown.pairs[row];
    if (std::max(pair.farther, pair.nearer) >= shown.order.size()) return {};
    switch (column) {
    case 0: return shortName(editor, shown.order[pair.farther]);
    case 1: return shortName(editor, shown.order[pair.nearer]);
    case 2: return expanded(editor, Word::orderDegrees, std::to_string(pair.degrees));
    default: return settlingText(editor, pair);
    }
}

} // namespace facetor
