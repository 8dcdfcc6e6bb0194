#include "base/file.h"

#include "base/beside_file.h"

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <new>
#include <system_error>
#include <utility>
#include <vector>

namespace facetor {

namespace {

struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using UniqueFile = std::unique_ptr<std::FILE, FileCloser>;

constexpr char aDirectory[] = "a directory";

/// In bytes, as far as it can be told beforehand.
std::uint64_t sizeOf(const std::string& path)
{
    const auto native = toPath(path);
    if (!native) return 0;
    std::error_code error;
    const std::uintmax_t size = std::filesystem::file_size(*native, error);
    return error ? 0 : size;
}

bool exists(const std::string& path)
{
    if (const auto native = toPath(path)) {
        std::error_code error;
        return std::filesystem::exists(std::filesystem::symlink_status(*native, error));
    }
    return UniqueFile(std::fopen(path.c_str(), "rb")) != nullptr;
}

int writeAll(const std::string& path, std::span<const std::byte> bytes)
{
    UniqueFile file(std::fopen(path.c_str(), "wb"));
    if (!file) return errno;
    const bool written =
        bytes.empty() || std::fwrite(bytes.data(), 1, bytes.size(), file.get()) == bytes.size();
    if (!written || std::fflush(file.get()) != 0) return errno;
    return std::fclose(file.release()) == 0 ? 0 : errno;
}

/// A file on its way: to be put in its target's place, or into a device or a pipe.
struct PendingFile {
    std::string target;
    BesideFile beside;
    bool direct = false;

    int writeBeside(std::span<const std::byte> bytes)
    {
        const int error = beside.create(target);
        return error == 0 ? beside.write(bytes) : error;
    }
};

/// The file that a symbolic link leads to, so that saving through a link keeps the link. It need
/// not be there yet.
std::string resolvedTarget(const std::string& path)
{
    constexpr int mostLinks = 40; // as the system follows; more run in a circle
    const auto native = toPath(path);
    // A pipe may be behind a link whose text is no path (that of a process's open file).
    if (!native || !unreadableKind(path).empty()) return path;
    std::filesystem::path target = *native;
    std::error_code error;
    for (int link = 0; link < mostLinks && std::filesystem::is_symlink(target, error); ++link) {
        const auto next = std::filesystem::read_symlink(target, error);
        if (error) return path;
        target = target.parent_path() / next; // all of it is `next` where that is absolute
    }
    return toBytes(target);
}

/// Looks at what stands in the file's place, then writes beside it. Empty, or why it cannot be.
std::string prepare(PendingFile& pending, const FileToWrite& file)
{
    pending.target = resolvedTarget(file.path);
    if (exists(pending.target)) {
        const std::string kind = unreadableKind(pending.target);
        if (kind == aDirectory) return kind;
        // A file that may not be written: a rename could still replace it.
        if (!UniqueFile(std::fopen(pending.target.c_str(), "r+b"))) return systemReason(errno);
        pending.direct = !kind.empty(); // not replaced but written to
        if (pending.direct) return {};
    }
    removeAbandonedFiles(pending.target);
    const int error = pending.writeBeside(file.bytes);
    if (error == ENOENT) return "its folder is missing";
    return error == 0 ? std::string() : systemReason(error);
}

/// Puts it in its place; 0, or the errno value that says why not.
int finish(PendingFile& pending, const FileToWrite& file)
{
    if (pending.direct) return writeAll(pending.target, file.bytes);
    int error = pending.beside.replace(pending.target);
    if (error != 0 && pending.beside.isGone()) { // taken for one that was left behind
        PendingFile again{pending.target, {}, false};
        error = again.writeBeside(file.bytes);
        if (error == 0) error = again.beside.replace(again.target);
    }
    return error;
}

} // namespace

std::string unreadableKind(const std::string& path)
{
    const auto native = toPath(path);
    if (!native) return {};
    std::error_code error;
    const auto status = std::filesystem::status(*native, error);
    if (error || !std::filesystem::exists(status) || std::filesystem::is_regular_file(status))
        return {};
    return std::filesystem::is_directory(status) ? aDirectory : "no regular file";
}

std::optional<Bytes> readFile(const std::string& path, std::uint64_t largest, std::string* reason)
{
    const auto fail = [reason](std::string why) {
        if (reason) *reason = std::move(why);
        return std::nullopt;
    };
    if (const std::string kind = unreadableKind(path); !kind.empty()) return fail(kind);
    const UniqueFile file(std::fopen(path.c_str(), "rb"));
    if (!file) return fail(systemReason(errno));
    Bytes bytes;
    constexpr std::size_t step = 256 * 1024;
    const std::string tooLarge = "larger than " + std::to_string(largest) + " bytes";
    if (sizeOf(path) > largest) return fail(tooLarge);
    try {
        for (;;) {
            const std::size_t start = bytes.size();
            if (start > largest) return fail(tooLarge);
            bytes.resize(start + step);
            const std::size_t read = std::fread(bytes.data() + start, 1, step, file.get());
            bytes.resize(start + read);
            if (read < step) break;
        }
    } catch (const std::bad_alloc&) { // as for the largest files in a 32-bit process
        return fail("not enough memory for it");
    }
    if (std::ferror(file.get())) return fail(systemReason(errno));
    if (bytes.size() > largest) return fail(tooLarge);
    return bytes;
}

std::optional<Bytes> readFileStart(const std::string& path, std::size_t count)
{
    if (!unreadableKind(path).empty()) return std::nullopt;
    const UniqueFile file(std::fopen(path.c_str(), "rb"));
    if (!file) return std::nullopt;
    Bytes bytes(count);
    bytes.resize(std::fread(bytes.data(), 1, count, file.get()));
    return bytes;
}

Message writeFile(const std::string& path, std::span<const std::byte> bytes, std::string* reason)
{
    const FileToWrite file{path, bytes};
    return writeFiles({&file, 1}, nullptr, reason);
}

Message writeFiles(std::span<const FileToWrite> files, std::size_t* failed, std::string* reason)
{
    std::vector<PendingFile> pending(files.size());
    const auto fail = [=](std::size_t index, std::string why) {
        if (failed) *failed = index;
        if (reason) *reason = std::move(why);
        return Message::cannotCreateFile;
    };
    for (std::size_t i = 0; i < files.size(); ++i)
        if (std::string why = prepare(pending[i], files[i]); !why.empty())
            return fail(i, std::move(why));
    for (std::size_t i = 0; i < files.size(); ++i)
        if (const int error = finish(pending[i], files[i]); error != 0)
            return fail(i, systemReason(error));
    return Message::none;
}

std::string systemReason(int error)
{
    switch (error) {
    case ENOENT:
    case ENOTDIR: return "missing";
    case EISDIR: return aDirectory;
    case EACCES:
    case EPERM: return "no permission";
    case EROFS: return "the disk is read-only";
    case ENOSPC: return "disk full";
    case ENAMETOOLONG: return "the name is too long";
    default: return std::generic_category().message(error);
    }
}

} // namespace facetor
