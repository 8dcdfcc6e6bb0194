#include "commands/view_commands.h"

#include "resources/resource_ids.h"
#include "state/editor.h"
#include "ui/window_data.h"
#include "view/select_more.h"
#include "windows/model_view_window.h"

#include <windows.h>

#include <mmsystem.h>

namespace facetor {

namespace {

/// Plays a sound of the program's resources and does not wait for its end. A computer without
/// sound, or without the resource, stays silent.
void playSound(HINSTANCE instance, const char* name)
{
    const HRSRC resource = FindResourceA(instance, name, "WAVE");
    if (!resource) return;
    const HGLOBAL sound = LoadResource(instance, resource); // lives as long as the program
    if (!sound) return;
    PlaySoundA(static_cast<const char*>(LockResource(sound)), nullptr,
               SND_MEMORY | SND_ASYNC | SND_NODEFAULT);
}

} // namespace

void recallStoredCamera(Editor& editor, std::size_t index)
{
    if (recallCamera(editor.view, index)) requestRedraw(editor);
}

void storeCurrentCamera(Editor& editor, std::size_t index)
{
    storeCamera(editor.view, index);
    playSound(editor.instance, "IDR_WAVE_CAMERA");
    requestRedraw(editor);
}

CommandOutcome changeSelection(Editor& editor, int command)
{
    Model& model = editor.document.model;
    const Mark mark = isKeyDown(VK_CONTROL) ? Mark::clear : Mark::set;
    Message message = Message::none;
    switch (command) {
    case IDM_SELECT_MODEL: selectModel(model, mark); break;
    case IDM_SELECT_MATERIAL: message = selectMaterial(model, mark); break;
    case IDM_SELECT_ALL: selectAll(model, Mark::set); break; // its own key is with Ctrl
    case IDM_SELECT_CLEAR: selectAll(model, Mark::clear); break;
    default: break;
    }
    if (message != Message::none) {
        alert(editor.alerts, editor.mainWindow, message, AlertStyle::exclamation);
        return CommandOutcome::abandoned;
    }
    dropHidden(model, editor.view.hidden);
    requestRedraw(editor);
    return CommandOutcome::done;
}

} // namespace facetor
