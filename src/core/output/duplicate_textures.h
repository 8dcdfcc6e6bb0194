#pragma once

#include "texture/texture_list.h"

#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <vector>

namespace facetor {

/// For each slot that equals a lower one, that one.
using DuplicateTextures = std::unordered_map<std::uint32_t, std::uint32_t>;

/// All texels of a list, as a number of them.
inline constexpr std::size_t allTexels = static_cast<std::size_t>(-1);

/// Finds the textures of a list that equal a lower one as the target has them: flipped or not, the
/// colours of transparent texels apart. Works a few textures at a time, for a list that is looked
/// at while it is edited, and remembers of the list before what is still the same.
class DuplicateSearch {
public:
    /// Begins with a list, in place of the one before. Shares its texels to the next begin(), so
    /// that edits meanwhile are not seen.
    void begin(const TextureList& list);
    /// Goes on until about `texels` have been read. True when the whole list has been.
    bool step(std::size_t texels);
    /// All of them once step() has returned true.
    const DuplicateTextures& found() const { return found_; }

private:
    std::size_t look(std::uint32_t number);

    TextureList list_;
    std::uint32_t used_ = 0; ///< slots of it
    std::uint32_t next_ = 0; ///< slot to be looked at
    std::vector<std::uint64_t> hashes_;
    std::vector<bool> hashed_;                                     ///< of which slots hashes_ holds
    std::unordered_multimap<std::uint64_t, std::uint32_t> byHash_; ///< slots that are no duplicates
    DuplicateTextures found_;
};

} // namespace facetor
