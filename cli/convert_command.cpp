#include "commands.h"

#include "base/text.h"
#include "input_file.h"
#include "model/model_file.h"
#include "output/model_source.h"
#include "output/texture_source.h"
#include "texture/texture_file.h"

namespace facetor {

namespace {

Message writeModelAgain(const InputFile& input, const std::string& output)
{
    return writeModelFile(input.model, output);
}

Message writeModelAsSource(const InputFile& input, const std::string& output)
{
    return writeModelSource(input.model, output);
}

Message writeTexturesAgain(const InputFile& input, const std::string& output)
{
    return writeTextureFile(input.textures, output);
}

Message writeTexturesAsSource(const InputFile& input, const std::string& output)
{
    return writeTextureSource(input.textures, output);
}

struct Conversion {
    std::string_view from, to; ///< extensions
    Message (*write)(const InputFile& input, const std::string& output);
};

constexpr Conversion conversions[] = {
    {"mx3", "mx3", writeModelAgain},
    {"mx3", "mdl", writeModelAsSource},
    {"mxt", "mxt", writeTexturesAgain},
    {"mxt", "txr", writeTexturesAsSource},
};

} // namespace

int runConvert(const std::vector<std::string>& paths, Progress progress)
{
    if (paths.size() != 2) return reportWrongCommandLine("convert: one input and one output");
    const std::string &source = paths[0], &output = paths[1];
    for (const Conversion& conversion : conversions) {
        if (!equalIgnoringCase(extensionOf(source), conversion.from) ||
            !equalIgnoringCase(extensionOf(output), conversion.to))
            continue;
        InputFile input;
        if (const Message message = readInputFile(input, source); message != Message::none)
            return reportFailure(source, message, input.reason);
        const Message message = conversion.write(input, output);
        if (message == Message::cannotCreateFile) return reportFailure(output, message);
        if (message != Message::none) return reportFailure(source, message);
        reportWritten(output, progress);
        return exitDone;
    }
    return reportWrongCommandLine("convert: no conversion from \"" + source + "\" to \"" + output +
                                  "\"; see convert --help");
}

} // namespace facetor
