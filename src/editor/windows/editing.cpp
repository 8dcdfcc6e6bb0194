#include "windows/editing.h"

#include "state/editor.h"
#include "ui/window_data.h"
#include "windows/model_view_window.h"

namespace facetor {

PickedAfter pickedAfterByCtrl()
{
    return isKeyDown(VK_CONTROL) ? PickedAfter::clear : PickedAfter::keep;
}

void editModel(Editor& editor, Word name, ModelEdit edit, const std::function<void(Model&)>& action)
{
    const EditOutcome outcome = changeModel(editor.document, name, edit, action);
    if (outcome.undo != Message::none)
        alert(editor.alerts, editor.mainWindow, outcome.undo, AlertStyle::exclamation);
    requestRedraw(editor);
}

} // namespace facetor
