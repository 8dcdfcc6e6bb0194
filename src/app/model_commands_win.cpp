#include "app/model_commands_win.h"

#include "app/editor_win.h"
#include "app/main_window.h"
#include "app/model_view_window.h"
#include "app/title_win.h"
#include "model/model_file.h"
#include "resources/resource_ids.h"
#include "texture/texture_file.h"
#include "ui/handles_win.h"
#include "ui/window_data_win.h"

namespace facetor {

namespace {

Decision askSave(Editor& editor, Message question, Word reason, int saveCommand)
{
    setAlertTexts(editor.alerts, loadCatalogueText(editor.mainWindow, reason), {});
    switch (alert(editor.alerts, editor.mainWindow, question, AlertStyle::question)) {
    case AlertButton::yes:
        SendMessageA(editor.mainWindow, WM_COMMAND, static_cast<WPARAM>(saveCommand), 0);
        return Decision::goOn;
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
        requestRedraw(editor); // the reader may have replaced a part of the model
        return CommandOutcome::abandoned;
    }
    setTitleFile(editor, fullPath(path).c_str());
    fitModel(editor.view, editor.engine, editor.document.model, clientSize(editor.mainWindow));
    requestRedraw(editor);
    return CommandOutcome::done;
}

} // namespace

Decision askSaveModel(Editor& editor, Word reason)
{
    if (!editor.document.modelChanged) return Decision::goOn;
    return askSave(editor, Message::saveModelFirst, reason, IDM_FILE_SAVE_AS);
}

Decision askSaveTextures(Editor& editor, Word reason)
{
    if (!editor.document.texturesChanged) return Decision::goOn;
    return askSave(editor, Message::saveTexturesFirst, reason, IDM_TEXTURE_SAVE);
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

void openTexturePath(Editor& editor, const std::string& path)
{
    if (askSaveTextures(editor, Word::openingNewFile) == Decision::stay) return;
    {
        const WaitCursor waiting;
        // What could be read before an error stays in the list, and is shown.
        (void)readTextureFile(editor.document.textures, path);
    }
    requestRedraw(editor);
}

void openAnyPath(Editor& editor, const std::string& path)
{
    if (isTextureFile(path)) return openTexturePath(editor, path);
    SendMessageA(editor.mainWindow, WM_COMMAND, IDM_FILE_OPEN_PATH,
                 reinterpret_cast<LPARAM>(path.c_str()));
}

} // namespace facetor
