#include "base/beside_file.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <mutex>
#include <random>
#include <string_view>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#ifdef _WIN32
#include "system/file_rights.h"

#include <io.h>
#include <share.h>
#else
#include <sys/file.h>
#include <unistd.h>
#endif

namespace facetor {

namespace {

// A name that was drawn: ".facetor-" and sixteen digits of base 16.
constexpr std::string_view namePrefix = ".facetor-";
constexpr std::string_view nameDigits = "0123456789abcdef";
constexpr std::size_t nameDigitCount = 16;

constexpr int mostNames = 100;                     ///< drawn before creation is given up
constexpr std::size_t mostWritten = 1024u * 1024u; ///< in one call, in bytes

std::string drawName()
{
    std::random_device device;
    std::string name(namePrefix);
    for (std::size_t i = 0; i < nameDigitCount; ++i)
        name += nameDigits[device() % nameDigits.size()];
    return name;
}

bool isDrawnName(std::string_view name)
{
    return name.size() == namePrefix.size() + nameDigitCount && name.starts_with(namePrefix) &&
           name.find_first_not_of(nameDigits, namePrefix.size()) == std::string_view::npos;
}

std::string drawPathBeside(const std::string& target)
{
    if (const auto native = toPath(target)) return toBytes(native->parent_path() / drawName());
    // In other code pages a separator may be half a character: the folder cannot be told.
    return target + drawName();
}

#ifdef _WIN32

int openNew(const std::string& path, const std::string& target)
{
    // Nobody can open or remove it while it is open here: until it has its rights, and after.
    int descriptor = -1;
    errno = _sopen_s(&descriptor, path.c_str(), _O_WRONLY | _O_CREAT | _O_EXCL | _O_BINARY,
                     _SH_DENYRW, _S_IREAD | _S_IWRITE);
    if (descriptor >= 0) copyFileRights(target, path);
    return descriptor;
}

auto writeSome(int descriptor, const std::byte* from, std::size_t size)
{
    return _write(descriptor, from, static_cast<unsigned>(size));
}

int store(int descriptor)
{
    return _commit(descriptor);
}

int closeDescriptor(int descriptor)
{
    return _close(descriptor);
}

void removeIfAbandoned(const std::filesystem::path& path)
{
    std::error_code inUse;
    std::filesystem::remove(path, inUse);
}

#else

/// Gives a new file the owner and the rights of `old`. Where the group cannot be had, its rights
/// must not go to another one. Some file systems have no rights: then it stays the owner's alone.
void copyRights(int descriptor, const struct stat& old)
{
    struct stat now {};
    if (fstat(descriptor, &now) != 0) return;
    mode_t rights = old.st_mode & 07777u;
    const bool sameGroup =
        now.st_gid == old.st_gid || fchown(descriptor, static_cast<uid_t>(-1), old.st_gid) == 0;
    if (!sameGroup) rights = (rights & ~070u & ~02000u) | (rights & 007u) << 3;
    if (now.st_uid != old.st_uid && fchown(descriptor, old.st_uid, static_cast<gid_t>(-1)) != 0)
        rights &= ~04000u;
    (void)fchmod(descriptor, rights);
}

int openNew(const std::string& path, const std::string& target)
{
    struct stat old {};
    const bool replaces = stat(target.c_str(), &old) == 0;
    // Until it belongs to the group that the rights are meant for, it is the owner's alone.
    const mode_t rights = replaces ? old.st_mode & 0700u : 0666u;
    const int descriptor = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, rights);
    if (descriptor < 0) return descriptor;
    // The lock says that it is being written. Another process may just have found it unlocked.
    struct stat now {};
    const bool locked = flock(descriptor, LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK;
    if (!locked || fstat(descriptor, &now) != 0 || now.st_nlink == 0) {
        close(descriptor);
        errno = EEXIST;
        return -1;
    }
    if (replaces) copyRights(descriptor, old);
    return descriptor;
}

auto writeSome(int descriptor, const std::byte* from, std::size_t size)
{
    return ::write(descriptor, from, size);
}

int store(int descriptor)
{
    return fsync(descriptor);
}

int closeDescriptor(int descriptor)
{
    return ::close(descriptor);
}

void removeIfAbandoned(const std::filesystem::path& path)
{
    const int descriptor = open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0) return;
    struct stat found {};
    if (fstat(descriptor, &found) == 0 && S_ISREG(found.st_mode) && found.st_uid == geteuid() &&
        flock(descriptor, LOCK_EX | LOCK_NB) == 0)
        unlink(path.c_str());
    ::close(descriptor);
}

#endif

/// The errno value that comes nearest to an error of the standard library.
int toErrno(const std::error_code& error)
{
    const std::error_condition condition = error.default_error_condition();
    return condition.category() == std::generic_category() ? condition.value() : EIO;
}

} // namespace

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

BesideFile::~BesideFile()
{
    (void)close();
    if (!path_.empty()) std::remove(path_.c_str());
}

int BesideFile::create(const std::string& target)
{
    int error = EEXIST;
    for (int i = 0; i < mostNames && error == EEXIST; ++i) {
        const std::string path = drawPathBeside(target);
        descriptor_ = openNew(path, target);
        error = descriptor_ < 0 ? errno : 0;
        if (error == 0) path_ = path;
    }
    return error;
}

int BesideFile::write(std::span<const std::byte> bytes)
{
    while (!bytes.empty()) {
        const auto written =
            writeSome(descriptor_, bytes.data(), std::min(bytes.size(), mostWritten));
        if (written < 0 && errno == EINTR) continue;
        if (written < 0) return errno;
        if (written == 0) return ENOSPC;
        bytes = bytes.subspan(static_cast<std::size_t>(written));
    }
    // Not every file system can be told to store; what it then says about writing still counts.
    return store(descriptor_) == 0 || errno == EINVAL || errno == ENOSYS ? 0 : errno;
}

int BesideFile::replace(const std::string& target)
{
#ifdef _WIN32
    if (const int error = close(); error != 0) return error; // what is open is not renamed
#endif
    const auto nativeFrom = toPath(path_), nativeTo = toPath(target);
    if (nativeFrom && nativeTo) {
        std::error_code error;
        std::filesystem::rename(*nativeFrom, *nativeTo, error);
        if (error) return toErrno(error);
    } else { // no atomic replacement by the C library alone
        std::remove(target.c_str());
        if (std::rename(path_.c_str(), target.c_str()) != 0) return errno;
    }
    path_.clear();
    return close();
}

bool BesideFile::isGone() const
{
    const auto native = toPath(path_);
    std::error_code error;
    return !path_.empty() && native && !std::filesystem::exists(*native, error) && !error;
}

int BesideFile::close()
{
    if (descriptor_ < 0) return 0;
    const int result = closeDescriptor(descriptor_);
    descriptor_ = -1;
    return result == 0 ? 0 : errno;
}

void removeAbandonedFiles(const std::string& target)
{
    static std::mutex mutex;
    static std::filesystem::path cleanFolder;
    const auto native = toPath(target);
    if (!native) return;
    std::error_code error;
    const auto folder = std::filesystem::absolute(*native, error).parent_path();
    if (error) return;
    const std::lock_guard lock(mutex);
    if (folder == cleanFolder) return; // writing many files must not list their folder each time
    cleanFolder = folder;
    std::filesystem::directory_iterator entry(folder, error);
    for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
        std::error_code noStatus;
        if (isDrawnName(toBytes(entry->path().filename())) && entry->is_regular_file(noStatus))
            removeIfAbandoned(entry->path());
    }
}

} // namespace facetor
