#pragma once

#include <cstdint>
#include <string>

namespace facetor {

/// What can be told of a file without reading it. Another stamp means that the file was written;
/// which of two is the newer one cannot be told, since a clock may be set back.
struct FileStamp {
    bool exists = false;        ///< as a regular file
    std::uint64_t size = 0;     ///< in bytes
    std::int64_t writtenAt = 0; ///< in the ticks of the system's file clock

    bool operator==(const FileStamp&) const = default;
};

/// The stamp of what stands at a path at this moment. May wait for a disk or a network.
FileStamp stampOf(const std::string& path);

} // namespace facetor
