#include "exchange/foreign_file.h"

#include "base/beside_file.h"
#include "base/file.h"
#include "base/text.h"
#include "exchange/gltf_reader.h"
#include "exchange/keep_attributes.h"
#include "exchange/obj_reader.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <new>
#include <set>
#include <utility>

namespace facetor {

namespace {

/// The share of the work that reading is; the rest makes a model of it.
constexpr double readingShare = 0.7;

/// A part of the work, from `begin` to `end` of the whole.
ImportProgress partOf(const ImportProgress& progress, double begin, double end)
{
    if (!progress) return {};
    return [&progress, begin, end](double done) { return progress(begin + done * (end - begin)); };
}

/// The slots from which on a list is free: behind its own and those that polygons name.
std::uint32_t firstFreeSlot(const TextureList& textures, const Model& model)
{
    std::uint32_t next = textures.usedCount();
    for (std::uint32_t p = 0; p < model.totalPolygonCount; ++p) {
        const PolygonAttribute& attribute = model.attributes[p];
        if ((attribute.flags & textureMap) != 0 && attribute.texture < textureSlotCount)
            next = std::max(next, attribute.texture + 1u);
    }
    return next;
}

constexpr std::uint32_t shownBy = textureMap | flipHorizontal | flipVertical;

/// Puts textures of an import into slots of a list.
class SlotFiller {
public:
    SlotFiller(TextureList& textures, const TextureList& imported, ImportedSlots* made,
               std::uint32_t next)
        : textures_(textures), imported_(imported), made_(made), next_(next)
    {
    }

    /// The slot that shows an imported texture: one behind the others, the same for each polygon.
    std::uint32_t slotOf(std::uint32_t texture)
    {
        const auto [at, isNew] = slots_.try_emplace(texture, next_);
        if (!isNew) return at->second;
        if (next_++ < textureSlotCount) {
            put(at->second, texture);
            ++filled_;
        }
        return at->second;
    }

    /// The slot of a polygon that showed `slot` and is to show an imported texture: that one, with
    /// the new contents, when nobody has changed what an import put there.
    std::uint32_t refreshed(std::uint32_t slot, std::uint32_t texture)
    {
        const auto [at, isFirst] = refreshed_.try_emplace(slot, texture);
        if (!isFirst) return at->second == texture ? slot : slotOf(texture);
        put(slot, texture);
        return slot;
    }
    bool isUnchanged(std::uint32_t slot) const
    {
        if (refreshed_.contains(slot)) return true;
        const auto known = made_->find(slot);
        return known != made_->end() && !textures_.isEmpty(slot) &&
               contentOf(textures_.slot(slot)) == known->second;
    }

    std::uint32_t end() const { return next_; }
    std::uint32_t filled() const { return filled_; }

private:
    void put(std::uint32_t slot, std::uint32_t texture)
    {
        const TextureSlot& from = imported_.slot(texture);
        textures_.set(slot, from.width, from.height, imported_.texels(texture));
        if (made_) (*made_)[slot] = contentOf(from);
    }

