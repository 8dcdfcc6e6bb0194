#include "input_file.h"

#include "base/file.h"
#include "base/text.h"
#include "exchange/foreign_file.h"
#include "exchange/gltf_reader.h"
#include "exchange/obj_reader.h"
#include "image/picture.h"
#include "model/model_file.h"
#include "texture/texture_file.h"

#include <algorithm>
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
    if (const auto foreign = foreignKindOf(path))
        return *foreign == ForeignKind::obj ? FileKind::obj : FileKind::gltf;
    for (const std::string_view picture : {"png", "bmp", "tga", "jpg", "jpeg", "gif"})
        if (equalIgnoringCase(extension, picture)) return FileKind::picture;
    return FileKind::unknown;
}

FileKind kindOfContent(std::span<const std::byte> bytes)
{
    ByteReader in{bytes};
    const std::uint32_t first = in.u32();
    if (first == modelFileTag) return FileKind::model;
    if (first == textureFileTag) return FileKind::textures;
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

std::optional<ByteReader> openInput(Run& run, FileWindow& window, const std::string& path,
                                    Reason& reason)
{
    if (path == standardStream) {
        if (!run.standardInput) run.standardInput = readStandardInput(reason);
        if (!run.standardInput) return std::nullopt;
        return ByteReader(*run.standardInput);
    }
    run.filesRead.push_back(path);
    if (!window.open(path, &reason.text)) return std::nullopt;
    return ByteReader(window);
}

std::optional<Bytes> readWholeInput(Run& run, const std::string& path, std::uint64_t largest,
                                    Reason& reason)
{
    FileWindow window;
    std::optional<ByteReader> in = openInput(run, window, path, reason);
    if (!in) return std::nullopt;
    if (in->left() > largest) {
        reason.text = "larger than " + std::to_string(largest) + " bytes";
        return std::nullopt;
    }
    Bytes bytes(static_cast<std::size_t>(in->left()));
    constexpr std::size_t step = 65536;
    for (std::size_t at = 0; at < bytes.size(); at += step) {
        const auto part = in->take(std::min(step, bytes.size() - at));
        if (!in->ok()) {
            reason.text = "cannot be read";
            return std::nullopt;
        }
        std::copy(part.begin(), part.end(), bytes.begin() + static_cast<std::ptrdiff_t>(at));
    }
    return bytes;
}

Message readInputFile(Run& run, InputFile& file, const std::string& path)
{
    file.reason = {};
    FileWindow window;
    std::optional<ByteReader> in = openInput(run, window, path, file.reason);
    if (!in) return Message::cannotOpenFile;
    return readOpenInput(file, path, *in);
}

FileKind kindOfInput(const std::string& path, ByteReader& in)
{
    if (path != standardStream && kindOf(path) != FileKind::unknown) return kindOf(path);
    const FileKind kind = kindOfContent(in.peek(contentToTell));
    if (path != standardStream || kind != FileKind::unknown) return kind;
    // Target images have nothing that marks them but that their blocks end where the file does.
    std::vector<ImageBlock> blocks;
    if (readImageBlocks(blocks, in, nullptr) == Message::none) return FileKind::image;
    const auto whole = in.peek(static_cast<std::size_t>(in.left()));
    return looksLikePicture(whole) ? FileKind::picture : FileKind::unknown;
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
    file.reason.text = "neither a model, a texture list nor a target image";
    return Message::formatNotSupported;
}

} // namespace facetor
