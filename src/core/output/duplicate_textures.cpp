#include "output/duplicate_textures.h"

#include <algorithm>

namespace facetor {

namespace {

std::size_t texelCount(const TextureSlot& slot)
{
    return std::size_t{slot.width} * slot.height;
}

/// A slot's texel as the target has it; `flips` mirrors columns (1) and rows (2).
std::uint16_t texelAt(const TextureSlot& slot, std::uint32_t x, std::uint32_t y, unsigned flips)
{
    if ((flips & 1) != 0) x = slot.width - 1u - x;
    if ((flips & 2) != 0) y = slot.height - 1u - y;
    const Rgb555 texel = slot.pixels[std::size_t{y} * slot.width + x];
    return (texel & opaqueBit) != 0 ? texel : std::uint16_t{0};
}

bool isFlipOf(const TextureSlot& a, const TextureSlot& b, unsigned flips)
{
    for (std::uint32_t y = 0; y < a.height; ++y)
        for (std::uint32_t x = 0; x < a.width; ++x)
            if (texelAt(a, x, y, 0) != texelAt(b, x, y, flips)) return false;
    return true;
}

bool isSameFlippedOrNot(const TextureSlot& a, const TextureSlot& b)
{
    if (a.width != b.width || a.height != b.height) return false;
    if (a.pixels == b.pixels) return true; // shared
    for (unsigned flips = 0; flips < 4; ++flips)
        if (isFlipOf(a, b, flips)) return true;
    return false;
}

/// The same for all flips of a texture.
std::uint64_t hashOf(const TextureSlot& slot)
{
    std::uint64_t sum = std::uint64_t{slot.width} << 16 | slot.height;
    for (std::uint32_t y = 0; y < slot.height; ++y)
        for (std::uint32_t x = 0; x < slot.width; ++x) {
            // Texels that flips bring to each other's place count alike.
            const std::uint64_t column = std::min(x, slot.width - 1u - x);
            const std::uint64_t row = std::min(y, slot.height - 1u - y);
            std::uint64_t mixed =
                (texelAt(slot, x, y, 0) + (column << 16) + (row << 32)) * 0x9E3779B97F4A7C15u;
            mixed ^= mixed >> 29;
            sum += mixed * 0xBF58476D1CE4E5B9u;
        }
    return sum;
}

} // namespace

void DuplicateSearch::begin(const TextureList& list)
{
    hashes_.resize(textureSlotCount);
    hashed_.resize(textureSlotCount);
    const bool hadList = !list_.slots().empty();
    for (std::uint32_t i = 0; i < textureSlotCount; ++i) {
        // Texels that are shared are not written to: the same place holds the same.
        const TextureSlot &now = list.slot(i), &before = hadList ? list_.slot(i) : now;
        hashed_[i] = hadList && hashed_[i] && now.pixels == before.pixels &&
                     now.width == before.width && now.height == before.height;
    }
    list_ = list;
    used_ = list_.slots().empty() ? 0 : list_.usedCount(); // without memory for the copy none
    next_ = 0;
    byHash_.clear();
    found_.clear();
}

bool DuplicateSearch::step(std::size_t texels)
{
    for (std::size_t read = 0; next_ < used_ && read < texels; ++next_)
        if (!list_.isEmpty(next_)) read += look(next_);
    return next_ == used_;
}

/// Looks at a slot and returns about how many texels that took.
std::size_t DuplicateSearch::look(std::uint32_t number)
{
    const TextureSlot& slot = list_.slot(number);
    std::size_t read = 1;
    if (!hashed_[number]) {
        hashes_[number] = hashOf(slot);
        hashed_[number] = true;
        read += texelCount(slot);
    }
    const auto [begin, end] = byHash_.equal_range(hashes_[number]);
    const auto same = std::find_if(begin, end, [&](const auto& entry) {
        read += texelCount(slot);
        return isSameFlippedOrNot(slot, list_.slot(entry.second));
    });
    if (same != end)
        found_.emplace(number, same->second);
    else
        byHash_.emplace(hashes_[number], number);
    return read;
}

} // namespace facetor