    TextureList& textures_;
    const TextureList& imported_;
    ImportedSlots* made_;
    std::uint32_t next_, filled_ = 0;
    std::map<std::uint32_t, std::uint32_t> slots_;     ///< by imported texture
    std::map<std::uint32_t, std::uint32_t> refreshed_; ///< imported textures by slot
};

/// Whether a polygon shows a texture that the import has. A model that was Facetor's may name slots
/// that its list does not fill.
bool showsImported(const PolygonAttribute& attribute, const TextureList& imported)
{
    return (attribute.flags & textureMap) != 0 && attribute.texture < textureSlotCount &&
           !imported.isEmpty(attribute.texture);
}

/// Takes the polygons that are as they were out of what notes say of polygons.
void leaveToFresh(std::vector<ImportNote>& notes, const KeptPolygons& polygons)
{
    std::set<std::uint32_t> fresh;
    for (const KeptPolygons::Polygon& polygon : polygons.fresh) fresh.insert(polygon.imported);
    std::erase_if(notes, [&](ImportNote& note) {
        if (note.polygons.empty()) return false;
        std::erase_if(note.polygons, [&](std::uint32_t p) { return !fresh.contains(p); });
        note.text.replace(0, note.text.find(' '), std::to_string(note.polygons.size()));
        return note.polygons.empty();
    });
}

/// Whether a path, with its ".." and links, leads to something in a folder or below.
bool leadsInto(const std::string& path, const std::string& folder)
{
    const auto nativePath = toPath(path), nativeFolder = toPath(folder);
    if (!nativePath || !nativeFolder) return false;
    std::error_code error;
    const auto full = std::filesystem::weakly_canonical(*nativePath, error);
    if (error) return false;
    const auto fullFolder = std::filesystem::weakly_canonical(*nativeFolder, error);
    if (error) return false;
    const auto way = full.lexically_relative(fullFolder);
    return !way.empty() && *way.begin() != ".." && !way.is_absolute();
}

} // namespace

std::optional<ForeignKind> foreignKindOf(std::string_view path)
{
    const std::string_view extension = extensionOf(path);
    if (equalIgnoringCase(extension, "obj")) return ForeignKind::obj;
    if (equalIgnoringCase(extension, "gltf") || equalIgnoringCase(extension, "glb"))
        return ForeignKind::gltf;
    return std::nullopt;
}

std::string folderOf(const std::string& path)
{
#ifdef _WIN32
    const std::size_t end = path.find_last_of("/\\:");
#else
    const std::size_t end = path.find_last_of('/');
#endif
    return end == std::string::npos ? std::string() : path.substr(0, end + 1);
}

std::string titleOf(const std::string& path)
{
    return std::string(cutExtension(path.substr(folderOf(path).size())));
}

AssetReader assetsBelow(const std::string& folder, std::vector<std::string>* filesRead,
                        const std::string& assets)
{
    return [=](std::string name, std::string& reason) -> std::optional<Bytes> {
        std::replace(name.begin(), name.end(), '\\', '/');
        std::vector<std::string> paths;
        if (staysBelow(name)) paths.push_back(folder + name);
        if (!assets.empty()) {
            const std::string below = assets.ends_with('/') ? assets : assets + '/';
            if (staysBelow(name)) paths.push_back(below + name);
            if (leadsInto(folder + name, assets)) paths.push_back(folder + name);
            const std::string last = name.substr(name.find_last_of("/:") + 1);
            if (staysBelow(last)) paths.push_back(below + last);
        }
        reason = "not beside or below the model";
        for (const std::string& path : paths) {
            std::optional<Bytes> file = readFile(path, largestAsset, &reason);
            if (!file) continue;
            if (filesRead) filesRead->push_back(path);
            return file;
        }
        return std::nullopt;
    };
}

Message importModel(ImportedModel& imported, ForeignKind kind, Bytes file, const std::string& title,
                    const AssetReader& assets, const ImportOptions& options,
                    ImportPictures pictures, const ImportProgress& progress, Reason& reason)
{
    try {
        Scene scene;
        const ImportProgress reading = partOf(progress, 0, readingShare);
        const std::string_view text(reinterpret_cast<const char*>(file.data()), file.size());
        Message message = kind == ForeignKind::gltf
                              ? readGltf(scene, file, assets, reason, reading)
                              : readObj(scene, text, title, assets, reason, reading);
        if (message != Message::none) return message;
        Bytes().swap(file);
        message = createModelStore(imported.model);
        if (message == Message::none) message = imported.textures.create();
        if (message != Message::none) return message;
        return buildModel(imported.model,
                          pictures == ImportPictures::yes ? &imported.textures : nullptr, scene,
                          options, imported.report, reason, partOf(progress, readingShare, 1));
    } catch (const std::bad_alloc&) {
        return Message::outOfMemory;
    }
}

Message importModelFile(ImportedModel& imported, const std::string& path,
                        const ImportOptions& options, const ImportProgress& progress,
                        Reason& reason, std::vector<std::string>* filesRead)
{
    const auto kind = foreignKindOf(path);
    if (!kind) return Message::formatNotSupported;
    std::optional<Bytes> file = readFile(path, largestForeignModel, &reason.text);
    if (!file) return Message::cannotOpenFile;
    return importModel(imported, *kind, std::move(*file), titleOf(path),
                       assetsBelow(folderOf(path), filesRead), options, ImportPictures::yes,
                       progress, reason);
}

ImportedSlots importedSlots(const TextureList& textures)
{
    ImportedSlots slots;
    for (std::uint32_t slot = 0, end = textures.usedCount(); slot < end; ++slot)
        if (!textures.isEmpty(slot)) slots[slot] = contentOf(textures.slot(slot));
    return slots;
}

Message importOnto(Model& result, TextureList& textures, const Model& old, ImportedModel& imported,
                   Reason& reason, ImportedSlots* slots)
{
    try {
        KeptPolygons polygons;
        if (const Message message = keepAttributes(result, old, imported.model, polygons, reason);
            message != Message::none)
            return message;
        ImportReport& report = imported.report;
        SlotFiller filler(textures, imported.textures, slots, firstFreeSlot(textures, old));
        for (const KeptPolygons::Polygon& same : polygons.same) {
            PolygonAttribute& attribute = result.attributes[same.index];
            const PolygonAttribute& now = imported.model.attributes[same.imported];
            if (!slots || !showsImported(now, imported.textures) ||
                (attribute.flags & shownBy) != (now.flags & shownBy) ||
                !filler.isUnchanged(attribute.texture))
                continue;
            attribute.texture =
                static_cast<std::uint16_t>(filler.refreshed(attribute.texture, now.texture));
        }
        for (const KeptPolygons::Polygon& fresh : polygons.fresh) {
            PolygonAttribute& attribute = result.attributes[fresh.index];
            if (showsImported(attribute, imported.textures))
                attribute.texture = static_cast<std::uint16_t>(filler.slotOf(attribute.texture));
        }
        report.textures = filler.filled();
        if (filler.end() > textureSlotCount) {
            reason.text = std::to_string(filler.end()) + " textures where " +
                          std::to_string(textureSlotCount) + " fit";
            return Message::formatNotSupported;
        }
        report.objects = result.objectCount;
        report.kept = polygons.kept;
        report.fresh = static_cast<std::uint32_t>(polygons.fresh.size());
        report.gone = polygons.gone;
        leaveToFresh(report.notes, polygons);
        return Message::none;
    } catch (const std::bad_alloc&) {
        return Message::outOfMemory;
    }
}

} // namespace facetor
