#include "export_command.h"

#include "base/beside_file.h"
#include "base/new_folders.h"
#include "base/text.h"
#include "exchange/foreign_file.h"
#include "exchange/gltf_writer.h"
#include "exchange/look.h"
#include "exchange/obj_writer.h"
#include "exchange/picture_import.h"
#include "image/image_codec.h"
#include "image/picture.h"
#include "output/target_check.h"
#include "output/target_image.h"
#include "outputs.h"
#include "report.h"
#include "texture/texture_file.h"

#include <charconv>
#include <filesystem>
#include <map>
#include <utility>

namespace facetor {

namespace {

/// Reads an input of one kind; what failed has been reported.
int readAs(Run& run, InputFile& file, const std::string& path, FileKind kind)
{
    Message message = readInputFile(run, file, path);
    if (message == Message::none && file.kind != kind) {
        file.reason.text = kind == FileKind::model ? "no model" : "no texture list";
        message = Message::formatNotSupported;
    }
    return message == Message::none ? exitDone : reportFailure(run, path, message, file.reason);
}

/// Writes outputs of which some lie in `folder`, which is made where there is none and, when the
/// rest fails, taken away again.
int writeWithFolder(const Run& run, const std::string& folder, std::span<const Output> outputs)
{
    NewFolders folders;
    if (!folders.make(folder))
        return reportFailure(run, folder, Message::cannotCreateFile,
                             {"the folder cannot be made", {}});
    const int status = writeOutputs(run, outputs);
    if (status == exitDone) folders.keep();
    return status;
}

/// The number that ends a file's name, before its extension.
std::optional<std::uint32_t> endingNumber(const std::string& path)
{
    const std::string name = titleOf(path);
    std::size_t begin = name.size();
    while (begin > 0 && name[begin - 1] >= '0' && name[begin - 1] <= '9') --begin;
    std::uint32_t number = 0;
    const auto [end, error] =
        std::from_chars(name.data() + begin, name.data() + name.size(), number);
    if (begin == name.size() || error != std::errc()) return std::nullopt;
    return number;
}

/// Whether a path ends in a slash or what else does for one.
bool endsAsFolder(const std::string& path)
{
    return !path.empty() && folderOf(path) == path;
}

} // namespace

bool isFolder(const std::string& path)
{
    if (endsAsFolder(path)) return true;
    const auto native = toPath(path);
    std::error_code error;
    return native && std::filesystem::is_directory(*native, error);
}

int runExport(Run& run, const ConvertOptions& options)
{
    const std::string& output = options.paths.back();
    InputFile model, textures;
    if (const int status = readAs(run, model, options.paths[0], FileKind::model);
        status != exitDone)
        return status;
    const bool hasTextures = options.paths.size() == 3;
    if (hasTextures)
        if (const int status = readAs(run, textures, options.paths[1], FileKind::textures);
            status != exitDone)
            return status;
    const TextureList* const list = hasTextures ? &textures.textures : nullptr;
    if (equalIgnoringCase(outputKind(run, output), "glb")) {
        Bytes file;
        const Message message = writeGlb(file, model.model, list);
        if (message != Message::none) return reportFailure(run, options.paths[0], message);
        return writeOutput(run, {output, std::move(file), {}});
    }
    const std::string folder = output == standardStream ? "" : folderOf(output);
    const std::string title = output == standardStream ? "stdout" : titleOf(output);
    std::vector<ExportedFile> files;
    if (const Message message = writeObj(files, model.model, list, title); message != Message::none)
        return reportFailure(run, options.paths[0], message);
    if (output == standardStream) return writeOutput(run, {output, files[0].bytes, {}});
    std::vector<Output> outputs{{output, std::move(files[0].bytes), {}}};
    for (std::size_t i = 1; i < files.size(); ++i)
        outputs.push_back({folder + files[i].name, std::move(files[i].bytes), {}});
    if (files.size() == 2) return writeOutputs(run, outputs); // without pictures
    return writeWithFolder(run, folder + title + ".textures", outputs);
}

Message modelImage(Bytes& image, const Model& model, float scale, Reason& reason)
{
    if (const auto overrun = findOverrun(model)) {
        reason.text = describe(*overrun);
        return Message::dataError;
    }
    if (const auto faults = findBeyondFixed(model, scale); !faults.empty()) {
        reason.text = describe(model, faults.front());
        return Message::dataError;
    }
    image = formatModelImage(model, scale);
    return Message::none;
}

Message textureImage(Bytes& image, const TextureList& list, Reason& reason)
{
    const auto refuse = [&](const TargetWarning& warning) {
        reason.text = describe(warning);
        return Message::dataError;
    };
    // Before memory is had for it: a list may hold far more than the target takes.
    if (const auto overrun = findOverrun(list)) return refuse(*overrun);
    const Message message = formatTextureImage(image, list, &reason.text);
    if (message != Message::none) return message;
    if (const auto refusal = findRefusal(list)) return refuse(*refusal);
    return Message::none;
}

int runBothImages(Run& run, const ConvertOptions& options)
{
    InputFile model, textures;
    if (const int status = readAs(run, model, options.paths[0], FileKind::model);
        status != exitDone)
        return status;
    if (const int status = readAs(run, textures, options.paths[1], FileKind::textures);
        status != exitDone)
        return status;
    const float scale = options.scale.value_or(1.0f);
    Reason reason;
    Bytes image, list;
    if (const Message message = modelImage(image, model.model, scale, reason);
        message != Message::none)
        return reportFailure(run, options.paths[0], message, reason, targetForm);
    if (const Message message = textureImage(list, textures.textures, reason);
        message != Message::none)
        return reportFailure(run, options.paths[1], message, reason, targetForm);
    image.insert(image.end(), list.begin(), list.end());
    return writeOutput(run, {options.paths[2], std::move(image), {}});
}

int runUnpack(Run& run, const ConvertOptions& options)
{
    InputFile file;
    if (const int status = readAs(run, file, options.paths[0], FileKind::textures);
        status != exitDone)
        return status;
    const std::uint32_t used = file.textures.usedCount();
    if (used == 0) return reportFailure(run, options.paths[0], Message::texturesEmpty);
    std::string folder = options.paths[1];
    if (!endsAsFolder(folder)) folder += '/';
    std::vector<Output> outputs;
    for (std::uint32_t slot = 0; slot < used; ++slot) {
        if (file.textures.isEmpty(slot)) continue;
        Bytes png = encodeTexture(file.textures, slot);
        if (png.empty())
            return reportFailure(run, options.paths[0], Message::outOfMemory,
                                 {"texture " + std::to_string(slot), {}});
        outputs.push_back({folder + slotNumber(slot) + ".png", std::move(png), {}});
    }
    return writeWithFolder(run, folder, outputs);
}

int runPictures(Run& run, const ConvertOptions& options)
{
    const std::span<const std::string> pictures(options.paths.data(), options.paths.size() - 1);
    const std::string& output = options.paths.back();
    const auto fail = [&](const std::string& path, const std::string& why) {
        return reportFailure(run, path, Message::formatNotSupported, {why, {}});
    };
    InputFile old;
    if (!options.into.empty()) {
        if (const int status = readAs(run, old, options.into, FileKind::textures);
            status != exitDone)
            return status;
    } else if (const Message message = old.textures.create(); message != Message::none) {
        return reportFailure(run, output, message);
    }
    const PictureImport import{options.fit ? PictureSize::fitted : PictureSize::asItIs,
                               options.dither.value_or(Dither::none), options.transparent};
    std::map<std::uint32_t, std::string> taken;
    ProgressLine line(run.progress, "pictures", pictures.size());
    for (std::size_t i = 0; i < pictures.size(); ++i) {
        const std::string& path = pictures[i];
        std::uint32_t slot = options.first.value_or(0) + static_cast<std::uint32_t>(i);
        if (options.numbered) {
            const auto number = endingNumber(path);
            if (!number) return fail(path, "no number ends its name");
            slot = *number;
            if (const auto before = taken.find(slot); before != taken.end())
                return fail(path, "its number is also that of " + before->second);
        }
        if (slot >= textureSlotCount)
            return fail(path, "slot " + std::to_string(slot) + "; there are 0 to " +
                                  std::to_string(textureSlotCount - 1));
        taken.emplace(slot, path);
        Reason reason;
        const std::optional<Bytes> file = readWholeInput(run, path, largestImageFile, reason);
        if (!file) return reportFailure(run, path, Message::cannotOpenFile, reason);
        Picture picture;
        if (!decodePicture(picture, *file, reason.text)) return fail(path, reason.text);
        if (const Message message = importPicture(old.textures, slot, picture, import, reason);
            message != Message::none)
            return reportFailure(run, path, message, reason);
        line.show(i + 1);
    }
    line.clear();
    return writeOutput(run, {output, writeTextures(old.textures), options.into});
}

} // namespace facetor
