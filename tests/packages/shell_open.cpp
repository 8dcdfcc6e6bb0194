// Opens a file as a double click in the Explorer does, and closes the editor again.
//
//   shell_open open REPORT TITLE FILE [ARGUMENTS]   opens FILE and waits for a window with the
//   title shell_open close REPORT                         closes the editor and waits until it is
//   gone
//
// REPORT is written when that was done: with the titles of all windows that were seen. The exit
// status is 1 when it was not done within a minute.

#include <windows.h>

#include <objbase.h>
#include <shellapi.h>

#include <algorithm>
#include <cwchar>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace {

constexpr wchar_t mainWindowClass[] = L"szMainClass";
constexpr int attempts = 600;
constexpr DWORD pause = 100; // ms

BOOL CALLBACK collectTitle(HWND window, LPARAM titles)
{
    std::wstring title(1024, L'\0');
    title.resize(GetWindowTextW(window, title.data(), static_cast<int>(title.size())));
    if (IsWindowVisible(window) && !title.empty())
        reinterpret_cast<std::vector<std::wstring>*>(titles)->push_back(title);
    return TRUE;
}

std::vector<std::wstring> windowTitles()
{
    std::vector<std::wstring> titles;
    EnumWindows(collectTitle, reinterpret_cast<LPARAM>(&titles));
    return titles;
}

bool isShown(const std::wstring& title)
{
    const auto titles = windowTitles();
    return std::ranges::find(titles, title) != titles.end();
}

bool open(const wchar_t* file, const wchar_t* arguments)
{
    CoInitialize(nullptr); // shortcuts are opened by a component
    SHELLEXECUTEINFOW info{};
    info.cbSize = sizeof info;
    info.fMask = SEE_MASK_FLAG_NO_UI | SEE_MASK_NOASYNC;
    info.lpFile = file; // no verb: the one of a double click
    info.lpParameters = arguments;
    info.nShow = SW_SHOWNORMAL;
    return ShellExecuteExW(&info) != FALSE;
}

template <typename Condition> bool waitFor(Condition condition)
{
    for (int i = 0; i < attempts; ++i, Sleep(pause))
        if (condition()) return true;
    return false;
}

void writeReport(const wchar_t* path)
{
    std::ofstream out(std::filesystem::path(path), std::ios::binary);
    for (const std::wstring& title : windowTitles()) {
        char bytes[3072]{};
        WideCharToMultiByte(CP_UTF8, 0, title.c_str(), -1, bytes, sizeof bytes, nullptr, nullptr);
        out << bytes << '\n';
    }
    out << "-\n";
}

} // namespace

int wmain(int count, wchar_t** arguments)
{
    const std::wstring verb = count > 2 ? arguments[1] : L"";
    bool done = false;
    if (verb == L"open" && count > 4)
        done = open(arguments[4], count > 5 ? arguments[5] : nullptr) &&
               waitFor([&] { return isShown(arguments[3]); });
    else if (verb == L"close")
        done = waitFor([] {
            const HWND window = FindWindowW(mainWindowClass, nullptr);
            if (window) PostMessageW(window, WM_CLOSE, 0, 0);
            return !window;
        });
    else
        return 2;
    writeReport(arguments[2]);
    return done ? 0 : 1;
}
