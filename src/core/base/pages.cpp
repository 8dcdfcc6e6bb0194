#include "base/pages.h"

#include <cstring>

namespace facetor {

void* allocatePages(std::size_t size)
{
    if (size > static_cast<std::size_t>(-1) - pageSize) return nullptr;
    const std::size_t rounded = size == 0 ? pageSize : (size + pageSize - 1) / pageSize * pageSize;
    void* pages = ::operator new (rounded, std::align_val_t{pageSize}, std::nothrow);
    if (pages) std::memset(pages, 0, rounded);
    return pages;
}

void freePages(void* pages)
{
    ::operator delete (pages, std::align_val_t{pageSize});
}

} // namespace facetor
