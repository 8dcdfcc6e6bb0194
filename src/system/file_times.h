#pragma once

#include <cstdint>
#include <string>

namespace facetor {

/// The size of a file in bytes and when it was written last, in steps of 100 ns; the C library
/// tells whole seconds. False for a folder and for nothing. The path is bytes in the process's code
/// page.
bool tellFileTimes(const std::string& path, std::uint64_t& size, std::int64_t& writtenAt);

} // namespace facetor
