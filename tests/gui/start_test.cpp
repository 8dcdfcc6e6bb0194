#include "app/main_window.h"
#include "base/temporary_folder.h"
#include "driver/menu_outline.h"
#include "driver/running_editor.h"
#include "gui/model_files.h"
#include "ui/window_data.h"
#include "windows/tool_box_window.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <commctrl.h>

#include <array>
#include <cfloat>
#include <filesystem>
#include <string_view>

namespace facetor {

namespace {

TEST(Start, MainWindowHasItsClassStyleTitleAndMenu)
{
    const RunningEditor editor;
    ASSERT_TRUE(editor.window());
    EXPECT_EQ(editor.title(), "Facetor for NT - Untitled");

    std::array<char, 32> name{};
    GetClassNameA(editor.window(), name.data(), static_cast<int>(name.size()));
    EXPECT_STREQ(name.data(), "szMainClass");
    EXPECT_EQ(GetClassLongPtrA(editor.window(), GCL_STYLE), 11u);
    EXPECT_EQ(GetClassLongPtrA(editor.window(), GCLP_HBRBACKGROUND),
              reinterpret_cast<ULONG_PTR>(GetStockObject(GRAY_BRUSH)));
    EXPECT_EQ(GetClassLongPtrA(editor.window(), GCLP_HCURSOR),
              reinterpret_cast<ULONG_PTR>(LoadCursorA(nullptr, IDC_ARROW)));
    EXPECT_NE(GetClassLongPtrA(editor.window(), GCLP_HICON), 0u);

    constexpr LONG_PTR given = 0x02CF0000;
    EXPECT_EQ(GetWindowLongPtrA(editor.window(), GWL_STYLE), given | WS_VISIBLE | WS_CLIPSIBLINGS);
    EXPECT_TRUE(GetWindowLongPtrA(editor.window(), GWL_EXSTYLE) & WS_EX_ACCEPTFILES);
    EXPECT_EQ(menuOutline(GetMenu(editor.window())),
              "&File {&Open...\tCtrl+O=40001, -, &Save\tCtrl+S=40015, Save &as...=40016, -, "
              "E&xit=40003}, "
              "&Edit {(&Undo\tCtrl+Z=40014), -, (Cu&t\tCtrl+X=40017), (&Copy\tCtrl+C=40018), "
              "(&Paste\tCtrl+V=40019), (&Delete\tDel=40020), -, "
              "Tool&s {&Rotate Model=40103, &Translate Model=40104, Scale Model=40105, "
              "Select &Polygons=40107, (&Move Sliced Texture=40108)}, -, "
              "(Select &Model=40090), (Select M&aterial=40093), Select A&ll\tCtrl+A=40091, "
              "(Select Clea&r\tCtrl+D=40092), -, Pr&operty...\tAlt+Enter=40021, -, "
              "(Step &Backward\tCtrl+Alt+Z=40129), (Step &Forward\tCtrl+Shift+Z=40130)}, "
              "&View {Tool &Box=40125, &Attribute=40008, &Hierarchy=40009, "
              "&Texture List=40030, -, "
              "Send &Target {&Model=40100, &Texture=40101, &Scene=40102}}, "
              "&Options {&Light...=40042, &Screen...=40043, -, "
              "&Camera {&Foward=40044, &Back=40045, &Left=40046, &Right=40047, &Top=40048, "
              "B&ottom=40049, -, (Camera #&1=40050), (Camera #&2=40051), (Camera #&3=40052), "
              "(Camera #&4=40053)}, "
              "&New Camera {Camera #&1=40054, Camera #&2=40055, Camera #&3=40056, "
              "Camera #&4=40057}, -, "
              "(&Rotate Vertices {&Clockwise=40067, Coun&ter CW=40068, 1&80 deg.=40069}), "
              "(Invert Sur&face=40070), -, Plug-Ins {&Gouraud Table=40084}}, "
              "&Help {&Contents=40023, -, &Version Information...=40025}");
    savePicture(editor.pictureOf(editor.window()), "start");
}

TEST(Start, AcceleratorsAreTheTablesInItsOrder)
{
    constexpr BYTE control = FVIRTKEY | FCONTROL, shifted = FVIRTKEY | FCONTROL | FSHIFT;
    struct Row {
        BYTE keys;
        WORD key, command;
    };
    const Row rows[] = {
        {control, 'A', 40091},        {control, 'C', 40037},
        {control, 'D', 40092},        {control, 'O', 40001},
        {shifted, 'O', 40026},        {control, 'S', 40015},
        {shifted, 'S', 40027},        {control, 'V', 40038},
        {control, VK_BACK, 40041},    {shifted, VK_BACK, 40041},
        {FVIRTKEY, VK_DELETE, 40039}, {control, VK_INSERT, 40040},
        {shifted, VK_INSERT, 40040},  {FVIRTKEY | FALT, VK_RETURN, 40021},
        {control, 'X', 40036},        {control, 'Z', 40014},
        {control, 'Z', 40035},        {control | FALT, 'Z', 40129},
        {shifted, 'Z', 40130},
    };
    const RunningEditor editor;
    std::array<ACCEL, 32> table{};
    const int count = editor.ask([&](Editor& e) {
        return CopyAcceleratorTableA(e.accelerators, table.data(), static_cast<int>(table.size()));
    });
    ASSERT_EQ(count, static_cast<int>(std::size(rows)));
    for (std::size_t i = 0; i < std::size(rows); ++i) {
        EXPECT_EQ(table[i].fVirt & 0x1D, rows[i].keys) << i; // without the marks of the resource
        EXPECT_EQ(table[i].key, rows[i].key) << i;
        EXPECT_EQ(table[i].cmd, rows[i].command) << i;
    }
}

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
        editor.call([&](Editor& e) {
            const HWND window = fromToolBox ? e.toolBox.window : e.mainWindow;
            SetForegroundWindow(window);
            SetFocus(window);
            e.document.undo.kind = tag("test"); // a grey item's key would reach nobody
            SendMessageA(e.mainWindow, WM_USER, 0, 0);
        });
        const std::size_t before = editor.commandsSeen().size();
        for (const WORD key : {'A', 'C', 'X', 'Z', 'D'}) typeWithControl(key);
        ASSERT_TRUE(waitUntil([&] { return editor.commandsSeen().size() >= before + 5; }));
        const std::vector<int> seen = editor.commandsSeen();
        EXPECT_EQ(std::vector<int>(seen.begin() + static_cast<std::ptrdiff_t>(before), seen.end()),
                  (std::vector<int>{40091, 40037, 40036, 40014, 40092}));
    }
}

