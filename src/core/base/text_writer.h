#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

namespace facetor {

/// Builds a long text out of many short pieces: what std::string does, without a call for each
/// piece. The room grows by doubling.
class TextWriter {
public:
    explicit TextWriter(std::size_t expectedSize = 4096) { grow(expectedSize); }

    void append(std::string_view text)
    {
        std::memcpy(room(text.size()), text.data(), text.size());
        size_ += text.size();
    }

    void append(char character)
    {
        *room(1) = character;
        ++size_;
    }

    void append(char character, std::size_t count)
    {
        std::memset(room(count), character, count);
        size_ += count;
    }

    /// Room for `count` characters behind the text; advance() makes what was written there part of
    /// it.
    char* room(std::size_t count)
    {
        if (capacity_ - size_ < count) grow(size_ + count);
        return text_.get() + size_;
    }
    void advance(std::size_t count) { size_ += count; }

    std::string_view view() const { return {text_.get(), size_}; }

private:
    void grow(std::size_t needed)
    {
        const std::size_t capacity = std::max(needed, 2 * capacity_);
        std::unique_ptr<char[]> larger(new char[capacity]); // not value-initialised
        if (size_ > 0) std::memcpy(larger.get(), text_.get(), size_);
        text_ = std::move(larger);
        capacity_ = capacity;
    }

    std::unique_ptr<char[]> text_;
    std::size_t size_ = 0;
    std::size_t capacity_ = 0;
};

} // namespace facetor
