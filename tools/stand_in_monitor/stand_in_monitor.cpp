// Stands in for the monitor program that takes target images: a window with its title, which writes
// what it is handed into a report. Run as: TITLE ANSWER REPORT, ANSWER being what it answers a
// copy-data message with, or "hang" for never.

#include <windows.h>

#include <cstdint>
#include <fstream>
#include <iterator>
#include <string>

namespace {

std::string answerText, reportPath;

std::uint32_t wordAt(const std::string& bytes, std::size_t at)
{
    std::uint32_t word = 0;
    for (std::size_t i = 4; i-- > 0;) word = word << 8 | static_cast<unsigned char>(bytes[at + i]);
    return word;
}

void report(const COPYDATASTRUCT& data)
{
    const std::string path(static_cast<const char*>(data.lpData));
    std::ifstream file(path, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(file), {}};
    std::ofstream out(reportPath + ".new", std::ios::binary);
    out << std::hex << data.dwData << ' ' << std::dec << data.cbData - path.size() << ' ' << path
        << '\n';
    for (std::size_t at = 0; at + 8 <= bytes.size(); at += 8 + wordAt(bytes, at + 4))
        out << std::hex << wordAt(bytes, at) << ' ' << std::dec << wordAt(bytes, at + 4) << '\n';
    out.close();
    MoveFileExA((reportPath + ".new").c_str(), reportPath.c_str(), MOVEFILE_REPLACE_EXISTING);
}

LRESULT CALLBACK monitorProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_COPYDATA) {
        report(*reinterpret_cast<const COPYDATASTRUCT*>(lParam));
        if (answerText == "hang") Sleep(INFINITE);
        return std::stol(answerText);
    }
    return DefWindowProcA(window, message, wParam, lParam);
}

} // namespace

int main(int argumentCount, char** arguments)
{
    if (argumentCount != 4) return 2;
    answerText = arguments[2];
    reportPath = arguments[3];
    WNDCLASSA description{};
    description.lpfnWndProc = monitorProcedure;
    description.hInstance = GetModuleHandleA(nullptr);
    description.lpszClassName = "StandInMonitor";
    RegisterClassA(&description);
    CreateWindowExA(0, description.lpszClassName, arguments[1], WS_OVERLAPPED, 0, 0, 10, 10,
                    nullptr, nullptr, description.hInstance, nullptr);
    MSG message{};
    while (GetMessageA(&message, nullptr, 0, 0) > 0) DispatchMessageA(&message);
    return 0;
}
