#include <gtest/gtest.h>

#include <windows.h>

#include <array>
#include <atomic>
#include <cstdio>
#include <thread>

namespace {

/// The longest time that one test may take, in milliseconds.
constexpr ULONGLONG longestTest = 120000;

/// Ends the whole run when one test hangs, for instance in a dialog that nobody expects, after
/// listing the windows that are on the screen.
class Watchdog : public testing::EmptyTestEventListener {
public:
    Watchdog()
    {
        std::thread([this] { watch(); }).detach();
    }

private:
    void OnTestStart(const testing::TestInfo&) override { started_ = GetTickCount64(); }
    void OnTestEnd(const testing::TestInfo&) override { started_ = 0; }

    static BOOL CALLBACK listWindow(HWND window, LPARAM)
    {
        if (!IsWindowVisible(window)) return TRUE;
        std::array<char, 64> name{};
        std::array<wchar_t, 128> wide{};
        std::array<char, 512> text{};
        GetClassNameA(window, name.data(), static_cast<int>(name.size()));
        // Not GetWindowText: it would wait for the thread that hangs.
        InternalGetWindowText(window, wide.data(), static_cast<int>(wide.size()));
        WideCharToMultiByte(CP_UTF8, 0, wide.data(), -1, text.data(), static_cast<int>(text.size()),
                            nullptr, nullptr);
        std::fprintf(stderr, "  %p class \"%s\" text \"%s\"\n", static_cast<void*>(window),
                     name.data(), text.data());
        return TRUE;
    }

    static BOOL CALLBACK listWithChildren(HWND window, LPARAM argument)
    {
        listWindow(window, argument);
        EnumChildWindows(window, listWindow, argument);
        return TRUE;
    }

    void watch() const
    {
        for (;;) {
            Sleep(200);
            const ULONGLONG started = started_;
            if (started == 0 || GetTickCount64() - started < longestTest) continue;
            std::fprintf(stderr, "watchdog: a test hangs; the visible windows are\n");
            EnumWindows(listWithChildren, 0);
            std::fflush(stderr);
            TerminateProcess(GetCurrentProcess(), 3);
        }
    }

    std::atomic<ULONGLONG> started_ = 0;
};

} // namespace

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    testing::UnitTest::GetInstance()->listeners().Append(new Watchdog); // the list owns it
    return RUN_ALL_TESTS();
}
