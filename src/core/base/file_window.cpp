#include "base/file_window.h"

#include "base/file.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

namespace facetor {

namespace {

constexpr std::size_t windowSize = 256 * 1024; ///< in bytes; more is had only when asked for

/// In bytes; also where the path's bytes are no path of the standard library.
std::uint64_t sizeOf(std::FILE* file)
{
#ifdef _WIN32
    const auto size = _fseeki64(file, 0, SEEK_END) == 0 ? _ftelli64(file) : 0;
#else
    const auto size = fseeko(file, 0, SEEK_END) == 0 ? ftello(file) : 0;
#endif
    std::rewind(file);
    return size > 0 ? static_cast<std::uint64_t>(size) : 0;
}

} // namespace

bool FileWindow::open(const std::string& path, std::string* reason)
{
    std::string why = unreadableKind(path);
    if (why.empty()) {
        file_.reset(std::fopen(path.c_str(), "rb"));
        if (!file_) why = systemReason(errno);
    }
    if (!why.empty()) {
        if (reason) *reason = std::move(why);
        return false;
    }
    std::setvbuf(file_.get(), nullptr, _IONBF, 0); // the window is the buffer
    left_ = sizeOf(file_.get());
    return true;
}

std::span<const std::byte> FileWindow::more(std::span<const std::byte> unread, std::size_t atLeast)
{
    const std::size_t kept = unread.size();
    if (atLeast <= kept || left_ == 0) return unread;
    if (buffer_.size() < std::max(windowSize, atLeast)) {
        Bytes larger(std::max(windowSize, atLeast));
        std::copy(unread.begin(), unread.end(), larger.begin());
        buffer_ = std::move(larger);
    } else {
        std::memmove(buffer_.data(), unread.data(), kept);
    }
    const auto wanted =
        static_cast<std::size_t>(std::min<std::uint64_t>(buffer_.size() - kept, left_));
    const std::size_t read = std::fread(buffer_.data() + kept, 1, wanted, file_.get());
    left_ = read < wanted ? 0 : left_ - read; // it has become shorter, or the disk fails
    return {buffer_.data(), kept + read};
}

} // namespace facetor