TEST(Start, ToolBarHasItsEntriesAndToolTips)
{
    struct Entry {
        int image, command; ///< command 0: a separator
        bool enabled, check;
        const char* tip;
    };
    constexpr Entry separator{0, 0, true, false, nullptr};
    const Entry entries[] = {
        {0, 40001, true, false, "Open(Ctrl+O)"},
        {1, 40015, true, false, "Save(Ctrl+S)"},
        separator,
        {2, 40014, false, false, "Undo(Ctrl+Z)"},
        {3, 40017, false, false, "Cut(Ctrl+X)"},
        {4, 40018, false, false, "Copy(Ctrl+C)"},
        {5, 40019, false, false, "Paste(Ctrl+V)"},
        {6, 40020, false, false, "Delete(Del)"},
        separator,
        {7, 40042, true, false, "Light"},
        {8, 40043, true, false, "Screen"},
        separator,
        {9, 40125, true, true, "Tool Box"},
        {10, 40008, true, true, "Attribute Window"},
    };
    const RunningEditor editor;
    const auto tipOf = [](HWND window, int command) {
        NMTTDISPINFOA tip{};
        tip.hdr.code = TTN_GETDISPINFOA;
        tip.hdr.idFrom = static_cast<UINT_PTR>(command);
        SendMessageA(window, WM_NOTIFY, 0, reinterpret_cast<LPARAM>(&tip));
        return std::string(tip.lpszText ? tip.lpszText : "");
    };
    editor.call([&](Editor& e) {
        ASSERT_EQ(SendMessageA(e.toolBar, TB_BUTTONCOUNT, 0, 0), 14);
        for (std::size_t i = 0; i < std::size(entries); ++i) {
            SCOPED_TRACE(i);
            TBBUTTON button{};
            SendMessageA(e.toolBar, TB_GETBUTTON, i, reinterpret_cast<LPARAM>(&button));
            EXPECT_EQ((button.fsStyle & TBSTYLE_SEP) != 0, entries[i].command == 0);
            if (entries[i].command == 0) continue;
            EXPECT_EQ(button.idCommand, entries[i].command);
            EXPECT_EQ(button.iBitmap, entries[i].image);
            EXPECT_EQ((button.fsState & TBSTATE_ENABLED) != 0, entries[i].enabled);
            EXPECT_EQ((button.fsStyle & TBSTYLE_CHECK) != 0, entries[i].check);
            EXPECT_EQ((button.fsState & TBSTATE_CHECKED) != 0, entries[i].command == 40125);
            EXPECT_EQ(tipOf(e.mainWindow, entries[i].command), entries[i].tip);
        }
        EXPECT_EQ(tipOf(e.mainWindow, 40009), "Hierarcy Window");
        EXPECT_EQ(tipOf(e.mainWindow, 40025), "Version Information");
        EXPECT_EQ(tipOf(e.mainWindow, 40030), "Texture List");
        EXPECT_EQ(tipOf(e.mainWindow, 40044), "");
    });
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

TEST(Start, StatusBarCountsTheModelInThreeParts)
{
    const RunningEditor editor;
    const HWND statusBar = FindWindowExA(editor.window(), nullptr, STATUSCLASSNAMEA, nullptr);
    ASSERT_TRUE(statusBar);
    std::array<int, 8> edges{};
    ASSERT_EQ(
        SendMessageA(statusBar, SB_GETPARTS, edges.size(), reinterpret_cast<LPARAM>(edges.data())),
        3);
    EXPECT_EQ(edges[0], 100);
    EXPECT_EQ(edges[1], 200);
    EXPECT_EQ(edges[2], 300);
    EXPECT_EQ(editor.statusText(0), "Objects = 1");
    EXPECT_EQ(editor.statusText(1), "Polygons = 6");
    EXPECT_EQ(editor.statusText(2), "Vertices = 8");
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
