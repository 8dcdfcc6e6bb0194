#include "app/model_commands_win.h"

#include "app/editor_win.h"
#include "app/file_names.h"
#include "app/hierarchy_window.h"
#include "app/main_window.h"
#include "app/model_view_window.h"
#include "app/recent_menu_win.h"
#include "app/sample_folder_win.h"
#include "app/title_win.h"
#include "base/text.h"
#include "model/model_file.h"
#include "output/model_source.h"
#include "resources/resource_ids.h"
#include "texture/texture_commands_win.h"
#include "texture/texture_file.h"
#include "ui/handles_win.h"
#include "ui/window_data_win.h"

namespace facetor {

namespace {

Decision askSave(Editor& editor, Message question, Word reason, void (*save)(Editor&))
{
    setAlertTexts(editor.alerts, loadCatalogueText(editor.mainWindow, reason), {});
    switch (alert(editor.alerts, editor.mainWindow, question, AlertStyle::question)) {
    case AlertButton::yes: save(editor); return Decision::goOn;
    case AlertButton::no: return Decision::goOn;
    default: return Decision::stay;
    }
}

CommandOutcome loadModel(Editor& editor, const std::string& path)
{
    Message message;
    {
        const WaitCursor waiting;
        message = readModelFile(editor.document.model, path);
    }
    if (message != Message::none) {
        alert(editor.alerts, editor.mainWindow, message, AlertStyle::exclamation);
        // The reader may have replaced a part of the model.
        refreshHierarchyTree(editor);
        requestRedraw(editor);
        return CommandOutcome::abandoned;
    }
    const std::string full = fullPath(path);
    addRecentModel(editor, full);
    editor.document.modelUntitled = false;
    undoClear(editor.undo);
    setTitleFile(editor, full.c_str());
    fitModel(editor.view, editor.engine, editor.document.model, clientSize(editor.mainWindow));
    refreshHierarchyTree(editor);
    requestRedraw(editor);
    return CommandOutcome::done;
}

/// Numbers of the filters of the Save as dialog.
enum SaveFilter : DWORD { saveAsModel = 1, saveAsSource = 2 };

/// Writes the model, in the form that a filter stands for, and shows the message of a failure.
CommandOutcome writeModelAs(Editor& editor, const std::string& path, DWORD filter)
{
    Message message;
    {
        const WaitCursor waiting;
        message = filter == saveAsSource ? writeModelSource(editor.document.model, path)
                                         : writeModelFile(editor.document.model, path);
    }
    if (message != Message::none) {
        alert(editor.alerts, editor.mainWindow, message, AlertStyle::exclamation);
        return CommandOutcome::abandoned;
    }
    if (filter != saveAsSource) addRecentModel(editor, path);
    return CommandOutcome::done;
}

} // namespace

Decision askSaveModel(Editor& editor, Word reason)
{
    if (!editor.document.modelChanged) return Decision::goOn;
    return askSave(editor, Message::saveModelFirst, reason,
                   [](Editor& e) { SendMessageA(e.mainWindow, WM_COMMAND, IDM_FILE_SAVE_AS, 0); });
}

Decision askSaveTextures(Editor& editor, Word reason)
{
    if (!editor.document.texturesChanged) return Decision::goOn;
    // Not by way of the window, which may be closed.
    return askSave(editor, Message::saveTexturesFirst, reason,
                   [](Editor& e) { runTextureCommand(e, IDM_FILE_SAVE_AS, 0); });
}

CommandOutcome openModelPath(Editor& editor, const std::string& path)
{
    if (askSaveModel(editor, Word::openingNewFile) == Decision::stay)
        return CommandOutcome::abandoned;
    if (!probeModelFile(path)) {
        alert(editor.alerts, editor.mainWindow, Message::formatNotSupported,
              AlertStyle::exclamation);
        return CommandOutcome::abandoned;
    }
    return loadModel(editor, path);
}

CommandOutcome openModelWithDialog(Editor& editor)
{
    if (askSaveModel(editor, Word::openingNewFile) == Decision::stay)
        return CommandOutcome::abandoned;
    offerSamples(editor, editor.fileDialogs.openModel);
    const auto chosen = askOpenFile(editor.mainWindow, editor.fileDialogs.openModel);
    if (!chosen) return CommandOutcome::abandoned;
    return loadModel(editor, chosen->path);
}

CommandOutcome saveModel(Editor& editor)
{
    if (editor.document.modelUntitled) return saveModelAs(editor);
    return writeModelAs(editor, modelSavePath(titleFile(editor)), saveAsModel);
}

CommandOutcome saveModelAs(Editor& editor)
{
    const auto chosen = askSaveFile(editor.mainWindow, editor.fileDialogs.saveModel,
                                    std::string(cutExtension(titleFile(editor))));
    if (!chosen) return CommandOutcome::abandoned;
    if (writeModelAs(editor, chosen->path, chosen->filter) != CommandOutcome::done)
        return CommandOutcome::abandoned;
    setTitleFile(editor, modelSavePath(chosen->path).c_str());
    editor.document.modelUntitled = false;
    return CommandOutcome::done;
}

void openAnyPath(Editor& editor, const std::string& path)
{
    if (isTextureFile(path)) {
        runTextureCommand(editor, IDM_FILE_OPEN_PATH, reinterpret_cast<LPARAM>(path.c_str()));
        return;
    }
    SendMessageA(editor.mainWindow, WM_COMMAND, IDM_FILE_OPEN_PATH,
                 reinterpret_cast<LPARAM>(path.c_str()));
}

} // namespace facetor
