#include "monitor/monitor_options.h"
#include "monitor/monitor_window.h"
#include "ui/handles.h"
#include "ui/window_data.h"

#include <windows.h>

#include <shellapi.h>
#include <shlobj.h>

#include <array>
#include <cstdio>

namespace facetor {

namespace {

std::string narrow(const wchar_t* text)
{
    const int size = WideCharToMultiByte(CP_ACP, 0, text, -1, nullptr, 0, nullptr, nullptr);
    std::string narrowed(static_cast<std::size_t>(size > 0 ? size : 1), '\0');
    WideCharToMultiByte(CP_ACP, 0, text, -1, narrowed.data(), size, nullptr, nullptr);
    narrowed.pop_back();
    return narrowed;
}

std::vector<std::string> arguments()
{
    int count = 0;
    const UniqueHandle<wchar_t**, LocalFree> wide(CommandLineToArgvW(GetCommandLineW(), &count));
    std::vector<std::string> list;
    for (int i = 1; wide && i < count; ++i) list.push_back(narrow(wide.get()[i]));
    return list;
}

/// Beside the program where the editor keeps its settings there, too; else the user's own folder.
std::string settingsPath()
{
    constexpr char name[] = "FacetorMonitor.ini";
    const std::string beside = programFolder(nullptr) + "\\";
    if (GetFileAttributesA((beside + "Facetor.ini").c_str()) != INVALID_FILE_ATTRIBUTES)
        return beside + name;
    std::array<char, 3 * MAX_PATH> folder{};
    if (SHGetFolderPathA(nullptr, CSIDL_APPDATA, nullptr, 0, folder.data()) != S_OK) return {};
    const std::string own = std::string(folder.data()) + "\\Facetor";
    CreateDirectoryA(own.c_str(), nullptr);
    return own + "\\" + name;
}

std::string setting(const std::string& path, const char* key)
{
    std::array<char, 4096> value{};
    GetPrivateProfileStringA("Monitor", key, "", value.data(), static_cast<DWORD>(value.size()),
                             path.c_str());
    return value.data();
}

} // namespace

} // namespace facetor

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR, int showCommand)
{
    using namespace facetor;
    MonitorOptions options;
    std::string wrong;
    if (!readArguments(options, arguments(), wrong)) {
        std::fprintf(stderr, "FacetorMonitor: %s\n", wrong.c_str());
        MessageBoxA(nullptr, wrong.c_str(), "FacetorMonitor", MB_OK | MB_ICONEXCLAMATION);
        return 2;
    }
    // What the arguments say holds for this run only.
    const bool fromArguments =
        !options.folder.empty() || !options.command.empty() || options.hidden;
    const std::string path = fromArguments ? std::string() : settingsPath();
    if (!path.empty()) {
        options.folder = setting(path, "Folder");
        options.command = setting(path, "Command");
    }
    return runMonitor(options, path, showCommand);
}
