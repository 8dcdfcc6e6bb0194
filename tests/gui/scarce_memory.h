#pragma once

#include <cstddef>

namespace facetor {

/// While it lives, no block of this many bytes or more is to be had in this process.
class ScarceMemory {
public:
    explicit ScarceMemory(std::size_t refused);
    ~ScarceMemory();
    ScarceMemory(const ScarceMemory&) = delete;
    ScarceMemory& operator=(const ScarceMemory&) = delete;
};

} // namespace facetor
