#include "gui/scarce_memory.h"

#include <malloc.h>

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <new>

namespace {

std::atomic<std::size_t> refusedSize = SIZE_MAX;

void* orThrow(void* block)
{
    if (!block) throw std::bad_alloc();
    return block;
}

} // namespace

// The program's own operators in place of the library's; the other forms of new call these.
void* operator new(std::size_t size)
{
    return orThrow(size < refusedSize ? std::malloc(size == 0 ? 1 : size) : nullptr);
}

void* operator new(std::size_t size, std::align_val_t alignment)
{
    return orThrow(size < refusedSize ? _aligned_malloc(size, static_cast<std::size_t>(alignment))
                                      : nullptr);
}

void operator delete(void* block) noexcept
{
    std::free(block);
}

void operator delete(void* block, std::size_t) noexcept
{
    std::free(block);
}

void operator delete(void* block, std::align_val_t) noexcept
{
    _aligned_free(block);
}

void operator delete(void* block, std::size_t, std::align_val_t) noexcept
{
    _aligned_free(block);
}

namespace facetor {

ScarceMemory::ScarceMemory(std::size_t refused)
{
    refusedSize = refused;
}

ScarceMemory::~ScarceMemory()
{
    refusedSize = SIZE_MAX;
}

} // namespace facetor
