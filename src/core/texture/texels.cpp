#include "texture/texels.h"

#include "base/pages.h"

#include <new>

namespace facetor {

namespace {

/// Stands before the first texel.
struct alignas(16) Header {
    std::size_t owners;
    std::size_t count; ///< of texels
};

Header& headerOf(const Rgb555* texels)
{
    return reinterpret_cast<Header*>(const_cast<Rgb555*>(texels))[-1];
}

} // namespace

bool Texels::allocate(std::size_t count)
{
    release(std::exchange(texels_, nullptr));
    if (count > (static_cast<std::size_t>(-1) - sizeof(Header)) / sizeof(Rgb555)) return false;
    void* pages = allocatePages(sizeof(Header) + count * sizeof(Rgb555));
    if (!pages) return false;
    auto* header = ::new (pages) Header{1, count};
    texels_ = reinterpret_cast<Rgb555*>(header + 1);
    return true;
}

std::size_t Texels::size() const
{
    return texels_ ? headerOf(texels_).count : 0;
}

void Texels::retain(Rgb555* texels)
{
    if (texels) ++headerOf(texels).owners;
}

Texels Texels::shareOf(Rgb555* texels)
{
    Texels share;
    retain(texels);
    share.texels_ = texels;
    return share;
}

void Texels::release(Rgb555* texels)
{
    if (texels && --headerOf(texels).owners == 0) freePages(&headerOf(texels));
}

bool Texels::isShared(const Rgb555* texels)
{
    return texels && headerOf(texels).owners > 1;
}

} // namespace facetor
