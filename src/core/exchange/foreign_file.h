#pragma once

#include "base/bytes.h"
#include "exchange/model_import.h"
#include "exchange/scene.h"
#include "model/model.h"
#include "texture/texture_list.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace facetor {

// Model files of other programs, from the file to model and texture list.

enum class ForeignKind { obj, gltf };

/// Of a foreign model and of each file that it names, in bytes.
inline constexpr std::uint64_t largestForeignModel = 256u * 1024 * 1024;
inline constexpr std::uint64_t largestAsset = 64u * 1024 * 1024;

/// The kind that a path's extension names, in any case; none for every other one.
std::optional<ForeignKind> foreignKindOf(std::string_view path);

/// The folder of a path, with the slash that ends it; empty when it has none.
std::string folderOf(const std::string& path);

/// A file's name without folder and extension.
std::string titleOf(const std::string& path);

/// Reads what a model names: files in its folder or below, given with the slash that ends it. What
/// was read is added to `filesRead`, when given. With `assets`, another folder, also what lies in
/// that one or below: under the name that the model has for it, where that leads there, or under
/// its last part.
AssetReader assetsBelow(const std::string& folder, std::vector<std::string>* filesRead = nullptr,
                        const std::string& assets = {});

/// What an import makes.
struct ImportedModel {
    Model model;
    TextureList textures;
    ImportReport report;
};

/// Whether pictures become textures; without them polygons are plain.
enum class ImportPictures { no, yes };

/// Makes model and textures of a whole file, which is freed as soon as it is read. `title` names
/// the object of faces before the first name. formatNotSupported, with the line, the element or
/// the counts in `reason`, for a file that is damaged or does not fit, and once `progress` has said
/// no; outOfMemory.
Message importModel(ImportedModel& imported, ForeignKind kind, Bytes file, const std::string& title,
                    const AssetReader& assets, const ImportOptions& options,
                    ImportPictures pictures, const ImportProgress& progress, Reason& reason);

/// The same with pictures, of a file at a path and what it names beside and below it; those files
/// are added to `filesRead`, when given. cannotOpenFile when it cannot be read.
Message importModelFile(ImportedModel& imported, const std::string& path,
                        const ImportOptions& options, const ImportProgress& progress,
                        Reason& reason, std::vector<std::string>* filesRead = nullptr);

/// The slots that imports have filled, with contentOf() what they put there: a slot that still
/// shows it has not been changed since.
using ImportedSlots = std::map<std::uint32_t, std::uint64_t>;

/// The slots of a list that has just been imported.
ImportedSlots importedSlots(const TextureList& textures);

/// Makes `result` of a model that was imported anew and of the older one that it comes after, as
/// keepAttributes() does. Textures of polygons that the older model did not have go into `textures`
/// behind those that it holds and those that old polygons name. The report gets what was kept.
/// With `slots`, which is brought up to date, those of them that nobody has changed get what the
/// pictures of their polygons show now. Needs pools of `result`. formatNotSupported, with the cause
/// in `reason`, when objects or textures are too many then; outOfMemory.
Message importOnto(Model& result, TextureList& textures, const Model& old, ImportedModel& imported,
                   Reason& reason, ImportedSlots* slots = nullptr);

} // namespace facetor
