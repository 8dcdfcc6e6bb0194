#include "base/file_lock.h"

#include <cerrno>
#include <chrono>
#include <thread>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#ifdef _WIN32
#include <io.h>
#include <share.h>
#else
#include <sys/file.h>
#include <unistd.h>
#endif

namespace facetor {

FileLock& FileLock::operator=(FileLock&& other) noexcept
{
    release();
    descriptor_ = std::exchange(other.descriptor_, -1);
    return *this;
}

#ifdef _WIN32

bool FileLock::take(const std::string& path)
{
    release();
    errno = _sopen_s(&descriptor_, path.c_str(), _O_RDWR | _O_CREAT | _O_BINARY | _O_NOINHERIT,
                     _SH_DENYRW, _S_IREAD | _S_IWRITE);
    if (errno != 0) descriptor_ = -1;
    return isHeld();
}

void FileLock::release()
{
    if (isHeld()) _close(std::exchange(descriptor_, -1));
}

#else

bool FileLock::take(const std::string& path)
{
    release();
    descriptor_ = open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
    if (!isHeld()) return false;
    if (flock(descriptor_, LOCK_EX | LOCK_NB) == 0) {
        // Whoever held it may have removed the file: then another one has its name.
        struct stat held {
        }, named{};
        if (fstat(descriptor_, &held) == 0 && stat(path.c_str(), &named) == 0 &&
            held.st_ino == named.st_ino)
            return true;
        errno = EWOULDBLOCK;
    }
    const int error = errno;
    release();
    errno = error;
    return false;
}

void FileLock::release()
{
    if (isHeld()) ::close(std::exchange(descriptor_, -1));
}

#endif

bool FileLock::takeWithin(const std::string& path, int patience)
{
    constexpr int pause = 10; // milliseconds
    for (;; patience -= pause) {
        if (take(path)) return true;
        const bool isTaken = errno == EWOULDBLOCK || errno == EACCES;
        if (!isTaken || patience <= 0) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(pause));
    }
}

} // namespace facetor
