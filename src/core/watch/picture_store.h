#pragma once

#include "watch/picture_links.h"

#include <string>
#include <string_view>
#include <vector>

namespace facetor {

/// Where the textures of saved texture lists came from, for the next time that one is opened. The
/// format is docs/formats/pictures.md.
struct PictureStore {
    struct List {
        std::string path; ///< of the texture list's file
        PictureLinks links;
    };
    std::vector<List> lists; ///< the one that was saved last at the end
};

/// Lists that the store remembers at most.
inline constexpr std::size_t rememberedLists = 64;

/// The whole file.
std::string formatPictures(const PictureStore& store);

/// Reads it. Lines that are not known or wrong are passed over.
PictureStore parsePictures(std::string_view text);

/// The links of a list, by its path but for case; none when it is not known.
PictureLinks linksOf(const PictureStore& store, const std::string& path);

/// The links of a list are these now. Without any the list is forgotten.
void rememberLinks(PictureStore& store, const std::string& path, PictureLinks links);

} // namespace facetor
