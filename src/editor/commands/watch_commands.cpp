#include "commands/watch_commands.h"

#include "base/text.h"
#include "commands/import_commands.h"
#include "commands/watched_pictures.h"
#include "model/model_file.h"
#include "session/file_names.h"
#include "state/editor.h"
#include "texture/texture_file.h"
#include "ui/handles.h"
#include "ui/window_data.h"
#include "windows/hierarchy_window.h"
#include "windows/model_view_window.h"
#include "windows/texture_window.h"

#include <algorithm>
#include <utility>

namespace facetor {

namespace {

constexpr UINT lookPace = 150; ///< milliseconds from look to look while something changes

/// How reading a part again ends.
struct Reread {
    bool done = false;
    std::string reason; ///< of a failure
};

/// The file that holds the document's texture list; empty for none.
const std::string& listFileOf(const Editor& editor)
{
    const std::string& named = editor.document.textureFile;
    const auto noted = editor.watching.listFiles.find(named);
    return noted == editor.watching.listFiles.end() ? named : noted->second;
}

std::vector<std::string> pathsOf(const Editor& editor, WatchedPart part)
{
    const Document& document = editor.document;
    std::vector<std::string> paths;
    switch (part) {
    case WatchedPart::model: paths.push_back(document.modelFile); break;
    case WatchedPart::textures: paths.push_back(listFileOf(editor)); break;
    case WatchedPart::source:
        paths = filesOf(editor.imports, document.importedFrom);
        paths.push_back(document.importedFrom);
        break;
    case WatchedPart::pictures: break;
    }
    std::erase(paths, std::string());
    std::ranges::sort(paths);
    return paths;
}

std::vector<WatchedFile> asTheyAre(const std::vector<std::string>& paths)
{
    std::vector<WatchedFile> files;
    for (const std::string& path : paths) files.push_back({path, stampOf(path)});
    return files;
}

/// The same, but for those that a part has left as it knew them then.
std::vector<WatchedFile> asTheyWere(FileWatch& watch, WatchedPart part,
                                    const std::vector<std::string>& paths)
{
    std::vector<WatchedFile> files = asTheyAre(paths);
    const std::vector<WatchedFile>& left = watch.left(part);
    for (WatchedFile& file : files)
        if (const auto known = std::ranges::find(left, file.path, &WatchedFile::path);
            known != left.end())
            file.known = known->known;
    return files;
}

std::vector<std::string> watchedPaths(const FileWatch& watch, WatchedPart part)
{
    std::vector<std::string> paths;
    for (const WatchedFile& file : watch.files(part)) paths.push_back(file.path);
    std::ranges::sort(paths);
    return paths;
}

/// What another file names has slashes, what a dialog gives has backslashes.
bool isSamePath(std::string a, std::string b)
{
    std::ranges::replace(a, '/', '\\');
    std::ranges::replace(b, '/', '\\');
    return equalIgnoringCase(a, b);
}

bool isSourceEdited(const Editor& editor)
{
    const Document& document = editor.document;
    return isModelChanged(document) && document.modelRevision != editor.watching.importedModel;
}

/// Whether nothing is under way that a question or another document would come in the middle of.
bool isIdle(const Editor& editor)
{
    if (!isRunning(editor) || !IsWindowEnabled(editor.mainWindow) || editor.document.changing ||
        editor.drag.left == ButtonState::down || editor.drag.right == ButtonState::down)
        return false;
    GUITHREADINFO thread{};
    thread.cbSize = sizeof thread;
    if (!GetGUIThreadInfo(GetCurrentThreadId(), &thread)) return true;
    constexpr DWORD menuOrMove =
        GUI_INMENUMODE | GUI_POPUPMENUMODE | GUI_SYSTEMMENUMODE | GUI_INMOVESIZE;
    return !thread.hwndCapture && (thread.flags & menuOrMove) == 0 && !isNaming(editor);
}

WatchFacts factsOf(const Editor& editor)
{
    const Document& document = editor.document;
    WatchFacts facts;
    facts.isIdle = isIdle(editor);
    facts.isEdited = {isModelChanged(document) || !document.partlyReadModel.empty(),
                      areTexturesChanged(document) || !document.partlyReadTextures.empty(),
                      isSourceEdited(editor), false};
    return facts;
}

/// Reads a file of ours by `read(reason)`. It is not done when the file was written meanwhile.
template <typename Read>
Reread readAnew(const Editor& editor, const std::string& path, const FileStamp& before,
                const Read& read)
{
    Reason reason;
    const Message message = read(&reason);
    if (message != Message::none || !reason.text.empty())
        return {false,
                reason.text.empty() ? loadCatalogueText(editor.mainWindow, message) : reason.text};
    return {stampOf(path) == before, {}};
}

Reread rereadModel(Editor& editor)
{
    Document& document = editor.document;
    const std::string path = document.modelFile;
    const FileStamp stamp = stampOf(path);
    Model model;
    const Reread end = readAnew(editor, path, stamp, [&](Reason* reason) {
        const Message message = createModelStore(model);
        return message == Message::none ? readModelFile(model, path, reason) : message;
    });
    if (!end.done) return end;
    carryMarks(model, document.model);
    // What is hidden is known by its place in the pools.
    if (model.totalPolygonCount != document.model.totalPolygonCount) editor.view.hidden.reset();
    const ChangeKind kind =
        document.partlyReadModel.empty() ? ChangeKind::edit : ChangeKind::openModel;
    (void)change(
        document, Word::stepReread,
        [&] {
            copyModel(document.model, model);
            return EditOutcome{};
        },
        kind);
    markModelSaved(document);
    editor.watching.watch.watch(WatchedPart::model, {{path, stamp}});
    undoClear(document.undo); // what it holds is of a model that is gone
    refreshHierarchyTree(editor);
    requestRedraw(editor);
    return end;
}

Reread rereadTextures(Editor& editor)
{
    Document& document = editor.document;
    const std::string path = listFileOf(editor);
    const FileStamp stamp = stampOf(path);
    TextureList list;
    const Reread end = readAnew(editor, path, stamp, [&](Reason* reason) {
        const Message message = list.create();
        return message == Message::none ? readTextureFile(list, path, reason) : message;
    });
    if (!end.done) return end;
    const SlotSet slots = usedSlots(list);
    const bool wasChanged = areTexturesChanged(document);
    const ChangeKind kind =
        document.partlyReadTextures.empty() ? ChangeKind::edit : ChangeKind::openTextures;
    (void)change(
        document, Word::stepReread,
        [&] {
            mergeReread(document.textures, list, editor.watching.slotsOfFile);
            document.partlyReadTextures.clear();
            return EditOutcome{};
        },
        kind);
    // Slots that the file does not have stay, and are as unsaved as they were.
    if (!wasChanged || usedSlots(document.textures) == slots) markTexturesSaved(document);
    noteTexturesRead(editor, path, stamp, slots);
    undoClear(document.undo);
    redrawTextures(editor);
    requestRedraw(editor);
    return end;
}

Reread rereadSource(Editor& editor, const WatchAction& action)
{
    Reread end;
    switch (reimportChanged(editor, end.reason)) {
    case Reimport::done: end.done = true; break;
    case Reimport::failed: break;
    case Reimport::stopped: editor.watching.watch.decline(action); break;
    }
    return end;
}

Reread reread(Editor& editor, const WatchAction& action)
{
    switch (action.part) {
    case WatchedPart::model: return rereadModel(editor);
    case WatchedPart::textures: return rereadTextures(editor);
    default: return rereadSource(editor, action);
    }
}

/// Whether the user wants it.
bool asks(Editor& editor, const WatchAction& action)
{
    const std::string& path = action.changed.front().path;
    setAlertTexts(editor.alerts, fileNameOf(path), {});
    return alert(editor.alerts, editor.mainWindow, Message::rereadChanged, AlertStyle::choice,
                 path) == AlertButton::yes;
}

void lookAtDocument(Editor& editor)
{
    Watching& watching = editor.watching;
    const std::vector<std::string> paths = watching.watch.paths();
    if (paths == watching.looked) return;
    watching.looked = paths;
    // Its thread stays also when there is nothing left to look at: to end it would wait for a look
    // at a network that no longer answers.
    if (!paths.empty() || watching.looker.isRunning())
        (void)watching.looker.watch(paths, editor.mainWindow, messageFilesLooked);
}

/// What the document has of a file that it did not have before.
enum class Contents { present, former };

void follow(Editor& editor, Contents contents)
{
    if (!isRunning(editor)) return;
    Watching& watching = editor.watching;
    for (const WatchedPart part :
         {WatchedPart::model, WatchedPart::textures, WatchedPart::source}) {
        const std::vector<std::string> paths =
            watching.files ? pathsOf(editor, part) : std::vector<std::string>();
        if (paths == watchedPaths(watching.watch, part)) continue;
        watching.watch.watch(part, contents == Contents::former
                                       ? asTheyWere(watching.watch, part, paths)
                                       : asTheyAre(paths));
        if (!watching.files) watching.watch.left(part).clear(); // nobody follows what they become
        // Another list's file, by a step or a recovery: what it held nobody has seen.
        if (part == WatchedPart::textures) watching.slotsOfFile.reset();
    }
    std::vector<WatchedFile> pictures;
    if (watching.pictures) pictures = watchedPictures(editor);
    if (pictures != watching.watch.files(WatchedPart::pictures))
        watching.watch.watch(WatchedPart::pictures, std::move(pictures));
    lookAtDocument(editor);
}

} // namespace

void followDocument(Editor& editor)
{
    follow(editor, Contents::present);
}

void followStep(Editor& editor)
{
    follow(editor, Contents::former);
}

void noteWritten(Editor& editor, WatchedPart part, std::span<const std::string> written)
{
    Watching& watching = editor.watching;
    const auto isWritten = [&](const std::string& path) {
        return std::ranges::any_of(
            written, [&](const std::string& other) { return isSamePath(path, other); });
    };
    std::vector<WatchedFile> files = watching.watch.files(part);
    for (WatchedFile& file : files)
        if (isWritten(file.path)) file.known = stampOf(file.path);
    for (WatchedFile& file : watching.watch.left(part))
        if (isWritten(file.path)) file.known = stampOf(file.path);
    if (part == WatchedPart::textures) {
        // Under a new name the list is the document's once the command is done with it.
        if (std::ranges::none_of(files, isWritten, &WatchedFile::path))
            files = asTheyAre({written.begin(), written.end()});
        watching.slotsOfFile = usedSlots(editor.document.textures);
    }
    watching.watch.watch(part, std::move(files));
    if (part == WatchedPart::pictures)
        for (PictureLink& link : watching.links)
            if (isWritten(link.path)) link.stamp = stampOf(link.path);
}

void noteTexturesRead(Editor& editor, const std::string& path, const FileStamp& stamp,
                      const SlotSet& slots)
{
    noteListFile(editor, path);
    editor.watching.watch.watch(WatchedPart::textures, {{path, stamp}});
    editor.watching.slotsOfFile = slots;
    recallPictures(editor, path);
}

void noteListFile(Editor& editor, const std::string& path)
{
    editor.watching.listFiles[editor.document.textureFile] = path;
}

bool takeLook(Editor& editor)
{
    if (!isRunning(editor)) return false;
    Watching& watching = editor.watching;
    const std::uint64_t now = GetTickCount64();
    for (const auto& [path, stamp] : watching.looker.stamps()) watching.watch.see(path, stamp, now);
    if (watching.watch.isPending()) SetTimer(editor.mainWindow, fileWatchTimer, lookPace, nullptr);
    return watching.watch.next(factsOf(editor), now).has_value();
}

void onWatchTimer(Editor& editor)
{
    KillTimer(editor.mainWindow, fileWatchTimer);
    editor.watching.looker.look();
}

CommandOutcome rereadChanged(Editor& editor)
{
    FileWatch& watch = editor.watching.watch;
    const auto action = watch.next(factsOf(editor), GetTickCount64());
    if (!action) return CommandOutcome::abandoned;
    if (action->part == WatchedPart::pictures) {
        rereadPictures(editor, *action);
        return CommandOutcome::unsaved;
    }
    if (action->asks) {
        const bool wanted = asks(editor, *action);
        if (!isRunning(editor)) return CommandOutcome::abandoned;
        if (!wanted) {
            watch.decline(*action);
            return CommandOutcome::abandoned;
        }
        watch.agree(*action);
    }
    const Reread end = reread(editor, *action);
    if (!isRunning(editor)) return CommandOutcome::abandoned;
    const auto tell = [&](Word word, const std::string& more) {
        editor.statusLine = expandPlaceholders(loadCatalogueText(editor.mainWindow, word),
                                               fileNameOf(action->changed.front().path), more);
    };
    if (end.done)
        tell(Word::statusReread, {});
    else if (watch.fail(*action, GetTickCount64()) && !end.reason.empty())
        tell(Word::statusNotReread, end.reason);
    return CommandOutcome::unsaved;
}

void toggleWatching(Editor& editor)
{
    editor.watching.files = !editor.watching.files;
}

void toggleWatchingPictures(Editor& editor)
{
    editor.watching.pictures = !editor.watching.pictures;
}

} // namespace facetor
