#include "commands/watched_pictures.h"

#include "base/file.h"
#include "base/file_lock.h"
#include "base/folder.h"
#include "base/text.h"
#include "commands/plug_in_commands.h"
#include "exchange/foreign_file.h"
#include "session/file_names.h"
#include "state/editor.h"
#include "ui/window_data.h"
#include "watch/picture_store.h"
#include "windows/model_view_window.h"
#include "windows/texture_window.h"

#include <algorithm>
#include <map>
#include <optional>
#include <span>
#include <utility>

namespace facetor {

namespace {

constexpr int lockPatience = 200; ///< milliseconds; another copy of the program writes meanwhile

/// What an image has become, as one plug-in reads it, with the links to it.
struct RereadPicture {
    std::string path;
    FileStamp stamp;
    ImportedImage image;
    PictureLinks links;
};

/// None when it is there and cannot be read.
std::optional<PictureStore> readStore(const std::string& path)
{
    const auto bytes = readFile(path);
    if (!bytes) return stampOf(path).exists ? std::nullopt : std::optional(PictureStore());
    return parsePictures({reinterpret_cast<const char*>(bytes->data()), bytes->size()});
}

/// A fault in one line.
std::string faultText(const Editor& editor, const InputFault& fault)
{
    const HWND window = editor.mainWindow;
    return expandPlaceholders(loadCatalogueText(window, fault.message),
                              loadCatalogueText(window, fault.word1),
                              loadCatalogueText(window, fault.word2));
}

void tell(Editor& editor, Word word, const std::string& path, const std::string& more)
{
    editor.statusLine =
        expandPlaceholders(loadCatalogueText(editor.mainWindow, word), fileNameOf(path), more);
}

/// The image is known as it is now, whether it could be read or not.
void setStamp(PictureLinks& links, const std::string& path, const FileStamp& stamp)
{
    for (PictureLink& link : links)
        if (link.path == path) link.stamp = stamp;
}

/// Whether a name is that of a plug-in which the start found: any other would lead out of their
/// folder, to a library that nobody chose.
bool readsImages(const Editor& editor, const std::string& plugIn)
{
    return std::ranges::any_of(editor.plugIns.import.files, [&](const std::string& file) {
        return equalIgnoringCase(file, plugIn);
    });
}

/// Shares the texels of the image with a slot.
void putPicture(TextureList& list, const RereadPicture& picture, std::uint32_t slot)
{
    list.set(slot, picture.image.width, picture.image.height, picture.image.pixels);
}

} // namespace

std::vector<WatchedFile> watchedPictures(const Editor& editor)
{
    std::map<std::string, FileStamp> stamps;
    for (const PictureLink& link : editor.watching.links) stamps[link.path] = link.stamp;
    std::vector<WatchedFile> files;
    for (const auto& [path, stamp] : stamps) files.push_back({path, stamp});
    return files;
}

void rereadPictures(Editor& editor, const WatchAction& action)
{
    Watching& watching = editor.watching;
    TextureList& list = editor.document.textures;
    const PictureLinks live = liveLinks(watching.links, list);
    std::vector<RereadPicture> pictures;
    for (const ChangedFile& changed : action.changed) {
        const std::string& path = changed.path;
        const FileStamp stamp = stampOf(path);
        std::map<std::string, RereadPicture> byPlugIn;
        for (const PictureLink& link : live)
            if (link.path == path) byPlugIn[link.plugIn].links.push_back(link);
        std::optional<InputFault> fault;
        for (auto& [plugIn, picture] : byPlugIn) {
            picture.path = path;
            picture.stamp = stamp;
            picture.image = readPicture(editor, plugIn, path);
            if (picture.image.fault) fault = picture.image.fault;
        }
        const bool isWhole = stampOf(path) == stamp; // else it was written meanwhile
        if (isWhole)
            for (auto& [plugIn, picture] : byPlugIn)
                if (!picture.image.fault) pictures.push_back(std::move(picture));
        if (isWhole && !fault)
            setStamp(watching.links, path, stamp);
        else if (watching.watch.fail({action.part, false, {changed}}, GetTickCount64()) && fault) {
            setStamp(watching.links, path, stamp);
            tell(editor, Word::statusNotReread, path, faultText(editor, *fault));
        }
    }
    if (pictures.empty()) return;
    (void)change(editor.document, Word::stepReread, [&] {
        for (const RereadPicture& picture : pictures)
            for (const PictureLink& link : picture.links) putPicture(list, picture, link.slot);
        return EditOutcome{};
    });
    for (RereadPicture& picture : pictures) {
        for (PictureLink& link : picture.links) {
            link.stamp = picture.stamp;
            linkPicture(watching.links, list, std::move(link));
        }
        tell(editor, Word::statusReread, picture.path, {});
    }
    undoClear(editor.document.undo); // it may hold a texture that is no longer there
    redrawTextures(editor);
    requestRedraw(editor);
}

void recallPictures(Editor& editor, const std::string& path)
{
    const std::string& file = editor.watching.picturesPath;
    if (file.empty()) return;
    const std::optional<PictureStore> store = readStore(file);
    if (!store) return;
    PictureLinks known = linksOf(*store, path);
    std::erase_if(known,
                  [&](const PictureLink& link) { return !readsImages(editor, link.plugIn); });
    PictureLinks& links = editor.watching.links;
    for (const PictureLink& link : liveLinks(known, editor.document.textures))
        if (std::ranges::find(links, link) == links.end()) links.push_back(link);
}

void rememberPictures(Editor& editor, const std::string& path)
{
    const std::string& file = editor.watching.picturesPath;
    if (file.empty()) return;
    PictureLinks links = liveLinks(editor.watching.links, editor.document.textures);
    FileLock lock;
    (void)makeFolder(folderOf(file)); // what then fails is no loss to the save
    if (!lock.takeWithin(file + ".lock", lockPatience)) return;
    std::optional<PictureStore> store = readStore(file);
    if (!store) return; // what it holds of other lists would be lost
    if (links.empty() && linksOf(*store, path).empty()) return;
    rememberLinks(*store, path, std::move(links));
    const std::string text = formatPictures(*store);
    (void)writeFile(file, std::as_bytes(std::span(text)));
}

} // namespace facetor
