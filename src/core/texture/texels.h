#pragma once

#include "base/colour.h"

#include <cstddef>
#include <utility>

namespace facetor {

/// The pixels of a texture, shared by all copies: a list that is copied, or kept to be stepped back
/// to, takes no memory for its pictures. They are written to only while they have one owner. One
/// thread at a time may use those that share them.
class Texels {
public:
    Texels() = default;
    Texels(const Texels& other) : texels_(other.texels_) { retain(texels_); }
    Texels(Texels&& other) noexcept : texels_(std::exchange(other.texels_, nullptr)) {}
    Texels& operator=(Texels other) noexcept
    {
        std::swap(texels_, other.texels_);
        return *this;
    }
    ~Texels() { release(texels_); }

    /// Allocates `count` texels of value 0 in place of what was held. False, with nothing held,
    /// when memory is short.
    [[nodiscard]] bool allocate(std::size_t count);

    Rgb555* data() { return texels_; }
    const Rgb555* data() const { return texels_; }
    std::size_t size() const;
    Rgb555& operator[](std::size_t i) { return texels_[i]; }
    Rgb555* begin() { return texels_; }
    Rgb555* end() { return texels_ + size(); }

    // The bare pointer, as the engine's table of textures holds it. Null is nothing.

    /// Hands this owner's share to the caller, who gives it back with release().
    [[nodiscard]] Rgb555* detach() { return std::exchange(texels_, nullptr); }
    /// One more owner of what a pointer stands for.
    static Texels shareOf(Rgb555* texels);
    static void release(Rgb555* texels);
    static bool isShared(const Rgb555* texels);

private:
    static void retain(Rgb555* texels);

    Rgb555* texels_ = nullptr;
};

} // namespace facetor
