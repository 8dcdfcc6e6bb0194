#include "samples.h"

#include "base/file.h"
#include "base/message.h"
#include "model/model_file.h"
#include "texture/texture_file.h"

#include <cstdio>

namespace {

using namespace facetor;

Message writeSample(const samples::Sample& sample, const std::string& folder)
{
    Model model;
    TextureList textures;
    Message message = createModelStore(model);
    if (message == Message::none) message = textures.create();
    if (message == Message::none) message = sample.make(model, textures);
    if (message == Message::none) message = writeModelFile(model, folder + sample.name + ".mx3");
    if (message == Message::none)
        message = writeTextureFile(textures, folder + sample.name + ".mxt");
    return message;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fputs("usage: facetor-samples FOLDER\nWrites the sample models and their textures.\n",
                   stderr);
        return 2;
    }
    for (const samples::Sample& sample : samples::allSamples) {
        const Message message = writeSample(sample, std::string(argv[1]) + "/");
        if (message == Message::none) continue;
        const std::string text(catalogueText(message));
        std::fprintf(stderr, "facetor-samples: %s: %s\n", sample.name.c_str(), text.c_str());
        return 1;
    }
    const std::string folder = std::string(argv[1]) + "/";
    for (const ExportedFile& file : samples::makeLighthouse()) {
        std::string reason;
        if (writeFile(folder + file.name, file.bytes, &reason) == Message::none) continue;
        std::fprintf(stderr, "facetor-samples: %s: %s\n", file.name.c_str(), reason.c_str());
        return 1;
    }
    return 0;
}
