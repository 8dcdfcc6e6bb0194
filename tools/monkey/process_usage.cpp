#include "monkey/process_usage.h"

#include <windows.h>

#include <psapi.h>
#include <winternl.h>

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace facetor {

namespace {

// Wine counts no objects for GetGuiResources(). What it has in use is found as follows.

/// The entries in use of the table of drawing objects, which the process environment block names at
/// an offset that has not changed since the first systems.
std::size_t countDrawingObjects()
{
    struct Entry {
        std::uint64_t object;
        std::uint32_t owner;
        std::uint16_t unique;
        std::uint8_t type; ///< 0 for a free entry
        std::uint8_t flags;
        std::uint64_t userPointer;
    };
    constexpr std::size_t entryCount = 65536, offset = sizeof(void*) == 8 ? 0xF8 : 0x94;
    const auto* block = reinterpret_cast<const std::byte*>(NtCurrentTeb()->ProcessEnvironmentBlock);
    const Entry* table;
    std::memcpy(&table, block + offset, sizeof table);
    std::size_t count = 0;
    for (std::size_t i = 0; table && i < entryCount; ++i) count += table[i].type != 0;
    return count;
}

/// Window and menu handles are even numbers of 16 bits; Wine takes them without their upper half.
std::size_t countWindowObjects()
{
    std::size_t count = 0;
    for (ULONG_PTR handle = 0x20; handle < 0x10000; handle += 2) {
        DWORD process = 0;
        const auto window = reinterpret_cast<HWND>(handle);
        if (GetWindowThreadProcessId(window, &process))
            count += process == GetCurrentProcessId();
        else
            count += IsMenu(reinterpret_cast<HMENU>(handle)) != FALSE;
    }
    return count;
}

/// Kernel handles are multiples of four and given out from the lowest.
std::size_t countHandles()
{
    std::size_t count = 0;
    for (ULONG_PTR handle = 4; handle < 0x10000; handle += 4) {
        DWORD flags;
        count += GetHandleInformation(reinterpret_cast<HANDLE>(handle), &flags) != FALSE;
    }
    return count;
}

} // namespace

ProcessUsage processUsage()
{
    ProcessUsage usage{};
    const HANDLE process = GetCurrentProcess();
    usage.drawingObjects = GetGuiResources(process, GR_GDIOBJECTS);
    usage.windowObjects = GetGuiResources(process, GR_USEROBJECTS);
    if (usage.drawingObjects == 0) {
        usage.drawingObjects = countDrawingObjects();
        usage.windowObjects = countWindowObjects();
    }
    DWORD handles = 0;
    if (GetProcessHandleCount(process, &handles)) usage.handles = handles;
    if (usage.handles == 0) usage.handles = countHandles();
    PROCESS_MEMORY_COUNTERS_EX memory{};
    if (GetProcessMemoryInfo(process, reinterpret_cast<PROCESS_MEMORY_COUNTERS*>(&memory),
                             sizeof memory))
        usage.bytes = std::max(memory.PrivateUsage, memory.PagefileUsage);
    return usage;
}

} // namespace facetor
