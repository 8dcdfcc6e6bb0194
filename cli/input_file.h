#pragma once

#include "base/bytes.h"
#include "base/file_window.h"
#include "base/message.h"
#include "model/model.h"
#include "run.h"
#include "texture/texture_list.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace facetor {

enum class FileKind { unknown, model, textures, image, obj, gltf, picture };

/// The kind that a path's extension names, in any case.
FileKind kindOf(const std::string& path);
/// The kind that a file's first bytes tell; target images and some pictures have nothing there that
/// marks them.
FileKind kindOfContent(std::span<const std::byte> bytes);

/// One block of a target image: so many bytes to be copied to an address of the console.
struct ImageBlock {
    std::uint32_t address;
    std::uint32_t size; ///< in bytes
};

/// The blocks of a target image. formatNotSupported when there is none, or when one is cut.
Message readImageBlocks(std::vector<ImageBlock>& blocks, ByteReader in, Reason* reason);

/// A file as a command takes it in; which member it fills says `kind`.
struct InputFile {
    FileKind kind = FileKind::unknown;
    Model model;
    std::uint32_t modelVersion = 0; ///< of the model file's layout
    TextureList textures;
    std::vector<ImageBlock> blocks;
    Bytes image;   ///< all of a target image, for conversions
    Reason reason; ///< why it could not be read, where its reader knows
};

/// Opens an input and notes it in `run`; "-" is the standard input, which is read whole once. None,
/// with the cause in `reason`, when it cannot be read. The reader needs `run` and, of a file, of
/// which a small part is in memory at a time, `window`.
std::optional<ByteReader> openInput(Run& run, FileWindow& window, const std::string& path,
                                    Reason& reason);

/// openInput() and all that is there, at most `largest` bytes.
std::optional<Bytes> readWholeInput(Run& run, const std::string& path, std::uint64_t largest,
                                    Reason& reason);

/// Reads a model, a texture list or a target image with all checks. What its name does not tell its
/// content does. cannotOpenFile, formatNotSupported or outOfMemory.
Message readInputFile(Run& run, InputFile& file, const std::string& path);

/// The same of an input that has been opened.
Message readOpenInput(InputFile& file, const std::string& path, ByteReader in);

/// The kind of an input, by its name or, where that tells nothing, its content: of the standard
/// input by all of it.
FileKind kindOfInput(const std::string& path, ByteReader& in);

/// Whether it is a model of another program, which is imported.
constexpr bool isForeign(FileKind kind)
{
    return kind == FileKind::obj || kind == FileKind::gltf;
}

} // namespace facetor
