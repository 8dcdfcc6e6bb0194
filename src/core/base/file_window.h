#pragma once

#include "base/bytes.h"

#include <cstdint>
#include <cstdio>
#include <memory>
#include <span>
#include <string>

namespace facetor {

/// A file that is read from front to back, of which only a part is in memory at a time.
class FileWindow {
public:
    /// False, with the cause in `reason`, when given, as readFile() names it.
    [[nodiscard]] bool open(const std::string& path, std::string* reason = nullptr);

    /// What ByteReader has not handed out yet: `unread`, the end of what more() gave before, and
    /// behind it at least so many bytes that it holds `atLeast`, or fewer where the file ends.
    /// Spans that were given before are void afterwards.
    std::span<const std::byte> more(std::span<const std::byte> unread, std::size_t atLeast);

    /// Bytes of the file that more() has not given yet, as far as its size was known when it was
    /// opened.
    std::uint64_t left() const { return left_; }

private:
    struct Closer {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };
    std::unique_ptr<std::FILE, Closer> file_;
    std::uint64_t left_ = 0;
    Bytes buffer_;
};

} // namespace facetor
