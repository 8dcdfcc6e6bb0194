#include "commands/send_target.h"

#include "output/target_check.h"
#include "output/target_image.h"
#include "output/target_layout.h"
#include "state/editor.h"
#include "ui/handles.h"
#include "ui/window_data.h"

#include <windows.h>

#include <shellapi.h>

#include <optional>
#include <string>

namespace facetor {

namespace {

/// In the order of TargetImage.
constexpr const char* fileNames[] = {"devMX3.sal", "devMXT.sal", "devMXS.sal"};

/// What the monitor knows our data by: "TQAL", the first character in the highest byte.
constexpr ULONG_PTR monitorTag = 0x5451414C;

Message writeImage(const Editor& editor, TargetImage image, const std::string& path)
{
    const View& view = editor.view;
    switch (image) {
    case TargetImage::model: return writeModelImage(editor.document.model, view.viewScale, path);
    case TargetImage::textures: return writeTextureImage(editor.document.textures, path);
    case TargetImage::scene: break;
    }
    return writeSceneImage({view.lightDirection, view.lightColour, view.viewAngle,
                            view.ambientColour, view.backgroundColour},
                           path);
}

/// What of the image would overwrite the target's memory; none when it can be sent as it is.
std::optional<TargetWarning> overrunOf(const Editor& editor, TargetImage image)
{
    if (image == TargetImage::model) return findOverrun(editor.document.model);
    if (image == TargetImage::textures) {
        const TextureList& list = editor.document.textures;
        const auto refusal = findRefusal(list);
        // A wider one is not written at all, which has a message of its own.
        const bool isTooWide = refusal && refusal->code == TargetCode::textureWidth &&
                               list.slot(*refusal->slot).width > targetTextureWidth;
        return isTooWide ? findOverrun(list) : refusal;
    }
    return std::nullopt;
}

/// Whether the user sends it in spite of that.
bool sendsAllTheSame(Editor& editor, const TargetWarning& overrun)
{
    const auto textOf = [&](Word word) { return loadCatalogueText(editor.mainWindow, word); };
    return alert(editor.alerts, editor.mainWindow, Message::sendOverrun, AlertStyle::question,
                 describe(overrun, textOf)) == AlertButton::yes;
}

/// Writes the image into the first folder that takes it and returns its path; none when none does.
std::optional<std::string> writeIntoFolder(const Editor& editor, TargetImage image)
{
    for (const std::string& folder : editor.targetFolders) {
        if (folder.empty()) continue;
        const std::string path = folder + "\\" + fileNames[static_cast<std::size_t>(image)];
        const Message message = writeImage(editor, image, path);
        if (message == Message::none) return path;
        if (message != Message::cannotCreateFile) break; // the image cannot be made anywhere
    }
    return std::nullopt;
}

std::string monitorTitle(const Editor& editor)
{
    return loadCatalogueText(editor.mainWindow, editor.platform == Platform::consumer
                                                    ? Word::monitorTitleConsumer
                                                    : Word::monitorTitleNt);
}

/// The top-level window with exactly this title; nullptr for none. The system's own search takes
/// other letter cases as well.
HWND findWindowTitled(const std::string& title)
{
    HWND window = nullptr;
    while ((window = FindWindowExA(nullptr, window, nullptr, title.c_str())) != nullptr)
        if (windowText(window) == title) return window;
    return nullptr;
}

/// Whether the monitor took the file. Its answer to that is 0.
bool notifyMonitor(const Editor& editor, const std::string& path)
{
    const HWND monitor = findWindowTitled(monitorTitle(editor));
    if (!monitor) return false;
    std::string text = path;
    COPYDATASTRUCT data{};
    data.dwData = monitorTag;
    data.cbData = static_cast<DWORD>(text.size() + 1);
    data.lpData = text.data();
    DWORD_PTR answer = 1;
    return SendMessageTimeoutA(monitor, WM_COPYDATA, 0, reinterpret_cast<LPARAM>(&data),
                               SMTO_NORMAL, monitorPatience, &answer) != 0 &&
           answer == 0;
}

} // namespace

void sendTarget(Editor& editor, TargetImage image)
{
    if (const auto overrun = overrunOf(editor, image))
        if (!sendsAllTheSame(editor, *overrun)) return;
    Message message = Message::none;
    {
        const WaitCursor waiting;
        const auto path = writeIntoFolder(editor, image);
        if (!path)
            message = Message::outOfMemory;
        else if (!notifyMonitor(editor, *path))
            message = Message::cannotFind;
    }
    if (message == Message::none) return;
    if (message == Message::cannotFind) setAlertTexts(editor.alerts, monitorTitle(editor), {});
    alert(editor.alerts, editor.mainWindow, message, AlertStyle::exclamation);
}

CommandOutcome startMonitor(Editor& editor)
{
    constexpr char name[] = "FacetorMonitor.exe";
    const std::string path = programFolder(editor.mainWindow) + "\\" + name;
    // Above 32 is success.
    const auto answer = reinterpret_cast<INT_PTR>(
        ShellExecuteA(editor.mainWindow, "open", path.c_str(), nullptr, nullptr, SW_SHOWNORMAL));
    if (answer > 32) return CommandOutcome::done;
    setAlertTexts(editor.alerts, name, {});
    alert(editor.alerts, editor.mainWindow, Message::cannotFind, AlertStyle::exclamation);
    return CommandOutcome::abandoned;
}

} // namespace facetor
