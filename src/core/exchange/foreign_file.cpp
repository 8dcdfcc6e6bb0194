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

/// Takes the polygons that are as they were out of what notes say of polygons.
void leaveToFresh(std::vector<ImportNote>& notes, const KeptPolygons& polygons)
{
    std::set<std::uint32_t> fresh;
    for (const KeptPolygons::Fresh& polygon : polygons.fresh) fresh.insert(polygon.imported);
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
                        Reason& reason)
{
    const auto kind = foreignKindOf(path);
    if (!kind) return Message::formatNotSupported;
    std::optional<Bytes> file = readFile(path, largestForeignModel, &reason.text);
    if (!file) return Message::cannotOpenFile;
    return importModel(imported, *kind, std::move(*file), titleOf(path),
                       assetsBelow(folderOf(path)), options, ImportPictures::yes, progress, reason);
}

Message importOnto(Model& result, TextureList& textures, const Model& old, ImportedModel& imported,
                   Reason& reason)
{
    try {
        KeptPolygons polygons;
        if (const Message message = keepAttributes(result, old, imported.model, polygons, reason);
            message != Message::none)
            return message;
        ImportReport& report = imported.report;
        report.textures = 0;
        std::uint32_t next = firstFreeSlot(textures, old);
        std::map<std::uint32_t, std::uint32_t> slots;
        for (const KeptPolygons::Fresh& fresh : polygons.fresh) {
            PolygonAttribute& attribute = result.attributes[fresh.index];
            if ((attribute.flags & textureMap) == 0) continue;
            // A model that was Facetor's may name slots that its list does not fill.
            if (attribute.texture >= textureSlotCount ||
                imported.textures.isEmpty(attribute.texture))
                continue;
            const auto [at, isNew] = slots.try_emplace(attribute.texture, next);
            if (isNew && next++ < textureSlotCount) {
                const TextureSlot slot = imported.textures.slot(attribute.texture);
                textures.set(at->second, slot.width, slot.height,
                             imported.textures.texels(attribute.texture));
                ++report.textures;
            }
            attribute.texture = static_cast<std::uint16_t>(at->second);
        }
        if (next > textureSlotCount) {
            reason.text = std::to_string(next) + " textures where " +
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
