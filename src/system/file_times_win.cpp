#include "system/file_times.h"

#include <windows.h>

namespace facetor {

bool tellFileTimes(const std::string& path, std::uint64_t& size, std::int64_t& writtenAt)
{
    WIN32_FILE_ATTRIBUTE_DATA data{};
    if (!GetFileAttributesExA(path.c_str(), GetFileExInfoStandard, &data) ||
        (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0)
        return false;
    size = std::uint64_t{data.nFileSizeHigh} << 32 | data.nFileSizeLow;
    writtenAt = static_cast<std::int64_t>(std::uint64_t{data.ftLastWriteTime.dwHighDateTime} << 32 |
                                          data.ftLastWriteTime.dwLowDateTime);
    return true;
}

} // namespace facetor
