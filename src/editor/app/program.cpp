#include "app/program.h"

#include "app/commands.h"
#include "app/crash.h"
#include "app/main_window.h"
#include "app/settings.h"
#include "base/folder.h"
#include "commands/model_commands.h"
#include "resources/resource_ids.h"
#include "texture/texture_file.h"
#include "ui/handles.h"
#include "windows/texture_window.h"
#include "windows/title.h"
#include "windows/tool_box_window.h"

#include <windows.h>

#include <shellapi.h>

#include <algorithm>
#include <cfloat>
#include <cstddef>
#include <memory>
#include <optional>

namespace facetor {

namespace {

/// Makes the x87 round to single precision for the rest of the run of this thread. Our own
/// arithmetic is SSE and does not notice; what the system's libraries compute on the x87 does. On
/// 64-bit Windows there is no such setting.
void setSinglePrecision()
{
#ifdef __i386__
    _controlfp(_PC_24, _MCW_PC);
#endif
}

std::string toCodePage(const wchar_t* wide)
{
    const int size = WideCharToMultiByte(CP_ACP, 0, wide, -1, nullptr, 0, nullptr, nullptr);
    if (size <= 1) return {};
    std::string text(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(CP_ACP, 0, wide, -1, text.data(), size, nullptr, nullptr);
    text.pop_back(); // the terminating NUL was counted
    return text;
}

/// Ends the registration of the window classes and what the windows know of the editor.
class EditorScope {
public:
    explicit EditorScope(Editor& editor) : editor_(editor) { setTheEditor(&editor_); }
    ~EditorScope()
    {
        UnregisterClassA(mainWindowClass, editor_.instance);
        UnregisterClassA(toolBoxClass, editor_.instance);
        UnregisterClassA(textureWindowClass, editor_.instance);
        setTheEditor(nullptr);
    }
    EditorScope(const EditorScope&) = delete;
    EditorScope& operator=(const EditorScope&) = delete;

private:
    Editor& editor_;
};

/// Gives the keyboard to the editor's next window that is open; after the last to the first.
void goToNextWindow(const Editor& editor)
{
    const HWND windows[] = {editor.mainWindow,      editor.textureWindow.window,
                            editor.attributeWindow, editor.hierarchyWindow,
                            editor.budget.window,   editor.drawOrder.window};
    const auto current = std::ranges::find(windows, GetActiveWindow());
    const auto first = current == std::end(windows) ? std::begin(windows) : current + 1;
    const auto isOpen = [](HWND window) { return window && IsWindowVisible(window); };
    const auto next = std::find_if(first, std::end(windows), isOpen);
    SetActiveWindow(next == std::end(windows) ? editor.mainWindow : *next);
}

/// Keys that mean the same in every window of the editor. False for another one.
bool onKeyOfAnyWindow(const Editor& editor, WPARAM key)
{
    switch (key) {
    case VK_F1: PostMessageA(editor.mainWindow, WM_COMMAND, IDM_HELP_CONTENTS, 0); return true;
    case VK_F6: goToNextWindow(editor); return true;
    default: return false;
    }
}

/// Fetches messages until the quit message and returns its argument.
int runMainLoop(Editor& editor)
{
    MSG message{};
    while (GetMessageA(&message, nullptr, 0, 0) > 0) {
        if (message.message == WM_KEYDOWN && onKeyOfAnyWindow(editor, message.wParam)) continue;
        // The wheel turns what the cursor is over, whichever window has the focus.
        if (message.message == WM_MOUSEWHEEL && WindowFromPoint(message.pt) == editor.mainWindow)
            message.hwnd = editor.mainWindow;
        // Accelerators go to the main window, whichever window has the focus.
        if (TranslateAcceleratorA(editor.mainWindow, editor.accelerators, &message)) continue;
        if (std::ranges::any_of(editor.modelessDialogs, [&](HWND dialog) {
                return IsDialogMessageA(dialog, &message) != FALSE;
            }))
            continue;
        TranslateMessage(&message);
        DispatchMessageA(&message);
    }
    return static_cast<int>(message.wParam);
}

} // namespace

Platform readPlatform()
{
    OSVERSIONINFOA version{};
    version.dwOSVersionInfoSize = sizeof version;
    GetVersionExA(&version);
    return static_cast<Platform>(version.dwPlatformId);
}

std::vector<std::string> commandLineArguments()
{
    // Not the C library's main() arguments: it expands "*" and "[" in file names.
    int count = 0;
    const UniqueHandle<wchar_t**, LocalFree> wide(CommandLineToArgvW(GetCommandLineW(), &count));
    std::vector<std::string> arguments;
    for (int i = 1; wide && i < count; ++i) arguments.push_back(toCodePage(wide.get()[i]));
    return arguments;
}

int runProgram(const Start& start)
{
    if (start.platform == Platform::win32s) return 0;
    setSinglePrecision();
    const auto editor = std::make_unique<Editor>();
    editor->instance = start.instance;
    editor->platform = start.platform;
    editor->runCommand = runCommand;
    editor->accelerators = LoadAcceleratorsA(start.instance, "IDR_ACCEL");
    editor->settingsPath = start.settingsPath;
    editor->targetFolders = sharedFolders();
    editor->watching.files = editor->watching.pictures = start.watchesFiles;
    if (!start.keepFolder.empty()) {
        editor->versions.folder = pathIn(start.keepFolder, "Versions");
        editor->watching.picturesPath = pathIn(start.keepFolder, "Pictures.txt");
        startKeeper(editor->keeper, pathIn(start.keepFolder, "Recovery"));
    }
    if (!registerMainWindow(*editor)) return 0;
    const EditorScope scope(*editor);
    if (!registerToolBox(*editor) || !registerTextureWindow(*editor)) return 0;
    if (!createMainWindow(*editor)) return 0;
    showTitle(*editor);
    ShowWindow(editor->mainWindow, start.showCommand);
    showToolBox(*editor, true); // not earlier: it would stand behind its owner
    reopenWindows(*editor);
    UpdateWindow(editor->mainWindow);
    std::optional<CrashGuard> guard;
    if (!start.keepFolder.empty()) guard.emplace();
    if (!editor->keeper.recoverable.empty())
        SendMessageA(editor->mainWindow, WM_COMMAND, IDM_FILE_RECOVER, 0);
    const std::size_t opened = std::min<std::size_t>(start.arguments.size(), 2);
    // With a list of its own the model needs no other.
    editor->opensModelAlone = opened == 2;
    for (std::size_t i = 0; i < opened; ++i) openAnyPath(*editor, start.arguments[i]);
    editor->opensModelAlone = false;
    // The view shows nothing of a texture list that was opened alone.
    if (opened == 1 && isTextureFile(start.arguments[0]) && !editor->textureWindow.window)
        SendMessageA(editor->mainWindow, WM_COMMAND, IDM_VIEW_TEXTURES, 0);
    return runMainLoop(*editor);
}

} // namespace facetor
