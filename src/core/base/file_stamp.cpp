#include "base/file_stamp.h"

#ifdef _WIN32
#include "system/file_times.h"
#else
#include "base/beside_file.h"

#include <filesystem>
#include <system_error>
#endif

namespace facetor {

FileStamp stampOf(const std::string& path)
{
    FileStamp stamp;
#ifdef _WIN32
    stamp.exists = tellFileTimes(path, stamp.size, stamp.writtenAt);
#else
    const auto native = toPath(path);
    std::error_code error;
    if (!native || !std::filesystem::is_regular_file(*native, error)) return stamp;
    stamp.size = std::filesystem::file_size(*native, error);
    if (error) return {};
    const auto time = std::filesystem::last_write_time(*native, error);
    if (error) return {};
    stamp.writtenAt = time.time_since_epoch().count();
    stamp.exists = true;
#endif
    return stamp;
}

} // namespace facetor
