#pragma once

#include "exchange/texture_cuts.h"
#include "model/model.h"

#include <cstdint>
#include <vector>

namespace facetor {

enum class UpAxis { y, z };

/// What becomes of triangles that were quads once.
enum class Triangles { rejoin, keep };

struct ImportOptions {
    float scale = 1; ///< finite and above 0
    UpAxis up = UpAxis::y;
    Triangles triangles = Triangles::rejoin;
    TextureImport textures;

    bool operator==(const ImportOptions&) const = default;
};

/// What an import has made, and what the user should know of it.
struct ImportReport {
    std::uint32_t objects = 0, vertices = 0, polygons = 0;
    std::uint32_t quads = 0, triangles = 0; ///< polygons of four and of three different corners
    std::uint32_t rejoined = 0;             ///< polygons made of two faces
    std::uint32_t split = 0;                ///< faces of more than four corners
    std::uint32_t dropped = 0;              ///< faces without area or of fewer than three corners
    std::uint32_t textures = 0;             ///< slots that were filled
    std::uint32_t shared = 0;               ///< polygons that show a slot made for another
    std::optional<std::uint32_t> kept;      ///< polygons of an older model, onto which it went
    std::uint32_t fresh = 0, gone = 0;      ///< polygons that it did not have, or has no more
    std::vector<ImportNote> notes;
};

/// What objects keep of their names, in bytes.
inline constexpr std::size_t longestImportedName = 127;

/// Makes a model of a scene, in place of what `model` holds. (x, y, z) becomes (x, -y, -z), with z
/// up (x, -z, y); the first corner stays the first and the others follow backwards, so that what
/// is in front is what the view Forward shows. Pictures go into the slots of `textures` from 0 on;
/// without such a list polygons with pictures are plain. Needs pools that createModelStore() has
/// made, and a created list. Of a file that Facetor has written comes the model that it was.
/// formatNotSupported, with the counts in `reason`, when it does not fit the pools; the model then
/// is as it was. Once `progress` has said no it may be half made.
Message buildModel(Model& model, TextureList* textures, const Scene& scene,
                   const ImportOptions& options, ImportReport& report, Reason& reason,
                   const ImportProgress& progress = {});

} // namespace facetor
