#pragma once

#include "base/angle.h"
#include "base/bytes.h"
#include "base/message.h"
#include "image/picture.h"

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace facetor {

// What the readers of other programs' models make, whatever the file: objects, polygons of any
// number of corners, materials and pictures, in the axes and units of the file. model_import.h
// makes a model of it.

using Real2 = std::array<double, 2>;
using Real3 = std::array<double, 3>;

/// "None" among the indices of a scene.
inline constexpr std::uint32_t noIndex = 0xFFFFFFFF;

/// What colours of a scene are multiplied in.
enum class ColourSpace { srgb, linear };

/// How texture coordinates outside 0 to 1 come back into the picture.
enum class Wrap { repeat, clamp, mirror };

/// A picture, by the name that the file has for it; one that could not be read has no pixels.
struct ScenePicture {
    std::string name;
    Picture pixels;
};

struct SceneMaterial {
    std::string name;
    Real3 colour{1, 1, 1}; ///< 0 to 1 each, in the scene's colour space
    double opacity = 1;
    bool doubleSided = false;
    bool unlit = false;
    std::uint32_t picture = noIndex; ///< multiplied by `colour`
    double alphaCutoff = 0.5; ///< texels of less alpha are transparent; at 0 alpha is ignored
    Wrap wrapU = Wrap::repeat, wrapV = Wrap::repeat;
};

struct SceneCorner {
    std::uint32_t position = noIndex;
    std::uint32_t uv = noIndex, normal = noIndex,
                  colour = noIndex; ///< none where the file gives none
};

struct SceneFace {
    std::uint32_t firstCorner, cornerCount; ///< of Scene::corners, counter-clockwise from outside
    std::uint32_t object;
    std::uint32_t material; ///< or none
    std::uint32_t line;     ///< where the file says it; 0 when it has no lines
    bool smooth;            ///< asked for by the file, beside what normals say
};

/// A node. A point of a child is multiplied by its node's placement, then by its parent's.
struct SceneObject {
    std::string name;
    std::uint32_t parent = noIndex; ///< comes before its children
    /// Columns are the images of the axes, the last one the translation: a file's column vectors.
    std::array<Real3, 4> placement{{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {0, 0, 0}}};
};

/// Something that the user should know of an import that goes on.
struct ImportNote {
    std::uint32_t line = 0; ///< 0: of no line
    std::string text;
    /// Those that it is about, by their indices in the model that is made; their number is what its
    /// text begins with.
    std::vector<std::uint32_t> polygons{};
};

/// What a glb that Facetor has written holds of the model beside what other programs see.
struct OwnModel {
    Bytes model;                                 ///< a model file
    std::optional<Bytes> textures;               ///< a texture list file
    std::vector<std::array<Angle, 3>> rotations; ///< of each object: the file rounds them
};

struct Scene {
    std::vector<Real3> positions, normals, colours; ///< all finite
    std::vector<Real2> uvs;                         ///< (0, 0) is the picture's left top
    std::vector<SceneCorner> corners;
    std::vector<SceneFace> faces; ///< with indices in range
    std::vector<SceneObject> objects;
    std::vector<SceneMaterial> materials;
    std::vector<ScenePicture> pictures;
    std::vector<ImportNote> notes;
    ColourSpace colourSpace = ColourSpace::srgb;
    std::optional<OwnModel> own; ///< in place of all of the above but the notes
};

/// A text without the byte order mark that some programs put in front of UTF-8.
std::string_view withoutMark(std::string_view text);

/// What is said of a file with so many faces that they cannot fit a model.
std::string tooManyFaces(std::size_t count);

/// Reads a file that a model names, by the name that stands there. None, with the cause in a few
/// words, when there is no such file or it must not be read.
using AssetReader =
    std::function<std::optional<Bytes>(const std::string& name, std::string& reason)>;

/// Told now and then how much of the work is done, from 0 to 1; its false breaks the work off.
using ImportProgress = std::function<bool(double done)>;

/// Whether the work goes on; why not then stands in `reason`.
bool goesOn(const ImportProgress& progress, double done, Reason& reason);

/// Whether a name in a model's file leads to a file beside or below it: no absolute path, no URL,
/// no "..". Backslashes count as slashes.
bool staysBelow(std::string_view name);

/// The scene's picture of that name, read with `assets` when it is new; none when it cannot be
/// read, which is noted once.
std::uint32_t addPicture(Scene& scene, const std::string& name, std::uint32_t line,
                         const AssetReader& assets);

} // namespace facetor
