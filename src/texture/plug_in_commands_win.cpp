#include "texture/plug_in_commands_win.h"

#include "app/editor_win.h"
#include "app/model_view_window.h"
#include "base/text.h"
#include "model/undo.h"
#include "texture/export_dialog.h"
#include "texture/plug_ins_win.h"
#include "ui/handles_win.h"
#include "ui/window_data_win.h"

#include <utility>

namespace facetor {

namespace {

/// Shows why something is not done. A library that is gone or broken is the graver matter.
CommandOutcome refuse(Editor& editor, const InputFault& fault)
{
    setAlertTexts(editor.alerts, fault.text1, fault.text2);
    alert(editor.alerts, editor.mainWindow, fault.message,
          fault.message == Message::noPlugIn ? AlertStyle::stop : AlertStyle::exclamation);
    return CommandOutcome::abandoned;
}

std::string plugInPath(const Editor& editor, const std::string& file)
{
    return editor.plugIns.folder + "\\" + file;
}

/// Puts one image into a slot, or shows why not.
bool importOne(Editor& editor, const std::string& plugIn, const std::string& path,
               std::uint32_t slot)
{
    ImportedImage image;
    {
        const WaitCursor waiting;
        image = importImage(plugIn, path, editor.transparentColour);
    }
    if (image.fault) {
        (void)refuse(editor, *image.fault);
        return false;
    }
    editor.document.textures.set(slot, image.width, image.height, std::move(image.pixels));
    return true;
}

/// Writes one slot as an image, or shows why not.
void exportOne(Editor& editor, const std::string& plugIn, const std::string& path,
               std::uint32_t slot)
{
    const TextureSlot& texture = editor.document.textures.slot(slot);
    Message message;
    {
        const WaitCursor waiting;
        message = exportImage(plugIn, path, texture.width, texture.height,
                              {texture.pixels, std::size_t{texture.width} * texture.height});
    }
    if (message == Message::none) return;
    const bool unusable =
        message == Message::noPlugIn || message == Message::colourModeNotSupported;
    alert(editor.alerts, editor.mainWindow, message,
          unusable ? AlertStyle::stop : AlertStyle::exclamation);
}

/// What follows an import: the undo slot may hold a texture that is no longer there.
void showImported(Editor& editor)
{
    undoClear(editor.undo);
    redrawTextures(editor);
    requestRedraw(editor);
}

} // namespace

bool scanPlugIns(Editor& editor)
{
    editor.plugIns.folder = programFolder(editor.mainWindow);
    if (!editor.plugIns.folder.empty())
        editor.plugIns.folder += "\\" + loadCatalogueText(editor.mainWindow, Word::plugInFolder);
    const auto report = [&](Message message, const std::string& file) {
        setAlertTexts(editor.alerts, file, {});
        alert(editor.alerts, editor.mainWindow, message, AlertStyle::exclamation);
    };
    const Message message = scanPlugInFolder(editor.plugIns, report);
    if (message == Message::none) return true;
    alert(editor.alerts, editor.mainWindow, message, AlertStyle::exclamation);
    return false;
}

CommandOutcome importTextures(Editor& editor)
{
    const PlugInList& list = editor.plugIns.import;
    if (list.files.empty()) return refuse(editor, {Message::noPlugIn});
    editor.fileDialogs.importTextures.filters = list.filter.data();
    const auto chosen = askOpenFiles(editor.mainWindow, editor.fileDialogs.importTextures);
    if (!chosen || chosen->filter < 1 || chosen->filter > list.files.size())
        return CommandOutcome::abandoned;
    if (chosen->paths.empty()) return refuse(editor, {Message::outOfMemory});
    const std::string plugIn = plugInPath(editor, list.files[chosen->filter - 1]);
    const std::uint32_t first = editor.document.textures.current;
    const std::uint32_t count = importCount(first, chosen->paths.size());
    for (std::uint32_t i = 0; i < count; ++i) // one that fails does not keep the others out
        (void)importOne(editor, plugIn, chosen->paths[i], first + i);
    showImported(editor);
    return CommandOutcome::done;
}

CommandOutcome importTexturePath(Editor& editor, const std::string& path)
{
    for (const std::string& file : editor.plugIns.import.files) {
        const std::string plugIn = plugInPath(editor, file);
        const Message message = checkImage(plugIn, path);
        if (message == Message::formatNotSupported) continue;
        if (message != Message::none) return refuse(editor, {message});
        if (!importOne(editor, plugIn, path, editor.document.textures.current))
            return CommandOutcome::abandoned;
        showImported(editor);
        return CommandOutcome::done;
    }
    return refuse(editor, {Message::formatNotSupported});
}

CommandOutcome exportTextures(Editor& editor)
{
    const TextureList& list = editor.document.textures;
    const std::uint32_t usedCount = list.usedCount();
    if (usedCount == 0) return refuse(editor, {Message::texturesEmpty});
    const auto choice = askExportChoice(editor);
    if (!choice) return CommandOutcome::abandoned;
    editor.exportChoice = *choice;
    const PlugInList& plugIns = editor.plugIns.export_;
    if (plugIns.files.empty()) return refuse(editor, {Message::noPlugIn});
    editor.fileDialogs.exportTextures.filters = plugIns.filter.data();
    const auto chosen = askSaveFile(editor.mainWindow, editor.fileDialogs.exportTextures,
                                    std::string(cutExtension(editor.document.textureFile)));
    if (!chosen || chosen->filter < 1 || chosen->filter > plugIns.files.size())
        return CommandOutcome::abandoned;
    const std::string plugIn = plugInPath(editor, plugIns.files[chosen->filter - 1]);
    const SlotRange range = exportedSlots(*choice, list.current, usedCount);
    for (std::uint32_t slot = range.first; slot < range.end; ++slot) // one that fails, likewise
        exportOne(editor, plugIn, exportPath(chosen->path, slot, usedCount), slot);
    return CommandOutcome::done;
}

} // namespace facetor
