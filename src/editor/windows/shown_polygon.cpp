#include "windows/shown_polygon.h"

#include "state/editor.h"
#include "view/selection.h"
#include "view/visible_polygon.h"
#include "windows/attribute_window.h"
#include "windows/model_view_window.h"

#include <algorithm>
#include <optional>
#include <vector>

namespace facetor {

namespace {

/// The first one of those that there are.
std::optional<std::uint32_t> pick(Editor& editor, std::span<const std::uint32_t> attributes)
{
    Model& model = editor.document.model;
    std::vector<std::uint32_t> present;
    std::ranges::copy_if(attributes, std::back_inserter(present),
                         [&](std::uint32_t i) { return i < model.totalPolygonCount; });
    if (present.empty()) return std::nullopt;
    for (const std::uint32_t i : present) editor.view.hidden.reset(i); // what is picked is seen
    selectOnly(model, present);
    loadWorkingAttribute(editor, present.front());
    return present.front();
}

} // namespace

void pickOnly(Editor& editor, std::span<const std::uint32_t> attributes)
{
    if (pick(editor, attributes)) requestRedraw(editor);
}

void pickAndShow(Editor& editor, std::span<const std::uint32_t> attributes)
{
    const auto first = pick(editor, attributes);
    if (!first) return;
    bringIntoSight(editor.view, editor.engine, editor.document.model, *first, viewSize(editor));
    requestRedraw(editor);
}

} // namespace facetor
