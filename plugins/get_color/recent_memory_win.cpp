#include "get_color/recent_memory_win.h"

#include <windows.h>

#include <string>

namespace facetor {

RecentMemory::RecentMemory()
{
    const std::string name =
        "Local\\Facetor recent colours " + std::to_string(GetCurrentProcessId());
    const HANDLE memory = CreateFileMappingA(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0,
                                             sizeof(RecentColours), name.c_str());
    const bool wasThere = GetLastError() == ERROR_ALREADY_EXISTS;
    if (!memory) return;
    mapped_ = static_cast<RecentColours*>(
        MapViewOfFile(memory, FILE_MAP_ALL_ACCESS, 0, 0, sizeof(RecentColours)));
    // The handle of the call that made the memory stays open: it keeps the memory until the
    // process ends.
    if (wasThere) CloseHandle(memory);
}

RecentMemory::~RecentMemory()
{
    if (mapped_) UnmapViewOfFile(mapped_);
}

} // namespace facetor
