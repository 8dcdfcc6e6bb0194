#include "app/main_window.h"
#include "app/title_win.h"
#include "gui/running_editor.h"
#include "ui/window_data_win.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <commctrl.h>

#include <array>
#include <cfloat>
#include <string_view>

namespace facetor {

namespace {

/// A menu's items as text, submenus in braces: "A {B, C}, -, D=number".
std::string menuOutline(HMENU menu)
{
    std::string outline;
    for (int position = 0; position < GetMenuItemCount(menu); ++position) {
        std::array<char, 128> text{};
        GetMenuStringA(menu, static_cast<UINT>(position), text.data(),
                       static_cast<int>(text.size()), MF_BYPOSITION);
        outline += (position == 0 ? "" : ", ") + std::string(text.data());
        if (const HMENU submenu = GetSubMenu(menu, position))
            outline += " {" + menuOutline(submenu) + "}";
        else
            outline += "=" + std::to_string(GetMenuItemID(menu, position));
    }
    return outline;
}

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
              "&File {E&xit=40003}, "
              "&Options {&Camera {&Foward=40044, &Back=40045, &Left=40046, &Right=40047, "
              "&Top=40048, B&ottom=40049}}");
    savePicture(editor.pictureOf(editor.window()), "start");
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
    for (const char* name : {mainWindowClass, STATUSCLASSNAMEA}) {
        SCOPED_TRACE(name);
        refusedClass = name;
        RunningEditor editor({"C:\\no such file.mx3"}, Platform::nt, [] {
            SetWindowsHookExA(WH_CBT, refuseClass, nullptr, GetCurrentThreadId());
        });
        EXPECT_EQ(editor.waitForEnd(), 0);
        EXPECT_EQ(editor.window(), nullptr) << "it must never be on the screen";
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

TEST(Start, TitleHoldsWhatFollowsTheProgramsTitle)
{
    const RunningEditor editor;
    const auto fileOf = [&](const char* path) {
        return editor.ask([&](Editor& e) {
            setTitleFile(e, path);
            return titleFile(e);
        });
    };
    EXPECT_EQ(fileOf("C:\\a - b\\c - d.mx3"), "C:\\a - b\\c - d.mx3");
    EXPECT_EQ(editor.title(), "Facetor for NT - C:\\a - b\\c - d.mx3");
    const std::string longPath = "C:\\" + std::string(600, 'x') + ".mx3";
    EXPECT_EQ(fileOf(longPath.c_str()), longPath);
    EXPECT_EQ(fileOf(nullptr), "Untitled");
    editor.call([](Editor& e) { setTitleText(e, Word::polygons); });
    EXPECT_EQ(editor.title(), "Facetor for NT - Polygons");
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
