#include "commands.h"

#include "base/file.h"
#include "base/text.h"
#include "export_command.h"
#include "import_command.h"
#include "input_file.h"
#include "model/model_file.h"
#include "output/model_source.h"
#include "output/source_header.h"
#include "output/source_text.h"
#include "output/target_reader.h"
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
    Bytes bytes, header;
    std::string detail; ///< fills the placeholder of the message that it fails with
};

Message makeModel(Result& result, InputFile& input, const ConvertOptions&)
{
    result.bytes = writeModel(input.model);
    return Message::none;
}

void addSource(Result& result, const TextWriter& source, const ConvertOptions& options)
{
    result.bytes = bytesOf(source.view());
    if (!options.header.empty())
        result.header =
            bytesOf(formatSourceHeader(source.view(), options.header, options.names).view());
}

Message makeModelSource(Result& result, InputFile& input, const ConvertOptions& options)
{
    addSource(result, formatModelSource(input.model, fileTitle(result.name), options.names),
              options);
    return Message::none;
}

Message makeModelImage(Result& result, InputFile& input, const ConvertOptions& options)
{
    result.detail = targetForm;
    return modelImage(result.bytes, input.model, options.scale.value_or(1.0f), input.reason);
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
    addSource(result, formatTextureSource(input.textures, result.name, options.names), options);
    return Message::none;
}

Message makeTextureImage(Result& result, InputFile& input, const ConvertOptions&)
{
    result.detail = targetForm;
    return textureImage(result.bytes, input.textures, input.reason);
}

Message makeModelAgain(Result& result, InputFile& input, const ConvertOptions&)
{
    Message message = createModelStore(input.model);
    if (message == Message::none) message = readModelImage(input.model, input.image, input.reason);
    if (message == Message::none) result.bytes = writeModel(input.model);
    return message;
}

Message makeTexturesAgain(Result& result, InputFile& input, const ConvertOptions&)
{
    Message message = input.textures.create();
    if (message == Message::none)
        message = readTextureImage(input.textures, input.image, input.reason);
    if (message == Message::none) result.bytes = writeTextures(input.textures);
    return message;
}

struct Conversion {
    FileKind from;
    std::string_view to; ///< extension
    /// `input.reason` tells more of a failure.
    Message (*make)(Result& result, InputFile& input, const ConvertOptions& options);
    enum { again, source, file } result; ///< `again`: of the same kind, perhaps in its place
};

constexpr Conversion conversions[] = {
    {FileKind::model, "mx3", makeModel, Conversion::again},
    {FileKind::model, "mdl", makeModelSource, Conversion::source},
    {FileKind::model, "sal", makeModelImage, Conversion::file},
    {FileKind::textures, "mxt", makeTextures, Conversion::again},
    {FileKind::textures, "txr", makeTextureSource, Conversion::source},
    {FileKind::textures, "sal", makeTextureImage, Conversion::file},
    {FileKind::image, "mx3", makeModelAgain, Conversion::file},
    {FileKind::image, "mxt", makeTexturesAgain, Conversion::file},
};

/// The conversion of a kind of file into another; null when there is none.
const Conversion* findConversion(FileKind from, std::string_view to)
{
    for (const Conversion& conversion : conversions)
        if (conversion.from == from && equalIgnoringCase(to, conversion.to)) return &conversion;
    return nullptr;
}

bool asksForSource(const ConvertOptions& options)
{
    return options.names == SourceNames::identifiers || !options.header.empty();
}

int checkNoSource(const Run& run, const ConvertOptions& options)
{
    if (!asksForSource(options)) return exitDone;
    return reportWrongCommandLine(
        run, "convert: --c-names and --header mean something only to .mdl and .txr");
}

/// A header goes to a file of its own, and not to one of ours by mistake.
int checkHeader(const Run& run, const ConvertOptions& options)
{
    if (options.header != standardStream && kindOf(options.header) == FileKind::unknown)
        return exitDone;
    return reportWrongCommandLine(run, "convert: --header writes a C header, not \"" +
                                           options.header + "\"");
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
        !options.assets.empty() || options.largestTexture || options.dither)
        return reportWrongCommandLine(
            run, "convert: --up, --keep-triangles, --textures, --assets, "
                 "--max-texture, --dither and --onto mean something only in an "
                 "import");
    return conversion->result == Conversion::source ? checkHeader(run, options)
                                                    : checkNoSource(run, options);
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
    if (const int status = checkNoSource(run, options); status != exitDone) return status;
    if (!options.textures.empty() && !equalIgnoringCase(extensionOf(options.textures), "mxt"))
        return reportWrongCommandLine(run, "convert: --textures writes .mxt files only, not \"" +
                                               options.textures + "\"");
    return exitDone;
}

