#include "app/main_window.h"
#include "base/temporary_folder.h"
#include "driver/running_editor.h"
#include "gui/model_files.h"
#include "ui/window_data.h"
#include "windows/tool_box_window.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <commctrl.h>

#include <algorithm>
#include <array>
#include <cfloat>
#include <filesystem>
#include <string_view>

namespace facetor {

namespace {

/// Types a key with Ctrl held, as the keyboard would.
void typeWithControl(WORD key)
{
    std::array<INPUT, 4> inputs{};
    const std::pair<WORD, DWORD> keys[] = {
        {VK_CONTROL, 0}, {key, 0}, {key, KEYEVENTF_KEYUP}, {VK_CONTROL, KEYEVENTF_KEYUP}};
    for (std::size_t i = 0; i < inputs.size(); ++i) {
        inputs[i].type = INPUT_KEYBOARD;
        inputs[i].ki.wVk = keys[i].first;
        inputs[i].ki.dwFlags = keys[i].second;
    }
    SendInput(static_cast<UINT>(inputs.size()), inputs.data(), sizeof(INPUT));
}

TEST(Start, KeysReachTheMainWindowAsCommandsWhicheverWindowHasTheFocus)
{
    const RunningEditor editor;
    for (const bool fromToolBox : {false, true}) {
        SCOPED_TRACE(fromToolBox);
        HWND window = nullptr;
        editor.call([&](Editor& e) {
            window = fromToolBox ? e.toolBox.window : e.mainWindow;
            SetForegroundWindow(window);
            SetFocus(window);
            e.document.undo.kind = tag("test"); // a grey item's key would reach nobody
            SendMessageA(e.mainWindow, WM_USER, 0, 0);
        });
        EXPECT_TRUE(waitUntil([&] { return GetForegroundWindow() == window; }));
        const auto before = static_cast<std::ptrdiff_t>(editor.commandsSeen().size());
        const auto seen = [&] {
            std::vector<int> all = editor.commandsSeen();
            all.erase(all.begin(), all.begin() + before);
            all.erase(std::unique(all.begin(), all.end()), all.end());
            return all;
        };
        // A display may say late which keys are down as a window comes to the front: then Ctrl is
        // taken for released.
        for (int i = 0; i < 50 && seen().empty(); ++i) typeWithControl('A'), Sleep(100);
        for (const WORD key : {'C', 'X', 'Z', 'D'}) typeWithControl(key);
        const std::vector<int> all{40091, 40037, 40036, 40014, 40092};
        (void)waitUntil([&] { return seen() == all; });
        EXPECT_EQ(seen(), all);
    }
}

TEST(Start, ConsumerPlatformHasItsOwnTitle)
{
    const RunningEditor editor({}, Platform::consumer);
    EXPECT_EQ(editor.title(), "Facetor for Win95 - Untitled");
}

TEST(Start, AHostWithoutTheWholeInterfaceEndsAtOnce)
{
    RunningEditor editor({}, Platform::win32s);
    EXPECT_EQ(editor.waitForEnd(), 0);
    EXPECT_EQ(editor.window(), nullptr);
}

TEST(Start, AClassThatCannotBeRegisteredEndsAtOnce)
{
    WNDCLASSA taken{};
    taken.lpfnWndProc = DefWindowProcA;
    taken.hInstance = GetModuleHandleA(nullptr);
    taken.lpszClassName = mainWindowClass;
    ASSERT_TRUE(RegisterClassA(&taken));
    {
        RunningEditor editor;
        EXPECT_EQ(editor.waitForEnd(), 0);
    }
    EXPECT_TRUE(UnregisterClassA(mainWindowClass, taken.hInstance))
        << "an editor that did not register the class must not take it away";
}

const char* refusedClass = nullptr;

/// Refuses the creation of windows of one class.
LRESULT CALLBACK refuseClass(int code, WPARAM wParam, LPARAM lParam)
{
    if (code == HCBT_CREATEWND) {
        std::array<char, 64> name{};
        GetClassNameA(reinterpret_cast<HWND>(wParam), name.data(), static_cast<int>(name.size()));
        if (std::string_view(name.data()) == refusedClass) return 1;
    }
    return CallNextHookEx(nullptr, code, wParam, lParam);
}

TEST(Start, AWindowThatCannotBeCreatedEndsTheProgramWithoutAMessage)
{
    for (const char* name : {mainWindowClass, TOOLBARCLASSNAMEA, STATUSCLASSNAMEA, toolBoxClass}) {
        SCOPED_TRACE(name);
        refusedClass = name;
        const TemporaryFolder folder;
        const std::string settings = folder.file("Facetor.ini");
        writeTextFile(settings, "kept");
        RunningEditor editor(
            {"C:\\no such file.mx3"}, Platform::nt,
            [] { SetWindowsHookExA(WH_CBT, refuseClass, nullptr, GetCurrentThreadId()); },
            settings);
        EXPECT_EQ(editor.waitForEnd(), 0);
        EXPECT_EQ(editor.window(), nullptr) << "it must never be on the screen";
        EXPECT_EQ(std::filesystem::file_size(settings), 4u);
    }
    const RunningEditor editor;
    EXPECT_EQ(editor.title(), "Facetor for NT - Untitled")
        << "nothing is left of the failed starts";
}

TEST(Start, EveryHandledCommandWritesTheStatusTextsAnew)
{
    const RunningEditor editor;
    editor.call([](Editor& e) { e.document.model.objectCount = 0; });
    editor.sendCommand(40036); // not in the table
    EXPECT_EQ(editor.statusText(0), "Objects = 1");
    editor.sendCommand(40044);
    EXPECT_EQ(editor.statusText(0), "Objects = 0");
}

#ifdef __i386__
TEST(Start, FloatingPointUnitIsSetToSinglePrecisionOnTheEditorsThread)
{
    const RunningEditor editor;
    EXPECT_EQ(editor.ask([](Editor&) { return _controlfp(0, 0) & _MCW_PC; }),
              static_cast<unsigned>(_PC_24));
}
#endif

} // namespace

} // namespace facetor
