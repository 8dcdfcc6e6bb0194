#pragma once

#include "base/bytes.h"
#include "base/colour.h"
#include "texture/texture_list.h"

#include <cstdint>
#include <string_view>
#include <vector>

namespace facetor::samples {

/// A colour with `step` added to each component, clamped to 0-31.
Rgb555 shifted(Rgb555 colour, int step);
/// The mean of two colours, `weight` sixteenths of the second.
Rgb555 mixed(Rgb555 first, Rgb555 second, int weight);

/// A texture being drawn. What lies outside is not drawn; all texels are opaque unless cleared.
class Picture {
public:
    Picture(int width, int height, Rgb555 colour);

    int width() const { return width_; }
    int height() const { return height_; }
    Rgb555 at(int x, int y) const { return texels_[index(x, y)]; }

    void set(int x, int y, Rgb555 colour);
    /// Makes a texel transparent.
    void erase(int x, int y);
    /// x0 <= x < x1, y0 <= y < y1.
    void fill(int x0, int y0, int x1, int y1, Rgb555 colour);
    /// Adds a step to each component of what is there.
    void shade(int x0, int y0, int x1, int y1, int step);
    /// Texels whose centre lies within `radius` of (x, y), in texels.
    void disc(double x, double y, double radius, Rgb555 colour);
    /// Steps of -amount to +amount that look random.
    void grain(std::uint32_t seed, int amount);
    /// A plate from x0, y0 to before x1, y1: lit at its top and left edge, dark at the others.
    void plate(int x0, int y0, int x1, int y1, int depth);
    /// Digits of 3 x 5 cells of `size` texels each, a cell apart.
    void number(int x, int y, int size, std::string_view digits, Rgb555 colour);

    /// As a PNG file, with alpha.
    Bytes toPng() const;
    /// Makes it the texture of a slot. outOfMemory when memory is short.
    Message store(TextureList& list, std::uint32_t slot) const;

private:
    std::size_t index(int x, int y) const { return static_cast<std::size_t>(y * width_ + x); }
    bool holds(int x, int y) const { return x >= 0 && y >= 0 && x < width_ && y < height_; }

    int width_, height_;
    std::vector<Rgb555> texels_;
};

} // namespace facetor::samples
