#include "input_file.h"

#include "base/file.h"
#include "base/text.h"
#include "model/model_file.h"
#include "texture/texture_file.h"

namespace facetor {

namespace {

Message readModelInput(InputFile& file, std::span<const std::byte> bytes)
{
    if (const Message message = createModelStore(file.model); message != Message::none)
        return message;
    if (const Message message = readModel(file.model, bytes, &file.reason);
        message != Message::none)
        return message;
    ByteReader in{bytes};
    (void)readChunkHeader(in);
    file.modelVersion = in.u32(); // a model that was read has a header
    return Message::none;
}

Message readTextureInput(InputFile& file, std::span<const std::byte> bytes)
{
    if (const Message message = file.textures.create(); message != Message::none) return message;
    return readTextures(file.textures, bytes, &file.reason);
}

} // namespace

FileKind kindOf(const std::string& path, std::span<const std::byte> bytes)
{
    const std::string_view extension = extensionOf(path);
    if (equalIgnoringCase(extension, "mx3")) return FileKind::model;
    if (equalIgnoringCase(extension, "mxt")) return FileKind::textures;
    if (equalIgnoringCase(extension, "sal")) return FileKind::image;
    ByteReader in{bytes};
    const std::uint32_t first = in.u32();
    if (first == modelFileTag) return FileKind::model;
    if (first == tag("MXTX")) return FileKind::textures;
    return FileKind::unknown;
}

Message readImageBlocks(std::vector<ImageBlock>& blocks, std::span<const std::byte> bytes,
                        std::string* reason)
{
    blocks.clear();
    const auto fail = [&](std::size_t offset, const std::string& what) {
        if (reason) *reason = "block at offset " + std::to_string(offset) + ": " + what;
        return Message::formatNotSupported;
    };
    ByteReader in{bytes};
    do {
        const std::size_t offset = in.offset();
        const ImageBlock block{in.u32(), in.u32()}; // braces: read from left to right
        if (!in.ok()) return fail(offset, "the file ends inside its address or size");
        if (block.size > in.left())
            return fail(offset, "the file ends " + std::to_string(in.left()) + " bytes into its " +
                                    std::to_string(block.size));
        (void)in.take(block.size);
        blocks.push_back(block);
    } while (in.left() > 0);
    return Message::none;
}

Message readInputFile(InputFile& file, const std::string& path)
{
    file.reason.clear();
    const std::optional<Bytes> bytes = readFile(path);
    if (!bytes) return Message::cannotOpenFile;
    file.kind = kindOf(path, *bytes);
    switch (file.kind) {
    case FileKind::model: return readModelInput(file, *bytes);
    case FileKind::textures: return readTextureInput(file, *bytes);
    case FileKind::image: return readImageBlocks(file.blocks, *bytes, &file.reason);
    case FileKind::unknown: break;
    }
    file.reason = "neither a model, a texture list nor a target image";
    return Message::formatNotSupported;
}

} // namespace facetor