/// A conversion of several files, into several or of pictures; null for one of a file into another.
using SeveralFiles = int (*)(Run& run, const ConvertOptions& options);
SeveralFiles findSeveral(const Run& run, const ConvertOptions& options, FileKind from)
{
    const auto& paths = options.paths;
    const std::string_view to = outputKind(run, paths.back());
    const bool isPair =
        paths.size() == 3 && from == FileKind::model && kindOf(paths[1]) == FileKind::textures;
    if (from == FileKind::picture && equalIgnoringCase(to, "mxt") &&
        std::all_of(paths.begin() + 1, paths.end() - 1,
                    [](const std::string& path) { return kindOf(path) == FileKind::picture; }))
        return runPictures;
    if (from == FileKind::textures && paths.size() == 2 && isFolder(paths[1])) return runUnpack;
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
    if (!options.onto.empty() || !options.textures.empty() || !options.assets.empty())
        what = "--onto, --textures and --assets";
    if (options.largestTexture) what = "--max-texture";
    if (asksForSource(options)) what = "--c-names and --header";
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
    if (options.paths.size() < 2)
        return reportWrongCommandLine(
            run, "convert needs an input and an output; see facetor-cli convert --help");
    const std::string &source = options.paths[0], &output = options.paths.back();
    if (const int status = checkOutputOptions(run, output); status != exitDone) return status;
    FileKind from = kindOf(source);
    FileWindow window;
    InputFile input;
    std::optional<ByteReader> in;
    if (source == standardStream) { // else its name tells
        in = openInput(run, window, source, input.reason);
        if (!in) return reportFailure(run, source, Message::cannotOpenFile, input.reason);
        from = kindOfInput(source, *in);
    }
    if (const SeveralFiles several = findSeveral(run, options, from)) {
        if (const int status = checkSeveral(run, several, options); status != exitDone)
            return status;
        return several(run, options);
    }
    if (asksForPictures(options))
        return reportWrongCommandLine(run, std::string("convert: ") + pictureOptions +
                                               " are for pictures into an .mxt");
    if (options.paths.size() != 2)
        return reportWrongCommandLine(
            run, "convert takes several inputs only for pictures and for a model with its textures;"
                 " see facetor-cli convert --help");
    const std::string_view to = outputKind(run, output);
    if (isForeign(from)) {
        if (const int status = checkImport(run, to, options); status != exitDone) return status;
        return runImport(run, options, from);
    }
    const Conversion* conversion = findConversion(from, to);
    if (source != standardStream || from != FileKind::unknown)
        if (const int status = checkConversion(run, conversion, options); status != exitDone)
            return status;
    if (!in) in = openInput(run, window, source, input.reason);
    if (!in) return reportFailure(run, source, Message::cannotOpenFile, input.reason);
    if (from == FileKind::image) {
        auto image = readWholeInput(run, source, largestFile, input.reason);
        if (!image) return reportFailure(run, source, Message::cannotOpenFile, input.reason);
        input.image = std::move(*image);
    } else if (const Message message = readOpenInput(input, source, *in);
               message != Message::none) {
        return reportFailure(run, source, message, input.reason);
    }
    window = {}; // an open file cannot be replaced by the output on Windows
    Result result;
    result.name = output == standardStream ? nameAfter(source, conversion->to) : output;
    if (const Message message = conversion->make(result, input, options); message != Message::none)
        return reportFailure(run, source, message, input.reason, result.detail);
    const bool inPlace =
        source != standardStream && source == output && conversion->result == Conversion::again;
    std::vector<Output> outputs{
        {output, std::move(result.bytes), inPlace ? source : std::string()}};
    if (!options.header.empty()) outputs.push_back({options.header, std::move(result.header), {}});
    return writeOutputs(run, outputs);
}

} // namespace facetor
