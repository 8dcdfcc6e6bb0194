#include "base/folder.h"

#include "base/beside_file.h"
#include "base/file.h"

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <system_error>

namespace facetor {

std::string pathIn(const std::string& folder, std::string_view name)
{
    const bool closed = folder.ends_with('/') || folder.ends_with('\\');
#ifdef _WIN32
    constexpr char separator = '\\';
#else
    constexpr char separator = '/';
#endif
    return folder + (closed ? "" : std::string(1, separator)) + std::string(name);
}

std::string makeFolder(const std::string& folder)
{
    const auto native = toPath(folder);
    if (!native) return systemReason(ENOENT);
    std::error_code error;
    std::filesystem::create_directories(*native, error);
    if (std::error_code none; std::filesystem::is_directory(*native, none)) return {};
    return error ? systemReason(error.default_error_condition().value()) : systemReason(ENOTDIR);
}

std::vector<std::string> namesIn(const std::string& folder)
{
    std::vector<std::string> names;
    const auto native = toPath(folder);
    if (!native) return names;
    std::error_code error;
    std::filesystem::directory_iterator entry(*native, error);
    for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error))
        if (std::error_code none; entry->is_regular_file(none))
            names.push_back(toBytes(entry->path().filename()));
    return names;
}

std::int64_t writtenAt(const std::string& path)
{
    const auto native = toPath(path);
    if (!native) return 0;
    std::error_code error;
    const auto time = std::filesystem::last_write_time(*native, error);
    if (error) return 0;
    const auto system = std::chrono::file_clock::to_sys(time);
    return std::chrono::duration_cast<std::chrono::seconds>(system.time_since_epoch()).count();
}

bool removeFile(const std::string& path)
{
    return std::remove(path.c_str()) == 0 || errno == ENOENT;
}

} // namespace facetor
