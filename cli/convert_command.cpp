#include "commands.h"

#include "base/text.h"
#include "export_command.h"
#include "import_command.h"
#include "input_file.h"
#include "model/model_file.h"
#include "output/model_source.h"
#include "output/source_text.h"
#include "output/target_image.h"
#include "output/texture_source.h"
#include "outputs.h"
#include "texture/texture_file.h"

#include <algorithm>
#include <utility>

namespace facetor {

namespace {

/// What a conversion makes; `name` is the file's, as sources hold it.
struct Result {
    std::string name;
    Bytes bytes;
    std::string detail; ///< fills the placeholder of the message that it fails with
};

Bytes toBytes(const TextWriter& text)
{
    const auto bytes = std::as_bytes(std::span(text.view()));
    return {bytes.begin(), bytes.end()};
}

Message makeModel(Result& result, InputFile& input, const ConvertOptions&)
{
    result.bytes = writeModel(input.model);
    return Message::none;
}

Message makeModelSource(Result& result, InputFile& input, const ConvertOptions& options)
{
    result.bytes = toBytes(formatModelSource(input.model, fileTitle(result.name), options.names));
    return Message::none;
}

Message makeModelImage(Result& result, InputFile& input, const ConvertOptions& options)
{
    const float scale = options.scale.value_or(1.0f);
    result.detail = "16.16";
    input.reason.text = findBeyondFixed(input.model, scale);
    if (!input.reason.text.empty()) return Message::dataError;
    result.bytes = formatModelImage(input.model, scale);
    return Message::none;
}

Message makeTextures(Result& result, InputFile& input, const ConvertOptions&)
{
    if (input.textures.usedCount() == 0) return Message::texturesEmpty;
    result.bytes = writeTextures(input.textures);
    return Message::none;
}

Message makeTextureSource(Result& result, InputFile& input, const ConvertOptions& options)
{
    if (input.textures.usedCount() == 0) return Message::texturesEmpty;
    result.bytes = toBytes(formatTextureSource(input.textures, result.name, options.names));
    return Message::none;
}

Message makeTextureImage(Result& result, InputFile& input, const ConvertOptions&)
{
    return formatTextureImage(result.bytes, input.textures, &input.reason.text);
}

struct Conversion {
    FileKind from;
    std::string_view to; ///< extension
    /// `input.reason` tells more of a failure.
    Message (*make)(Result& result, InputFile& input, const ConvertOptions& options);
    enum { again, source, image } result; ///< `again`: of the same kind, perhaps in its place
};

constexpr Conversion conversions[] = {
    {FileKind::model, "mx3", makeModel, Conversion::again},
    {FileKind::model, "mdl", makeModelSource, Conversion::source},
    {FileKind::model, "sal", makeModelImage, Conversion::image},
    {FileKind::textures, "mxt", makeTextures, Conversion::again},
    {FileKind::textures, "txr", makeTextureSource, Conversion::source},
    {FileKind::textures, "sal", makeTextureImage, Conversion::image},
};

/// The conversion of a kind of file into another; null when there is none.
const Conversion* findConversion(FileKind from, std::string_view to)
{
    for (const Conversion& conversion : conversions)
        if (conversion.from == from && equalIgnoringCase(to, conversion.to)) return &conversion;
    return nullptr;
}

/// Whether the command line makes sense for that conversion; what is wrong has been reported.
int checkConversion(const Run& run, const Conversion* conversion, const ConvertOptions& options)
{
    const std::string &source = options.paths[0], &output = options.paths[1];
    if (!conversion && output == standardStream && run.standardKind.empty())
        return reportWrongCommandLine(
            run, "convert: --to has to say what goes to the standard output, like --to mdl");
    if (!conversion)
        return reportWrongCommandLine(
            run, "convert: no conversion from \"" + source + "\" to \"" +
                     (output == standardStream ? "." + run.standardKind : output) +
                     "\"; see facetor-cli convert --help");
    if (options.scale && conversion->make != makeModelImage)
        return reportWrongCommandLine(
            run, "convert: --scale means something only from .mx3 to .sal and in an import");
    if (options.up || options.keepTriangles || !options.onto.empty() || !options.textures.empty() ||
        options.largestTexture || options.dither)
        return reportWrongCommandLine(
            run, "convert: --up, --keep-triangles, --textures, "
                 "--max-texture, --dither and --onto mean something only in an "
                 "import");
    if (options.names == SourceNames::identifiers && conversion->result != Conversion::source)
        return reportWrongCommandLine(run,
                                      "convert: --c-names means something only to .mdl and .txr");
    return exitDone;
}

constexpr char pictureOptions[] = "--fit, --first, --numbered, --transparent and --into";

bool asksForPictures(const ConvertOptions& options)
{
    return options.fit || options.first || options.numbered || options.transparent ||
           !options.into.empty();
}

/// The same of an import.
int checkImport(const Run& run, std::string_view to, const ConvertOptions& options)
{
    if (!equalIgnoringCase(to, "mx3")) return checkConversion(run, nullptr, options);
    if (options.names == SourceNames::identifiers)
        return reportWrongCommandLine(run,
                                      "convert: --c-names means something only to .mdl and .txr");
    if (!options.textures.empty() && !equalIgnoringCase(extensionOf(options.textures), "mxt"))
        return reportWrongCommandLine(run, "convert: --textures writes .mxt files only, not \"" +
                                               options.textures + "\"");
    return exitDone;
}

/// A conversion of several files, into several or of pictures; null for one of a file into another.
using SeveralFiles = int (*)(Run& run, const ConvertOptions& options);
SeveralFiles findSeveral(const Run& run, const ConvertOptions& options)
{
    const auto& paths = options.paths;
    if (paths.size() < 2) return nullptr;
    const std::string_view to = outputKind(run, paths.back());
    const FileKind from = kindOf(paths[0]);
    const bool isPair =
        paths.size() == 3 && from == FileKind::model && kindOf(paths[1]) == FileKind::textures;
    if (from == FileKind::picture && equalIgnoringCase(to, "mxt") &&
        std::all_of(paths.begin(), paths.end() - 1,
                    [](const std::string& path) { return kindOf(path) == FileKind::picture; }))
        return runPictures;
    if (from == FileKind::textures && paths.size() == 2 && isFolder(paths[1])) return runUnpack;
    if (from == FileKind::image && paths.size() == 2 && equalIgnoringCase(to, "mxt"))
        return runTextureImage;
    if (isPair && equalIgnoringCase(to, "sal")) return runBothImages;
    if ((isPair || (from == FileKind::model && paths.size() == 2)) &&
        (equalIgnoringCase(to, "obj") || equalIgnoringCase(to, "glb")))
        return runExport;
    return nullptr;
}

/// Whether the options make sense for such a conversion; what is wrong has been reported.
int checkSeveral(const Run& run, SeveralFiles several, const ConvertOptions& options)
{
    const bool ofPictures = several == runPictures;
    std::string what;
    if (options.scale && several != runBothImages) what = "--scale";
    if (options.up || options.keepTriangles) what = "--up and --keep-triangles";
    if (!options.onto.empty() || !options.textures.empty()) what = "--onto and --textures";
    if (options.largestTexture) what = "--max-texture";
    if (options.names == SourceNames::identifiers) what = "--c-names";
    if (options.dither && !ofPictures) what = "--dither";
    if (!ofPictures && asksForPictures(options)) what = pictureOptions;
    if (!what.empty())
        return reportWrongCommandLine(run, "convert: " + what + " mean nothing here");
    if (options.first && options.numbered)
        return reportWrongCommandLine(run, "convert: --first and --numbered exclude each other");
    return exitDone;
}

} // namespace

int runConvert(Run& run, const ConvertOptions& options)
{
    if (const SeveralFiles several = findSeveral(run, options)) {
        if (const int status = checkOutputOptions(run, options.paths.back()); status != exitDone)
            return status;
        if (const int status = checkSeveral(run, several, options); status != exitDone)
            return status;
        return several(run, options);
    }
    if (asksForPictures(options))
        return reportWrongCommandLine(run, std::string("convert: ") + pictureOptions +
                                               " are for pictures into an .mxt");
    if (options.paths.size() != 2)
        return reportWrongCommandLine(
            run, "convert needs an input and an output; see facetor-cli convert --help");
    const std::string &source = options.paths[0], &output = options.paths[1];
    if (const int status = checkOutputOptions(run, output); status != exitDone) return status;
    const std::string_view to = outputKind(run, output);
    const bool named = source != standardStream;
    if (named && isForeign(kindOf(source))) {
        if (const int status = checkImport(run, to, options); status != exitDone) return status;
    } else if (named) // else only its content tells what it is
        if (const int status = checkConversion(run, findConversion(kindOf(source), to), options);
            status != exitDone)
            return status;
    InputFile input;
    InputSource opened;
    const std::optional<ByteReader> in = openInput(run, opened, source, input.reason);
    if (!in) return reportFailure(run, source, Message::cannotOpenFile, input.reason);
    if (ByteReader start = *in; isForeign(kindOfInput(source, start))) {
        const FileKind kind = kindOfInput(source, start);
        if (const int status = checkImport(run, to, options); status != exitDone) return status;
        return runImport(run, options, kind, start);
    }
    if (const Message message = readOpenInput(input, source, *in); message != Message::none)
        return reportFailure(run, source, message, input.reason);
    const Conversion* conversion = findConversion(input.kind, to);
    if (const int status = checkConversion(run, conversion, options); status != exitDone)
        return status;

    Result result;
    result.name = output == standardStream ? nameAfter(source, conversion->to) : output;
    if (const Message message = conversion->make(result, input, options); message != Message::none)
        return reportFailure(run, source, message, input.reason, result.detail);
    return writeOutput(run,
                       {output, std::move(result.bytes),
                        named && conversion->result == Conversion::again ? source : std::string()});
}

} // namespace facetor
