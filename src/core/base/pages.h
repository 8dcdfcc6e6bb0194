#pragma once

#include <cstddef>
#include <memory>
#include <new>
#include <span>
#include <type_traits>

namespace facetor {

/// The page size that large buffers are aligned to and rounded up to, in bytes.
inline constexpr std::size_t pageSize = 4096;

/// Whole zero-filled pages holding at least `size` bytes, aligned to a page; nullptr when memory
/// is short. A size of 0 gives one page.
void* allocatePages(std::size_t size);
void freePages(void* pages);

struct PagesDeleter {
    void operator()(void* pages) const { freePages(pages); }
};

/// Owns `size()` records of T in pages of their own: the form of every large fixed pool. T needs to
/// be valid when all its bytes are zero.
template <typename T> class PageArray {
    static_assert(std::is_trivially_copyable_v<T> && std::is_trivially_destructible_v<T>);

public:
    PageArray() = default;

    /// Allocates `count` zeroed records in place of what was held. False, with nothing held, when
    /// memory is short.
    [[nodiscard]] bool allocate(std::size_t count)
    {
        pages_.reset(static_cast<T*>(allocatePages(count * sizeof(T))));
        size_ = pages_ ? count : 0;
        return pages_ != nullptr;
    }

    T* data() { return pages_.get(); }
    const T* data() const { return pages_.get(); }
    std::size_t size() const { return size_; }
    T& operator[](std::size_t i) { return pages_.get()[i]; }
    const T& operator[](std::size_t i) const { return pages_.get()[i]; }
    T* begin() { return data(); }
    T* end() { return data() + size_; }
    const T* begin() const { return data(); }
    const T* end() const { return data() + size_; }

    /// Hands the pages to the caller, who frees them with freePages().
    [[nodiscard]] T* release()
    {
        size_ = 0;
        return pages_.release();
    }

private:
    std::unique_ptr<T, PagesDeleter> pages_;
    std::size_t size_ = 0;
};

} // namespace facetor
