#include "commands/select_commands.h"

#include "resources/resource_ids.h"
#include "state/editor.h"
#include "ui/window_data.h"
#include "view/select_more.h"
#include "windows/attribute_window.h"
#include "windows/hierarchy_window.h"
#include "windows/model_view_window.h"

namespace facetor {

namespace {

Mark markByKeys()
{
    return isKeyDown(VK_CONTROL) || isKeyDown(VK_SHIFT) ? Mark::clear : Mark::set;
}

Likeness likenessOf(int command)
{
    return command == IDM_SELECT_SAME_COLOUR    ? Likeness::colour
           : command == IDM_SELECT_SAME_TEXTURE ? Likeness::texture
                                                : Likeness::attribute;
}

} // namespace

void selectMore(Editor& editor, int command)
{
    Model& model = editor.document.model;
    HiddenPolygons& hidden = editor.view.hidden;
    switch (command) {
    case IDM_SELECT_INVERT: invertSelection(model, hidden); break;
    case IDM_SELECT_GROW: growSelection(model, hidden); break;
    case IDM_SELECT_SHRINK: shrinkSelection(model, hidden); break;
    case IDM_SELECT_CONNECTED: selectConnected(model, hidden, markByKeys()); break;
    case IDM_HIDE_PICKED: hidePicked(model, hidden); break;
    case IDM_SHOW_HIDDEN: showHidden(model, hidden); break;
    default: selectLike(model, hidden, likenessOf(command), markByKeys()); break;
    }
    requestRedraw(editor);
}

void selectConnectedAt(Editor& editor, POINT position)
{
    Model& model = editor.document.model;
    listFrame(editor.view, editor.engine, model, viewSize(editor));
    sortPolygons(editor.engine);
    const auto hit = hitTest(editor.engine, {position.x, position.y}, isKeyDown(VK_TAB) ? 1u : 0u);
    if (!hit) return;
    const std::uint32_t polygon = editor.engine.entries[*hit].attribute;
    selectConnectedTo(model, editor.view.hidden, polygon, markByKeys());
    loadWorkingAttribute(editor, polygon);
    showObjectOf(editor, polygon);
    requestRedraw(editor);
}

} // namespace facetor
