#include "commands/plug_in_commands.h"

#include "base/text.h"
#include "commands/watch_commands.h"
#include "dialogs/export_dialog.h"
#include "dialogs/report_dialog.h"
#include "plug_ins/plug_ins.h"
#include "state/editor.h"
#include "ui/handles.h"
#include "ui/progress.h"
#include "ui/window_data.h"
#include "windows/model_view_window.h"
#include "windows/texture_window.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace facetor {

namespace {

/// Our plug-ins for pictures of every kind.
constexpr std::array<std::string_view, 4> allKinds{
    "Various.dll", "VariousFitted.dll", "VariousFittedDiffused.dll", "VariousFittedPattern.dll"};

/// Shows why something is not done. A library that is gone or broken is the graver matter.
CommandOutcome refuse(Editor& editor, const InputFault& fault)
{
    setAlertTexts(editor.alerts, loadCatalogueText(editor.mainWindow, fault.word1),
                  loadCatalogueText(editor.mainWindow, fault.word2));
    alert(editor.alerts, editor.mainWindow, fault.message,
          fault.message == Message::noPlugIn ? AlertStyle::stop : AlertStyle::exclamation);
    return CommandOutcome::abandoned;
}

const UniqueModule& plugInNamed(Editor& editor, const std::string& file)
{
    return loadPlugIn(editor.loadedPlugIns, editor.plugIns.folder + "\\" + file);
}

/// Puts one image into a slot. None, or why not.
std::optional<InputFault> importOne(Editor& editor, const std::string& plugIn,
                                    const std::string& path, std::uint32_t slot)
{
    const WaitCursor waiting;
    const FileStamp stamp = stampOf(path);
    ImportedImage image = readPicture(editor, plugIn, path);
    if (image.fault) return image.fault;
    TextureList& list = editor.document.textures;
    list.set(slot, image.width, image.height, std::move(image.pixels));
    linkPicture(editor.watching.links, list, {slot, plugIn, fullPath(path), stamp, 0});
    return std::nullopt;
}

/// A line of the list of what was refused.
std::string refusalLine(const Editor& editor, const std::string& path, const InputFault& fault)
{
    const std::string reason =
        expandPlaceholders(loadCatalogueText(editor.mainWindow, fault.message),
                           loadCatalogueText(editor.mainWindow, fault.word1),
                           loadCatalogueText(editor.mainWindow, fault.word2));
    return path.substr(path.find_last_of("\\/") + 1) + ": " + reason + "\r\n";
}

/// Whether a plug-in is one of ours that reads pictures of every kind.
bool readsAllKinds(const std::string& file)
{
    return std::ranges::any_of(
        allKinds, [&](std::string_view name) { return equalIgnoringCase(file, name); });
}

/// Writes one slot as an image, or shows why not and is false.
bool exportOne(Editor& editor, const UniqueModule& plugIn, const std::string& path,
               std::uint32_t slot)
{
    const TextureSlot& texture = editor.document.textures.slot(slot);
    Message message;
    {
        const WaitCursor waiting;
        message = exportImage(plugIn, path, texture.width, texture.height,
                              {texture.pixels, std::size_t{texture.width} * texture.height});
    }
    if (message == Message::none) return true;
    const bool unusable =
        message == Message::noPlugIn || message == Message::colourModeNotSupported;
    alert(editor.alerts, editor.mainWindow, message,
          unusable ? AlertStyle::stop : AlertStyle::exclamation);
    return false;
}

/// What follows an import: the undo slot may hold a texture that is no longer there.
void showImported(Editor& editor)
{
    undoClear(editor.document.undo);
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
    const std::string& file = list.files[chosen->filter - 1];
    const std::uint32_t first = editor.document.textures.current;
    const std::uint32_t count = importCount(first, chosen->paths.size());
    const bool closesUp = readsAllKinds(file);
    std::string refused;
    std::optional<InputFault> fault;
    (void)change(editor.document, Word::stepImport, [&] {
        Progress progress(editor.mainWindow, Word::importing, count);
        std::uint32_t slot = first;
        // One that fails does not keep the others out.
        for (std::uint32_t i = 0; i < count && progress.goesOn(chosen->paths[i]); ++i) {
            fault = importOne(editor, file, chosen->paths[i], slot);
            if (fault) refused += refusalLine(editor, chosen->paths[i], *fault);
            if (!fault || !closesUp) ++slot;
        }
        return EditOutcome{};
    });
    showImported(editor);
    if (chosen->paths.size() == 1 && fault)
        (void)refuse(editor, *fault);
    else if (!refused.empty())
        showReport(editor.mainWindow, refused);
    return CommandOutcome::done;
}

CommandOutcome importTexturePath(Editor& editor, const std::string& path)
{
    for (const std::string& file : editor.plugIns.import.files) {
        const ImageSource source = imageSource(plugInNamed(editor, file), path);
        if (!source.check) return refuse(editor, {Message::noPlugIn});
        if (!source.check()) continue;
        std::optional<InputFault> fault;
        (void)change(editor.document, Word::stepImport, [&] {
            fault = importOne(editor, file, path, editor.document.textures.current);
            return EditOutcome{};
        });
        if (fault) return refuse(editor, *fault);
        showImported(editor);
        return CommandOutcome::done;
    }
    return refuse(editor, {Message::formatNotSupported});
}

ImportedImage readPicture(Editor& editor, const std::string& plugIn, const std::string& path)
{
    return importImage(imageSource(plugInNamed(editor, plugIn), path), editor.transparentColour);
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
    const UniqueModule& plugIn = plugInNamed(editor, plugIns.files[chosen->filter - 1]);
    const SlotRange range = exportedSlots(*choice, list.current, usedCount);
    Progress progress(editor.mainWindow, Word::exporting, range.end - range.first);
    std::vector<std::string> written;
    for (std::uint32_t slot = range.first; slot < range.end; ++slot) {
        const std::string path = exportPath(chosen->path, slot, usedCount);
        if (!progress.goesOn(path)) break;
        // One that fails, likewise.
        if (exportOne(editor, plugIn, path, slot)) written.push_back(path);
    }
    noteWritten(editor, WatchedPart::pictures, written);
    return CommandOutcome::done;
}

} // namespace facetor
