#include "exchange/texture_cuts.h"

#include "exchange/scene_colour.h"

#include <algorithm>
#include <cmath>

namespace facetor {

namespace {

constexpr double mostPoints = 16; ///< of a region, which may go round its picture many times
constexpr double sameUv = 1e-4;   ///< how far a corner may be from its picture's

Real2 between(const Real2& a, const Real2& b, double t)
{
    return {a[0] + (b[0] - a[0]) * t, a[1] + (b[1] - a[1]) * t};
}

/// A texel's number, from any coordinate.
std::size_t wrapped(double coordinate, std::uint32_t size, Wrap wrap)
{
    if (wrap == Wrap::clamp) coordinate = std::clamp(coordinate, 0.0, 1.0);
    if (wrap == Wrap::repeat) coordinate -= std::floor(coordinate);
    if (wrap == Wrap::mirror) {
        coordinate -= 2 * std::floor(coordinate / 2);
        if (coordinate > 1) coordinate = 2 - coordinate;
    }
    const auto texel = static_cast<std::size_t>(coordinate * size);
    return std::min<std::size_t>(texel, size - 1);
}

/// The corner of the unit square that a coordinate is, 0 to 3 clockwise from the left top; 4 for
/// none.
std::size_t cornerAt(const Real2& uv)
{
    static constexpr std::array<Real2, 4> square{{{0, 0}, {1, 0}, {1, 1}, {0, 1}}};
    for (std::size_t i = 0; i < 4; ++i)
        if (std::abs(uv[0] - square[i][0]) < sameUv && std::abs(uv[1] - square[i][1]) < sameUv)
            return i;
    return 4;
}

/// How a polygon with the picture's four corners shows all of it, if it does.
std::optional<ShownCut> wholePicture(std::array<Real2, 4> uvs, const SceneMaterial& material)
{
    const std::array<Wrap, 2> wraps{material.wrapU, material.wrapV};
    for (std::size_t k = 0; k < 2; ++k) {
        if (wraps[k] == Wrap::clamp) continue;
        double least = uvs[0][k];
        for (const Real2& uv : uvs) least = std::min(least, uv[k]);
        const double base = std::floor(least + sameUv);
        const bool isMirrored = wraps[k] == Wrap::mirror && std::fmod(base, 2) != 0;
        for (Real2& uv : uvs) uv[k] = isMirrored ? base + 1 - uv[k] : uv[k] - base;
    }
    std::array<std::size_t, 4> at;
    for (std::size_t i = 0; i < 4; ++i) {
        at[i] = cornerAt(uvs[i]);
        if (at[i] == 4) return std::nullopt;
    }
    const bool forwards = at[1] == (at[0] + 1) % 4;
    for (std::size_t i = 0; i < 4; ++i)
        if (at[i] != (at[0] + (forwards ? i : 4 - i)) % 4) return std::nullopt;
    // The first corner stays where flips alone can say the order.
    if (forwards && at[0] == 0) return ShownCut{0, 0, 0};
    if (forwards && at[0] == 2) return ShownCut{0, flipHorizontal | flipVertical, 0};
    if (!forwards && at[0] == 1) return ShownCut{0, flipHorizontal, 0};
    if (!forwards && at[0] == 3) return ShownCut{0, flipVertical, 0};
    const std::size_t start = forwards ? 0 : 1; // which corner of the picture to begin at
    std::size_t first = 0;
    while (at[first] != start) ++first;
    return ShownCut{0, forwards ? 0u : std::uint32_t{flipHorizontal}, first};
}

/// The mean of a texel's share of a picture, by points that lie evenly in it.
class Sampler {
public:
    /// With `leastAlpha` 255 a picture's alpha does not count.
    Sampler(const Picture& picture, Wrap wrapU, Wrap wrapV, std::uint8_t leastAlpha = 0)
        : picture_(picture), wrapU_(wrapU), wrapV_(wrapV), leastAlpha_(leastAlpha)
    {
    }

    const std::uint8_t* at(const Real2& uv) const
    {
        return picture_.rgba.data() + (wrapped(uv[1], picture_.height, wrapV_) * picture_.width +
                                       wrapped(uv[0], picture_.width, wrapU_)) *
                                          4;
    }

