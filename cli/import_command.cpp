#include "import_command.h"

#include "base/file.h"
#include "exchange/foreign_file.h"
#include "model/model_file.h"
#include "outputs.h"
#include "report.h"
#include "texture/texture_file.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdio>
#include <utility>

namespace facetor {

namespace {

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
    const auto printNotes = [&] {
        for (const ImportNote& note : report.notes) {
            const std::string line =
                note.line == 0 ? "" : "line " + std::to_string(note.line) + ": ";
            std::fprintf(stream, "note: %s%s\n", line.c_str(), note.text.c_str());
        }
    };
    if (run.progress == Progress::silent) return printNotes(); // what is missing is no progress
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
    printNotes();
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

int runImport(Run& run, const ConvertOptions& options, FileKind kind)
{
    const std::string &path = options.paths[0], &output = options.paths[1];
    Reason reason;
    std::optional<Bytes> file = readWholeInput(run, path, largestForeignModel, reason);
    if (!file) return reportFailure(run, path, Message::cannotOpenFile, reason);
    ImportOptions import;
    import.scale = options.scale.value_or(1.0f);
    import.up = options.up.value_or(UpAxis::y);
    import.triangles = options.keepTriangles ? Triangles::keep : Triangles::rejoin;
    if (options.largestTexture) {
        import.textures.largestWidth = (*options.largestTexture)[0];
        import.textures.largestHeight = (*options.largestTexture)[1];
    }
    import.textures.dither = options.dither.value_or(Dither::none);
    const bool wantsTextures = !options.textures.empty();
    ProgressLine line(run.progress, "percent", 100);
    const ImportProgress progress = [&line](double done) {
        line.show(static_cast<std::size_t>(done * 100));
        return true;
    };
    ImportedModel imported;
    if (const Message message =
            importModel(imported, kind == FileKind::gltf ? ForeignKind::gltf : ForeignKind::obj,
                        std::move(*file), path == standardStream ? "stdin" : titleOf(path),
                        assetsBelow(folderOf(path), &run.filesRead, options.assets), import,
                        wantsTextures ? ImportPictures::yes : ImportPictures::no, progress, reason);
        message != Message::none)
        return reportFailure(run, path, message, reason);
    line.clear();
    ImportReport& report = imported.report;
    std::vector<Output> outputs;
    if (!options.onto.empty()) {
        Onto onto;
        if (const int status = readOnto(run, options, onto); status != exitDone) return status;
        if (const Message message =
                importOnto(onto.result, onto.textures, onto.old.model, imported, reason);
            message != Message::none)
            return reportFailure(run, path, message, reason);
        outputs.push_back({output, writeModel(onto.result), options.onto});
        if (report.textures > 0) // what old polygons show is in the list already
            outputs.push_back({options.textures, writeTextures(onto.textures), options.textures});
    } else {
        outputs.push_back({output, writeModel(imported.model), {}});
        if (report.textures > 0)
            outputs.push_back({options.textures, writeTextures(imported.textures), {}});
    }
    if (wantsTextures && report.textures == 0)
        report.notes.push_back({0, options.onto.empty()
                                       ? "there are no textures, so no texture list is written"
                                       : "there are no new textures, so no list is written"});
    Run quiet = run;
    if (run.errors == ErrorFormat::json) quiet.progress = Progress::silent; // one object, no lines
    if (const int status = writeOutputs(quiet, outputs); status != exitDone) return status;
    std::FILE* const stream = reportStream(output);
    printReport(run, report, stream);
    return finishReport(run, stream, exitDone);
}

} // namespace facetor
