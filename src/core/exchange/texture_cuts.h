#pragma once

#include "exchange/scene.h"
#include "image/dither.h"
#include "texture/texture_list.h"

#include <array>
#include <cstdint>
#include <map>
#include <unordered_map>
#include <vector>

namespace facetor {

struct TextureImport {
    std::uint32_t largestWidth = 64;  ///< a multiple of 8, 8 to 256
    std::uint32_t largestHeight = 64; ///< 1 to 256
    Dither dither = Dither::none;

    bool operator==(const TextureImport&) const = default;
};

/// What a polygon shows: a whole slot, flipped as its attribute says.
struct ShownCut {
    std::uint32_t slot;
    std::uint32_t flips; ///< flipHorizontal, flipVertical
    std::size_t first;   ///< the corner that the polygon begins at, of those that were given
};

/// Scales a picture to width x height texels of red, green, blue and alpha: the nearest pixels, or
/// their mean where it becomes smaller.
std::vector<std::uint8_t> scaledPicture(const Picture& picture, std::uint32_t width,
                                        std::uint32_t height);

/// The size that width x height texels get when they are scaled down as a whole to the largest
/// that is allowed: a width of the nearest multiple of 8, a height of the nearest whole number.
std::array<std::uint32_t, 2> fittedSize(double width, double height, std::uint32_t largestWidth,
                                        std::uint32_t largestHeight);

/// Cuts what polygons show out of a scene's pictures. Equal cuts are one slot, also when one is the
/// other flipped.
class TextureCuts {
public:
    TextureCuts(const Scene& scene, const TextureImport& options) : scene_(scene), options_(options)
    {
    }

    /// The slot of a polygon with a picture, its corners clockwise as it is seen. Of a triangle the
    /// last corner is given twice: it is the whole bottom edge. Needs a material with a picture.
    ShownCut place(std::uint32_t material, const std::array<Real2, 4>& uvs, bool isTriangle);

    std::uint32_t count() const { return static_cast<std::uint32_t>(cuts_.size()); }
    std::uint32_t sharedCount() const { return shared_; }

    /// Puts the cuts into the slots from 0 on. Needs count() within the list.
    Message store(TextureList& list) const;

private:
    struct Cut {
        std::uint16_t width, height;
        std::vector<Rgb555> texels;

        bool operator==(const Cut&) const = default;
    };
    using Lookup = std::array<std::array<std::uint8_t, 256>, 3>;

    Cut cutOut(const SceneMaterial& material, const std::array<Real2, 4>& uvs, double width,
               double height);
    ShownCut share(Cut cut);
    const Lookup& lookupOf(const SceneMaterial& material);
    static Cut flipped(const Cut& cut, std::uint32_t flips);
    static std::uint64_t hashOf(const Cut& cut);

    const Scene& scene_;
    TextureImport options_;
    std::vector<Cut> cuts_;
    std::unordered_multimap<std::uint64_t, std::uint32_t> slotsByHash_; ///< of cuts as they are
    std::map<std::pair<std::uint32_t, std::array<Real2, 4>>, ShownCut> known_;
    std::map<Real3, Lookup> lookups_; ///< by the colour that texels are multiplied with
    std::uint32_t shared_ = 0;
};

} // namespace facetor
