#pragma once

#include "get_color/recent_colours.h"

namespace facetor {

/// The recent colours of this process, which outlive the module: it is unloaded after each call.
/// They lie in memory that has a name with the process's number and that the system frees with the
/// process. Where there is none to be had, they last for one call.
class RecentMemory {
public:
    RecentMemory();
    ~RecentMemory();
    RecentMemory(const RecentMemory&) = delete;
    RecentMemory& operator=(const RecentMemory&) = delete;

    RecentColours& colours() { return mapped_ ? *mapped_ : own_; }

private:
    RecentColours* mapped_ = nullptr;
    RecentColours own_;
};

} // namespace facetor
