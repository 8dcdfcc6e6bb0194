#pragma once

#include <cstdint>

namespace facetor {

/// Until the end of the scope, the x87 computes in single precision, as in the editor since its
/// start: nothing that the core computes or spells may depend on that.
class SinglePrecision {
public:
    SinglePrecision()
    {
#if defined(__i386__) || defined(__x86_64__)
        asm volatile("fnstcw %0" : "=m"(before_));
        const std::uint16_t single = before_ & 0xFCFF;
        asm volatile("fldcw %0" : : "m"(single));
#endif
    }
    ~SinglePrecision()
    {
#if defined(__i386__) || defined(__x86_64__)
        asm volatile("fldcw %0" : : "m"(before_));
#endif
    }
    SinglePrecision(const SinglePrecision&) = delete;
    SinglePrecision& operator=(const SinglePrecision&) = delete;

private:
    std::uint16_t before_ = 0;
};

} // namespace facetor
