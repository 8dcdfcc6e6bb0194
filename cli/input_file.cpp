#include "input_file.h"

#include "base/file.h"
#include "base/text.h"
#include "exchange/gltf_reader.h"
#include "exchange/obj_reader.h"
#include "model/model_file.h"
#include "texture/texture_file.h"

#include <cerrno>
#include <cstdio>
#include <utility>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#endif

namespace facetor {

namespace {

constexpr std::size_t contentToTell = 4096;   ///< bytes that an input's kind is told by
constexpr std::size_t modelVersionOffset = 8; ///< in a model file, behind the header's tag and size

Message readModelInput(InputFile& file, ByteReader& in)
{
    if (const Message message = createModelStore(file.model); message != Message::none)
        return message;
    ByteReader header{in.peek(modelVersionOffset + 4)};
    header.skip(modelVersionOffset);
    file.modelVersion = header.u32(); // a model that can be read has one
    return readModel(file.model, in, &file.reason);
}

Message readTextureInput(InputFile& file, const ByteReader& in)
{
    if (const Message message = file.textures.create(); message != Message::none) return message;
    return readTextures(file.textures, in, &file.reason);
}

std::optional<Bytes> readStandardInput(Reason& reason)
{
#ifdef _WIN32
    _setmode(_fileno(stdin), _O_BINARY);
#endif
    Bytes bytes;
    constexpr std::size_t step = 256 * 1024;
    for (std::size_t read = step; read == step;) {
        const std::size_t start = bytes.size();
        if (start > largestFile) {
            reason.text = "larger than " + std::to_string(largestFile) + " bytes";
            return std::nullopt;
        }
        bytes.resize(start + step);
        read = std::fread(bytes.data() + start, 1, step, stdin);
        bytes.resize(start + read);
    }
    if (std::ferror(stdin) == 0) return bytes;
    reason.text = systemReason(errno);
    return std::nullopt;
}

} // namespace

FileKind kindOf(const std::string& path)
{
    const std::string_view extension = extensionOf(path);
    if (equalIgnoringCase(extension, "mx3")) return FileKind::model;
    if (equalIgnoringCase(extension, "mxt")) return FileKind::textures;
    if (equalIgnoringCase(extension, "sal")) return FileKind::image;
    if (equalIgnoringCase(extension, "obj")) return FileKind::obj;
    if (equalIgnoringCase(extension, "gltf") || equalIgnoringCase(extension, "glb"))
        return FileKind::gltf;
    for (const std::string_view picture : {"png", "bmp", "tga", "jpg", "jpeg", "gif"})
        if (equalIgnoringCase(extension, picture)) return FileKind::picture;
    return FileKind::unknown;
}

FileKind kindOfContent(std::span<const std::byte> bytes)
{
    ByteReader in{bytes};
    const std::uint32_t first = in.u32();
    if (first == modelFileTag) return FileKind::model;
    if (first == tag("MXTX")) return FileKind::textures;
    if (looksLikeGltf(bytes)) return FileKind::gltf;
    if (looksLikeObj({reinterpret_cast<const char*>(bytes.data()), bytes.size()}))
        return FileKind::obj;
    return FileKind::unknown;
}

Message readImageBlocks(std::vector<ImageBlock>& blocks, ByteReader in, Reason* reason)
{
    blocks.clear();
    const auto fail = [&](std::uint64_t offset, const std::string& what) {
        if (reason) *reason = {"block at offset " + std::to_string(offset) + ": " + what, offset};
        return Message::formatNotSupported;
    };
    do {
        const std::uint64_t offset = in.offset();
        const ImageBlock block{in.u32(), in.u32()}; // braces: read from left to right
        if (!in.ok()) return fail(offset, "the file ends inside its address or size");
        if (block.size > in.left())
            return fail(offset, "the file ends " + std::to_string(in.left()) + " bytes into its " +
                                    std::to_string(block.size));
        in.skip(block.size);
        blocks.push_back(block);
    } while (in.left() > 0);
    return Message::none;
}

std::optional<ByteReader> openInput(Run& run, InputSource& source, const std::string& path,
                                    Reason& reason)
{
    if (path != standardStream) {
        run.filesRead.push_back(path);
        if (!source.file.open(path, &reason.text)) return std::nullopt;
        return ByteReader(source.file);
    }
    run.standardInputRead = true;
    std::optional<Bytes> bytes = readStandardInput(reason);
    if (!bytes) return std::nullopt;
    source.standardInput = std::move(*bytes);
    return ByteReader(source.standardInput);
}

Message readInputFile(Run& run, InputFile& file, const std::string& path)
{
    file.reason = {};
    InputSource source;
    std::optional<ByteReader> in = openInput(run, source, path, file.reason);
    if (!in) return Message::cannotOpenFile;
    return readOpenInput(file, path, *in);
}

FileKind kindOfInput(const std::string& path, ByteReader& in)
{
    const FileKind kind = path == standardStream ? FileKind::unknown : kindOf(path);
    return kind == FileKind::unknown ? kindOfContent(in.peek(contentToTell)) : kind;
}

Message readOpenInput(InputFile& file, const std::string& path, ByteReader in)
{
    file.kind = kindOfInput(path, in);
    switch (file.kind) {
    case FileKind::model: return readModelInput(file, in);
    case FileKind::textures: return readTextureInput(file, in);
    case FileKind::image: return readImageBlocks(file.blocks, in, &file.reason);
    case FileKind::obj:
    case FileKind::gltf:
        file.reason.text = "a model of another program: facetor-cli convert makes an .mx3 of it";
        return Message::formatNotSupported;
    case FileKind::picture:
        file.reason.text = "a picture: facetor-cli convert makes a texture list of it";
        return Message::formatNotSupported;
    case FileKind::unknown: break;
    }
    // Target images have nothing that marks them but that their blocks end where the file does.
    if (path == standardStream && readImageBlocks(file.blocks, in, nullptr) == Message::none) {
        file.kind = FileKind::image;
        return Message::none;
    }
    file.reason.text = "neither a model, a texture list nor a target image";
    return Message::formatNotSupported;
}

} // namespace facetor
