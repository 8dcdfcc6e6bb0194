#pragma once

#include <string>

namespace facetor {

/// A file that one process at a time holds: the system gives it free when the process ends, however
/// it does. The file is made when it is missing, and stays.
class FileLock {
public:
    FileLock() = default;
    ~FileLock() { release(); }
    FileLock(FileLock&& other) noexcept : descriptor_(other.descriptor_) { other.descriptor_ = -1; }
    FileLock& operator=(FileLock&& other) noexcept;

    /// Takes the lock. False at once when another holds it, in this process or another one, and
    /// when the file cannot be opened; errno then says why.
    [[nodiscard]] bool take(const std::string& path);
    /// take() that tries again for so long, in milliseconds, while another holds it.
    [[nodiscard]] bool takeWithin(const std::string& path, int patience);

    bool isHeld() const { return descriptor_ >= 0; }
    void release();

private:
    int descriptor_ = -1;
};

} // namespace facetor
