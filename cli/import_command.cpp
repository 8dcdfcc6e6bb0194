#include "import_command.h"

#include "base/file.h"
#include "base/text.h"
#include "exchange/gltf_reader.h"
#include "exchange/keep_attributes.h"
#include "exchange/model_import.h"
#include "exchange/obj_reader.h"
#include "model/model_file.h"
#include "outputs.h"
#include "report.h"
#include "texture/texture_file.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdio>
#include <map>
#include <utility>

namespace facetor {

namespace {

constexpr std::uint64_t largestForeignModel = 256u * 1024 * 1024; ///< bytes
constexpr std::uint64_t largestAsset = 64u * 1024 * 1024;

std::string folderOf(const std::string& path)
{
#ifdef _WIN32
    const std::size_t end = path.find_last_of("/\\:");
#else
    const std::size_t end = path.find_last_of('/');
#endif
    return end == std::string::npos ? std::string() : path.substr(0, end + 1);
}

/// The file's name without folder and extension.
std::string titleOf(const std::string& path)
{
    if (path == standardStream) return "stdin";
    return std::string(cutExtension(path.substr(folderOf(path).size())));
}

/// Reads what a model names: files beside and below it.
AssetReader assetsBeside(Run& run, const std::string& model)
{
    return [&run, folder = folderOf(model)](std::string name,
                                            std::string& reason) -> std::optional<Bytes> {
        if (!staysBelow(name)) {
            reason = "not beside or below the model";
            return std::nullopt;
        }
        std::replace(name.begin(), name.end(), '\\', '/');
        std::optional<Bytes> file = readFile(folder + name, largestAsset, &reason);
        if (file) run.filesRead.push_back(folder + name);
        return file;
    };
}

void printReport(const Run& run, const ImportReport& report, std::FILE* stream)
{
    if (run.errors == ErrorFormat::json) {
        nlohmann::ordered_json json = {
            {"objects", report.objects},     {"vertices", report.vertices},
            {"polygons", report.polygons},   {"quads", report.quads},
            {"triangles", report.triangles}, {"rejoined", report.rejoined},
            {"split", report.split},         {"dropped", report.dropped},
            {"textures", report.textures},   {"shared", report.shared}};
        if (report.kept)
            json.update({{"kept", *report.kept}, {"new", report.fresh}, {"gone", report.gone}});
        json["notes"] = nlohmann::ordered_json::array();
        for (const ImportNote& note : report.notes) {
            nlohmann::ordered_json entry;
            if (note.line != 0) entry["line"] = note.line;
            entry["text"] = note.text;
            json["notes"].push_back(entry);
        }
        using Handler = nlohmann::ordered_json::error_handler_t;
        std::fputs((json.dump(-1, ' ', false, Handler::replace) + '\n').c_str(), stream);
        return;
    }
    if (run.progress == Progress::silent) return;
    std::fprintf(stream, "%u objects, %u vertices, %u polygons: %u quads, %u triangles\n",
                 report.objects, report.vertices, report.polygons, report.quads, report.triangles);
    if (report.rejoined + report.split + report.dropped > 0)
        std::fprintf(stream, "%u pairs of triangles rejoined, %u faces split, %u dropped\n",
                     report.rejoined, report.split, report.dropped);
    if (report.textures > 0)
        std::fprintf(stream, "%u textures, %u polygons share one made for another\n",
                     report.textures, report.shared);
    if (report.kept)
        std::fprintf(stream, "%u polygons kept, %u new, %u gone\n", *report.kept, report.fresh,
                     report.gone);
    for (const ImportNote& note : report.notes) {
        const std::string line = note.line == 0 ? "" : "line " + std::to_string(note.line) + ": ";
        std::fprintf(stream, "note: %s%s\n", line.c_str(), note.text.c_str());
    }
}

} // namespace

/// The model that is imported onto, with the list that new textures are added to.
struct Onto {
    InputFile old;
    TextureList textures;
    Model result;
};

int readOnto(Run& run, const ConvertOptions& options, Onto& onto)
{
    Message message = createModelStore(onto.result);
    if (message == Message::none) message = onto.textures.create();
    if (message == Message::none) message = readInputFile(run, onto.old, options.onto);
    if (message == Message::none && onto.old.kind != FileKind::model) {
        onto.old.reason.text = "no model";
        message = Message::formatNotSupported;
    }
    if (message != Message::none) return reportFailure(run, options.onto, message, onto.old.reason);
    if (options.textures.empty() || !readFileStart(options.textures, 1)) return exitDone;
    run.filesRead.push_back(options.textures); // the list as it stands, which new textures go to
    Reason reason;
    message = readTextureFile(onto.textures, options.textures, &reason);
    return message == Message::none ? exitDone
                                    : reportFailure(run, options.textures, message, reason);
}

/// Makes the result of the old model and the imported one; textures of new polygons are added to
/// the list behind those that it has and those that old polygons name.
Message keepOld(Onto& onto, const Model& imported, TextureList& cuts, ImportReport& report,
                Reason& reason)
{
    KeptPolygons polygons;
    if (const Message message =
            keepAttributes(onto.result, onto.old.model, imported, polygons, reason);
        message != Message::none)
        return message;
    std::uint32_t next = onto.textures.usedCount();
    for (std::uint32_t p = 0; p < onto.old.model.totalPolygonCount; ++p) {
        const PolygonAttribute& attribute = onto.old.model.attributes[p];
        if ((attribute.flags & textureMap) != 0 && attribute.texture < textureSlotCount)
            next = std::max(next, attribute.texture + 1u);
    }
    report.textures = 0;
    std::map<std::uint32_t, std::uint32_t> slots;
    for (const std::uint32_t p : polygons.fresh) {
        PolygonAttribute& attribute = onto.result.attributes[p];
        if ((attribute.flags & textureMap) == 0) continue;
        const auto [at, isNew] = slots.try_emplace(attribute.texture, next);
        if (isNew) {
            if (next >= textureSlotCount) {
                reason.text =
                    "more textures than the " + std::to_string(textureSlotCount) + " slots hold";
                return Message::formatNotSupported;
            }
            const TextureSlot slot = cuts.slot(attribute.texture);
            Texels texels;
            if (!texels.allocate(std::size_t{slot.width} * slot.height))
                return Message::outOfMemory;
            std::copy_n(slot.pixels, texels.size(), texels.data());
            onto.textures.set(next++, slot.width, slot.height, std::move(texels));
            ++report.textures;
        }
        attribute.texture = static_cast<std::uint16_t>(at->second);
    }
    report.objects = onto.result.objectCount;
    report.kept = polygons.kept;
    report.fresh = static_cast<std::uint32_t>(polygons.fresh.size());
    report.gone = polygons.gone;
    return Message::none;
}

int runImport(Run& run, const ConvertOptions& options, FileKind kind, ByteReader source)
{
    const std::string &path = options.paths[0], &output = options.paths[1];
    if (source.left() > largestForeignModel)
        return reportFailure(run, path, Message::formatNotSupported,
                             {"larger than " + std::to_string(largestForeignModel) + " bytes", {}});
    Reason reason;
    Scene scene;
    {
        const std::uint64_t size = source.left();
        Bytes bytes(static_cast<std::size_t>(size));
        for (std::size_t at = 0; at < bytes.size();) {
            const auto part = source.take(std::min<std::size_t>(bytes.size() - at, 65536));
            if (part.empty())
                return reportFailure(run, path, Message::cannotOpenFile, {"cannot be read", {}});
            std::copy(part.begin(), part.end(), bytes.begin() + static_cast<std::ptrdiff_t>(at));
            at += part.size();
        }
        const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
        const AssetReader assets = assetsBeside(run, path);
        const Message message = kind == FileKind::gltf
                                    ? readGltf(scene, bytes, assets, reason)
                                    : readObj(scene, text, titleOf(path), assets, reason);
        if (message != Message::none) return reportFailure(run, path, message, reason);
    }
    Model model;
    TextureList textures;
    Message created = createModelStore(model);
    if (created == Message::none) created = textures.create();
    if (const Message message = created; message != Message::none)
        return reportFailure(run, path, message);
    ImportReport report;
    ImportOptions import;
    import.scale = options.scale.value_or(1.0f);
    import.up = options.up.value_or(UpAxis::y);
    import.triangles = options.keepTriangles ? Triangles::keep : Triangles::rejoin;
    if (options.largestTexture) {
        import.textures.largestWidth = (*options.largestTexture)[0];
        import.textures.largestHeight = (*options.largestTexture)[1];
    }
    import.textures.dither = options.dither.value_or(Dither::none);
    TextureList* const list = options.textures.empty() ? nullptr : &textures;
    if (const Message message = buildModel(model, list, scene, import, report, reason);
        message != Message::none)
        return reportFailure(run, path, message, reason);

    std::vector<Output> outputs;
    if (!options.onto.empty()) {
        Onto onto;
        if (const int status = readOnto(run, options, onto); status != exitDone) return status;
        if (const Message message = keepOld(onto, model, textures, report, reason);
            message != Message::none)
            return reportFailure(run, path, message, reason);
        outputs.push_back({output, writeModel(onto.result), options.onto});
        if (onto.textures.usedCount() > 0)
            outputs.push_back({options.textures, writeTextures(onto.textures), options.textures});
    } else {
        outputs.push_back({output, writeModel(model), {}});
        if (report.textures > 0) outputs.push_back({options.textures, writeTextures(textures), {}});
    }
    Run quiet = run;
    if (run.errors == ErrorFormat::json) quiet.progress = Progress::silent; // one object, no lines
    if (const int status = writeOutputs(quiet, outputs); status != exitDone) return status;
    std::FILE* const stream = reportStream(output);
    printReport(run, report, stream);
    return finishReport(run, stream, exitDone);
}

} // namespace facetor
