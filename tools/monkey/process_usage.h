#pragma once

#include <cstddef>

namespace facetor {

/// What this process has in use.
struct ProcessUsage {
    std::size_t drawingObjects; ///< GDI: bitmaps, pens, fonts, device contexts
    std::size_t windowObjects;  ///< USER: windows and menus, on Windows also icons and more
    std::size_t handles;        ///< of the kernel: files, threads, sections
    std::size_t bytes;          ///< memory that is no other process's
};

ProcessUsage processUsage();

} // namespace facetor
