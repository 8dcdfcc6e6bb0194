#include "commands.h"

#include "base/text.h"
#include "input_file.h"
#include "model/model_file.h"
#include "output/model_source.h"
#include "output/target_image.h"
#include "output/texture_source.h"
#include "texture/texture_file.h"

namespace facetor {

namespace {

Message writeModelAgain(InputFile& input, const std::string& output, const ConvertOptions&)
{
    return writeModelFile(input.model, output);
}

Message writeModelAsSource(InputFile& input, const std::string& output, const ConvertOptions&)
{
    return writeModelSource(input.model, output);
}

Message writeTexturesAgain(InputFile& input, const std::string& output, const ConvertOptions&)
{
    return writeTextureFile(input.textures, output);
}

Message writeTexturesAsSource(InputFile& input, const std::string& output, const ConvertOptions&)
{
    return writeTextureSource(input.textures, output);
}

Message writeModelForTarget(InputFile& input, const std::string& output,
                            const ConvertOptions& options)
{
    return writeModelImage(input.model, options.scale, output);
}

Message writeTexturesForTarget(InputFile& input, const std::string& output, const ConvertOptions&)
{
    return writeTextureImage(input.textures, output, &input.reason);
}

/// `input.reason` tells more of a failure.
struct Conversion {
    std::string_view from, to; ///< extensions
    Message (*write)(InputFile& input, const std::string& output, const ConvertOptions& options);
};

constexpr Conversion conversions[] = {
    {"mx3", "mx3", writeModelAgain},       {"mx3", "mdl", writeModelAsSource},
    {"mx3", "sal", writeModelForTarget},   {"mxt", "mxt", writeTexturesAgain},
    {"mxt", "txr", writeTexturesAsSource}, {"mxt", "sal", writeTexturesForTarget},
};

} // namespace

int runConvert(const ConvertOptions& options, Progress progress)
{
    const std::vector<std::string>& paths = options.paths;
    if (paths.size() != 2) return reportWrongCommandLine("convert: one input and one output");
    const std::string &source = paths[0], &output = paths[1];
    for (const Conversion& conversion : conversions) {
        if (!equalIgnoringCase(extensionOf(source), conversion.from) ||
            !equalIgnoringCase(extensionOf(output), conversion.to))
            continue;
        InputFile input;
        if (const Message message = readInputFile(input, source); message != Message::none)
            return reportFailure(source, message, input.reason);
        const Message message = conversion.write(input, output, options);
        if (message == Message::cannotCreateFile) return reportFailure(output, message);
        if (message != Message::none) return reportFailure(source, message, input.reason);
        reportWritten(output, progress);
        return exitDone;
    }
    return reportWrongCommandLine("convert: no conversion from \"" + source + "\" to \"" + output +
                                  "\"; see convert --help");
}

} // namespace facetor
