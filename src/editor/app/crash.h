#pragma once

namespace facetor {

/// While it lives, a fault that would end the process first has the document written to its
/// recovery file, as far as that can still be done. What the system then does about the fault stays
/// its own business.
class CrashGuard {
public:
    CrashGuard();
    ~CrashGuard();
    CrashGuard(const CrashGuard&) = delete;
    CrashGuard& operator=(const CrashGuard&) = delete;
};

} // namespace facetor
