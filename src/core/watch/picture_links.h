#pragma once

#include "base/file_stamp.h"
#include "texture/texture_list.h"

#include <cstdint>
#include <string>
#include <vector>

namespace facetor {

/// A texture that was made of an image file. It belongs to the contents of a slot, not to its
/// number: where textures move to other slots, are stepped back over or are brought back, the link
/// holds wherever that content stands; once a texture is edited the link means nothing any more.
struct PictureLink {
    std::uint32_t slot = 0; ///< where it was seen last
    std::string plugIn;     ///< the name of the one that read it
    std::string path;
    FileStamp stamp;           ///< of the file when it was read
    std::uint64_t content = 0; ///< contentOf() the texture that it made

    bool operator==(const PictureLink&) const = default;
};
using PictureLinks = std::vector<PictureLink>;

/// Links that a run remembers at most; the oldest go first.
inline constexpr std::size_t mostPictureLinks = 2 * textureSlotCount;

/// The link's slot now shows what was read from its file, which had its stamp before.
void linkPicture(PictureLinks& links, const TextureList& list, PictureLink link);

/// The links whose texture the list holds, with the slots that hold it: each slot once, and of
/// links with the same texture each to a slot of its own as far as there are any.
PictureLinks liveLinks(const PictureLinks& links, const TextureList& list);

} // namespace facetor