    /// `points` a texel along its width and height.
    std::vector<std::uint8_t> sample(const std::array<Real2, 4>& uvs, std::uint32_t width,
                                     std::uint32_t height,
                                     const std::array<std::uint32_t, 2>& points) const
    {
        std::vector<std::uint8_t> rgba(std::size_t{width} * height * 4);
        std::uint8_t* texel = rgba.data();
        const std::uint32_t rows = height * points[1], columns = width * points[0];
        for (std::uint32_t y = 0; y < height; ++y)
            for (std::uint32_t x = 0; x < width; ++x, texel += 4) {
                std::array<std::uint32_t, 4> sum{};
                for (std::uint32_t j = 0; j < points[1]; ++j) {
                    const double t = (y * points[1] + j + 0.5) / rows;
                    const Real2 left = between(uvs[0], uvs[3], t);
                    const Real2 right = between(uvs[1], uvs[2], t);
                    for (std::uint32_t i = 0; i < points[0]; ++i) {
                        const std::uint8_t* const pixel =
                            at(between(left, right, (x * points[0] + i + 0.5) / columns));
                        const std::uint32_t alpha = std::max(pixel[3], leastAlpha_);
                        for (std::size_t k = 0; k < 3; ++k) sum[k] += pixel[k] * alpha;
                        sum[3] += alpha;
                    }
                }
                if (sum[3] == 0) continue;
                for (std::size_t k = 0; k < 3; ++k)
                    texel[k] = static_cast<std::uint8_t>((sum[k] + sum[3] / 2) / sum[3]);
                const std::uint32_t count = points[0] * points[1];
                texel[3] = static_cast<std::uint8_t>((sum[3] + count / 2) / count);
            }
        return rgba;
    }

private:
    const Picture& picture_;
    Wrap wrapU_, wrapV_;
    std::uint8_t leastAlpha_;
};

/// Points along a texel that stands for so many of the picture. So few that their sum of products
/// of two bytes fits 32 bits in both directions together.
std::uint32_t pointsFor(double texels, double most = 128)
{
    return static_cast<std::uint32_t>(std::clamp(std::ceil(texels - 1e-6), 1.0, most));
}

} // namespace

std::vector<std::uint8_t> scaledPicture(const Picture& picture, std::uint32_t width,
                                        std::uint32_t height)
{
    const Sampler sampler(picture, Wrap::clamp, Wrap::clamp);
    return sampler.sample(
        {{{0, 0}, {1, 0}, {1, 1}, {0, 1}}}, width, height,
        {pointsFor(double(picture.width) / width), pointsFor(double(picture.height) / height)});
}

std::array<std::uint32_t, 2> fittedSize(double width, double height, std::uint32_t largestWidth,
                                        std::uint32_t largestHeight)
{
    const double scale = std::min({1.0, largestWidth / width, largestHeight / height});
    const double columns = std::floor(width * scale / 8 + 0.5) * 8;
    const double rows = std::floor(height * scale + 0.5);
    return {static_cast<std::uint32_t>(std::clamp(columns, 8.0, double(largestWidth))),
            static_cast<std::uint32_t>(std::clamp(rows, 1.0, double(largestHeight)))};
}

ShownCut TextureCuts::place(std::uint32_t materialIndex, const std::array<Real2, 4>& given,
                            bool isTriangle)
{
    std::array<Real2, 4> uvs = given;
    for (Real2& uv : uvs) // what lies further out has no texels that a single could tell apart
        for (double& coordinate : uv) coordinate = std::clamp(coordinate, -1e6, 1e6);
    const auto key = std::pair(materialIndex, uvs);
    if (const auto known = known_.find(key); known != known_.end()) {
        ++shared_;
        return known->second;
    }
    const SceneMaterial& material = scene_.materials[materialIndex];
    const Picture& picture = scene_.pictures[material.picture].pixels;
    ShownCut placed{};
    if (const auto whole = isTriangle ? std::nullopt : wholePicture(uvs, material)) {
        placed = share(
            cutOut(material, {{{0, 0}, {1, 0}, {1, 1}, {0, 1}}}, picture.width, picture.height));
        placed.flips ^= whole->flips;
        placed.first = whole->first;
    } else {
        std::array<Real2, 4> region = uvs;
        std::size_t first = 0;
        if (!isTriangle) // upright, for whoever looks at the list
            for (std::size_t i = 1; i < 4; ++i)
                if (uvs[i][0] + uvs[i][1] < uvs[first][0] + uvs[first][1]) first = i;
        std::rotate(region.begin(), region.begin() + static_cast<std::ptrdiff_t>(first),
                    region.end());
        const auto length = [&](std::size_t a, std::size_t b) {
            return std::hypot((region[b][0] - region[a][0]) * picture.width,
                              (region[b][1] - region[a][1]) * picture.height);
        };
        placed = share(cutOut(material, region, std::max(length(0, 1), length(3, 2)),
                              std::max(length(0, 3), length(1, 2))));
        placed.first = first;
    }
    known_.emplace(key, placed);
    return placed;
}

TextureCuts::Cut TextureCuts::cutOut(const SceneMaterial& material, const std::array<Real2, 4>& uvs,
                                     double width, double height)
{
    const auto [columns, rows] = fittedSize(std::max(width, 1.0), std::max(height, 1.0),
                                            options_.largestWidth, options_.largestHeight);
    const Sampler sampler(scene_.pictures[material.picture].pixels, material.wrapU, material.wrapV,
                          material.alphaCutoff > 0 ? 0 : 255);
    std::vector<std::uint8_t> rgba = sampler.sample(
        uvs, columns, rows,
        {pointsFor(width / columns, mostPoints), pointsFor(height / rows, mostPoints)});
    const Lookup& lookup = lookupOf(material);
    for (std::size_t i = 0; i < rgba.size(); ++i)
        if (i % 4 != 3) rgba[i] = lookup[i % 4][rgba[i]];
    Cut cut{static_cast<std::uint16_t>(columns), static_cast<std::uint16_t>(rows),
            std::vector<Rgb555>(std::size_t{columns} * rows)};
    quantise(rgba, columns, material.alphaCutoff, options_.dither, cut.texels);
    return cut;
}

const TextureCuts::Lookup& TextureCuts::lookupOf(const SceneMaterial& material)
{
    Real3 factor = material.colour;
    // Programs write black beside a picture where they mean the picture alone.
    if (scene_.colourSpace == ColourSpace::srgb && factor == Real3{0, 0, 0}) factor = {1, 1, 1};
    const auto [at, isNew] = lookups_.try_emplace(factor);
    if (isNew)
        for (std::size_t k = 0; k < 3; ++k)
            for (std::size_t i = 0; i < 256; ++i) {
                const double value = static_cast<double>(i) / 255;
                const double product = scene_.colourSpace == ColourSpace::srgb
                                           ? value * factor[k]
                                           : toSrgb(toLinear(value) * factor[k]);
                at->second[k][i] = toByte(product);
            }
    return at->second;
}

TextureCuts::Cut TextureCuts::flipped(const Cut& cut, std::uint32_t flips)
{
    Cut result = cut;
    const auto row = [&](std::size_t y) {
        return result.texels.begin() + static_cast<std::ptrdiff_t>(y * cut.width);
    };
    if ((flips & flipHorizontal) != 0)
        for (std::size_t y = 0; y < cut.height; ++y) std::reverse(row(y), row(y + 1));
    if ((flips & flipVertical) != 0)
        for (std::size_t y = 0; y < cut.height / 2u; ++y)
            std::swap_ranges(row(y), row(y + 1), row(cut.height - 1u - y));
    return result;
}

std::uint64_t TextureCuts::hashOf(const Cut& cut)
{
    std::uint64_t hash = std::uint64_t{cut.width} << 16 | cut.height;
    for (const Rgb555 texel : cut.texels) {
        hash = (hash ^ texel) * 0x9E3779B97F4A7C15u;
        hash ^= hash >> 32;
    }
    return hash;
}

ShownCut TextureCuts::share(Cut cut)
{
    for (const std::uint32_t flips :
         {0u, std::uint32_t{flipHorizontal}, std::uint32_t{flipVertical},
          std::uint32_t{flipHorizontal | flipVertical}}) {
        const Cut turned = flipped(cut, flips);
        const auto [begin, end] = slotsByHash_.equal_range(hashOf(turned));
        for (auto at = begin; at != end; ++at) {
            if (cuts_[at->second] != turned) continue;
            ++shared_;
            return {at->second, flips, 0};
        }
    }
    const std::uint32_t slot = count();
    slotsByHash_.emplace(hashOf(cut), slot);
    cuts_.push_back(std::move(cut));
    return {slot, 0, 0};
}

Message TextureCuts::store(TextureList& list) const
{
    for (std::uint32_t slot = 0; slot < count(); ++slot) {
        const Cut& cut = cuts_[slot];
        Texels texels;
        if (!texels.allocate(cut.texels.size())) return Message::outOfMemory;
        std::copy(cut.texels.begin(), cut.texels.end(), texels.data());
        list.set(slot, cut.width, cut.height, std::move(texels));
    }
    return Message::none;
}

} // namespace facetor
