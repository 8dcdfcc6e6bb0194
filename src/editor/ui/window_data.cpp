#include "ui/window_data.h"

#include <array>

namespace facetor {

HINSTANCE instanceOf(HWND window)
{
    if (!window) return GetModuleHandleA(nullptr);
    return reinterpret_cast<HINSTANCE>(GetWindowLongPtrA(window, GWLP_HINSTANCE));
}

std::string windowText(HWND window)
{
    // The length is an upper bound; the call that copies gives the true one.
    std::string text(static_cast<std::size_t>(GetWindowTextLengthA(window)) + 1, '\0');
    const int length = GetWindowTextA(window, text.data(), static_cast<int>(text.size()));
    text.resize(static_cast<std::size_t>(length));
    return text;
}

std::string loadCatalogueText(HWND window, Word word)
{
    std::array<char, 128> buffer{};
    const int length = LoadStringA(instanceOf(window), static_cast<UINT>(word), buffer.data(),
                                   static_cast<int>(buffer.size()));
    return {buffer.data(), static_cast<std::size_t>(length)};
}

std::string loadCatalogueText(HWND window, Message message)
{
    return loadCatalogueText(window, static_cast<Word>(message));
}

std::string programFolder(HWND window)
{
    std::array<char, 3 * MAX_PATH> path{}; // a character takes up to three bytes
    const DWORD length =
        GetModuleFileNameA(instanceOf(window), path.data(), static_cast<DWORD>(path.size()));
    if (length == 0 || length >= path.size()) return {};
    const std::string file(path.data(), length);
    return file.substr(0, file.find_last_of('\\'));
}

bool isKeyDown(int virtualKey)
{
    return GetAsyncKeyState(virtualKey) < 0;
}

std::string fullPath(const std::string& path)
{
    const DWORD size = GetFullPathNameA(path.c_str(), 0, nullptr, nullptr);
    if (size == 0) return path;
    std::string full(size, '\0');
    const DWORD length = GetFullPathNameA(path.c_str(), size, full.data(), nullptr);
    if (length == 0 || length >= size) return path;
    full.resize(length);
    return full;
}

static BOOL CALLBACK addMonitor(HMONITOR, HDC, RECT* place, LPARAM monitors)
{
    reinterpret_cast<std::vector<WindowRectangle>*>(monitors)->push_back(
        {place->left, place->top, place->right, place->bottom});
    return TRUE;
}

Screen virtualScreen()
{
    const int left = GetSystemMetrics(SM_XVIRTUALSCREEN), top = GetSystemMetrics(SM_YVIRTUALSCREEN);
    Screen screen({left, top, left + GetSystemMetrics(SM_CXVIRTUALSCREEN),
                   top + GetSystemMetrics(SM_CYVIRTUALSCREEN)});
    EnumDisplayMonitors(nullptr, nullptr, addMonitor, reinterpret_cast<LPARAM>(&screen.monitors));
    return screen;
}

WindowRectangle windowPlace(HWND window)
{
    RECT r{};
    GetWindowRect(window, &r);
    return {r.left, r.top, r.right, r.bottom};
}

} // namespace facetor
