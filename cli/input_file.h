#pragma once

#include "base/bytes.h"
#include "base/message.h"
#include "model/model.h"
#include "texture/texture_list.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace facetor {

enum class FileKind { unknown, model, textures, image };

/// The kind that a path's extension names (.mx3, .mxt, .sal, in any case), else the one that the
/// file's first bytes tell.
FileKind kindOf(const std::string& path, std::span<const std::byte> bytes);

/// One block of a target image: so many bytes to be copied to an address of the console.
struct ImageBlock {
    std::uint32_t address;
    std::uint32_t size; ///< in bytes
};

/// The blocks of a target image. formatNotSupported when there is none, or when one is cut.
Message readImageBlocks(std::vector<ImageBlock>& blocks, std::span<const std::byte> bytes,
                        std::string* reason);

/// A file as a command takes it in; which member it fills says `kind`.
struct InputFile {
    FileKind kind = FileKind::unknown;
    Model model;
    std::uint32_t modelVersion = 0; ///< of the model file's layout
    TextureList textures;
    std::vector<ImageBlock> blocks;
    std::string reason; ///< why it could not be read, where its reader knows
};

/// Reads a model, a texture list or a target image with all checks. cannotOpenFile,
/// formatNotSupported or outOfMemory.
Message readInputFile(InputFile& file, const std::string& path);

} // namespace facetor
