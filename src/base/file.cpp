#include "base/file.h"

#include <cstdio>
#include <filesystem>
#include <memory>
#include <new>
#include <system_error>

namespace facetor {

namespace {

struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using UniqueFile = std::unique_ptr<std::FILE, FileCloser>;

/// Files are opened through the C library, which takes the bytes as they are. Where the standard
/// library's paths have to be used the bytes are read as UTF-8, which on Windows it does only when
/// told so; a name that is none (bytes of another code page on an old Windows) has no such path.
std::optional<std::filesystem::path> toPath(const std::string& bytes)
{
    try {
        return std::filesystem::path(std::u8string(bytes.begin(), bytes.end()));
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

std::string toBytes(const std::filesystem::path& path)
{
    const std::u8string bytes = path.u8string();
    return {bytes.begin(), bytes.end()};
}

/// Opening a folder succeeds on Linux, and a pipe would block: only regular files are read.
bool isUnreadableKind(const std::string& path)
{
    const auto native = toPath(path);
    if (!native) return false;
    std::error_code error;
    const auto status = std::filesystem::status(*native, error);
    return !error && std::filesystem::exists(status) && !std::filesystem::is_regular_file(status);
}

bool exists(const std::string& path)
{
    if (const auto native = toPath(path)) {
        std::error_code error;
        return std::filesystem::exists(std::filesystem::symlink_status(*native, error));
    }
    return UniqueFile(std::fopen(path.c_str(), "rb")) != nullptr;
}

/// A name beside `target` that nothing bears yet; empty when a thousand are taken.
std::string unusedNameBeside(const std::string& target)
{
    for (int number = 0; number < 1000; ++number) {
        std::string name = target + ".new" + std::to_string(number);
        if (!exists(name)) return name;
    }
    return {};
}

bool writeAll(const std::string& path, std::span<const std::byte> bytes)
{
    UniqueFile file(std::fopen(path.c_str(), "wb"));
    if (!file) return false;
    const bool written =
        bytes.empty() || std::fwrite(bytes.data(), 1, bytes.size(), file.get()) == bytes.size();
    const bool flushed = std::fflush(file.get()) == 0;
    const bool closed = std::fclose(file.release()) == 0;
    return written && flushed && closed;
}

bool replace(const std::string& from, const std::string& to)
{
    const auto nativeFrom = toPath(from), nativeTo = toPath(to);
    if (!nativeFrom || !nativeTo) { // no atomic replacement by the C library alone
        std::remove(to.c_str());
        return std::rename(from.c_str(), to.c_str()) == 0;
    }
    std::error_code error;
    std::filesystem::rename(*nativeFrom, *nativeTo, error);
    return !error;
}

/// The file that a symbolic link leads to, so that saving through a link keeps the link. It need
/// not be there yet.
std::string resolvedTarget(const std::string& path)
{
    constexpr int mostLinks = 40; // as the system follows; more run in a circle
    const auto native = toPath(path);
    // A pipe may be behind a link whose text is no path (that of a process's open file).
    if (!native || isUnreadableKind(path)) return path;
    std::filesystem::path target = *native;
    std::error_code error;
    for (int link = 0; link < mostLinks && std::filesystem::is_symlink(target, error); ++link) {
        const auto next = std::filesystem::read_symlink(target, error);
        if (error) return path;
        target = target.parent_path() / next; // all of it is `next` where that is absolute
    }
    return toBytes(target);
}

} // namespace

std::optional<Bytes> readFile(const std::string& path, std::uint64_t largest)
{
    if (isUnreadableKind(path)) return std::nullopt;
    const UniqueFile file(std::fopen(path.c_str(), "rb"));
    if (!file) return std::nullopt;
    Bytes bytes;
    constexpr std::size_t step = 256 * 1024;
    try {
        for (;;) {
            const std::size_t start = bytes.size();
            if (start > largest) return std::nullopt;
            bytes.resize(start + step);
            const std::size_t read = std::fread(bytes.data() + start, 1, step, file.get());
            bytes.resize(start + read);
            if (read < step) break;
        }
    } catch (const std::bad_alloc&) { // as for the largest files in a 32-bit process
        return std::nullopt;
    }
    if (std::ferror(file.get()) || bytes.size() > largest) return std::nullopt;
    return bytes;
}

std::optional<Bytes> readFileStart(const std::string& path, std::size_t count)
{
    if (isUnreadableKind(path)) return std::nullopt;
    const UniqueFile file(std::fopen(path.c_str(), "rb"));
    if (!file) return std::nullopt;
    Bytes bytes(count);
    bytes.resize(std::fread(bytes.data(), 1, count, file.get()));
    return bytes;
}

Message writeFile(const std::string& path, std::span<const std::byte> bytes)
{
    const std::string target = resolvedTarget(path);
    const bool targetExists = exists(target);
    if (targetExists) {
        // A folder, or a file that may not be written: a rename could still replace the latter.
        if (!UniqueFile(std::fopen(target.c_str(), "r+b"))) return Message::cannotCreateFile;
        if (isUnreadableKind(target)) // a device or a pipe is written to, not replaced
            return writeAll(target, bytes) ? Message::none : Message::cannotCreateFile;
    }
    const std::string beside = unusedNameBeside(target);
    if (beside.empty()) return Message::cannotCreateFile;
    if (!writeAll(beside, bytes)) {
        std::remove(beside.c_str());
        return Message::cannotCreateFile;
    }
    if (targetExists) {
        if (const auto nativeTarget = toPath(target), nativeBeside = toPath(beside);
            nativeTarget && nativeBeside) {
            std::error_code ignored; // the new contents matter more than the old access rights
            const auto rights = std::filesystem::status(*nativeTarget, ignored).permissions();
            if (!ignored) std::filesystem::permissions(*nativeBeside, rights, ignored);
        }
    }
    if (!replace(beside, target)) {
        std::remove(beside.c_str());
        return Message::cannotCreateFile;
    }
    return Message::none;
}

} // namespace facetor
