#pragma once

#include "base/data_file.h"
#include "base/message.h"
#include "texture/texture_list.h"

#include <span>
#include <string>

namespace facetor {

// The texture list file, described in docs/formats/mxt.md.

/// What a texture list file begins with.
inline constexpr std::uint32_t textureFileTag = tag("MXTX");

/// True when the file opens and starts with "MXTX" or "TEXR". No reader for the latter exists: such
/// a file passes this test and is then refused by the reader.
bool isTextureFile(const std::string& path);

/// Reads a texture list into the slots that the file names; the others keep what they hold. Needs a
/// created list. formatNotSupported when a chunk is not a texture, is cut, has no texels, or names
/// a slot that does not exist; `reason`, when given, says where. The textures before it stay, and
/// the slot that it names keeps what it held. When memory runs out the slot in question is left
/// empty and the rest unread, without a message but with a reason.
Message readTextures(TextureList& list, std::span<const std::byte> bytes, Reason* reason = nullptr);

/// The same from a reader, which may be one of a file.
Message readTextures(TextureList& list, const ByteReader& bytes, Reason* reason = nullptr);

/// readTextures() of a file, of which only a small part is in memory at a time; cannotOpenFile when
/// it cannot be read.
Message readTextureFile(TextureList& list, const std::string& path, Reason* reason = nullptr);

/// All slots that are not empty, in ascending order.
Bytes writeTextures(const TextureList& list);

/// writeTextures() into a file. With nothing created, texturesEmpty when all slots are empty and
/// outOfMemory when memory is short; cannotCreateFile when the file cannot be put in place.
Message writeTextureFile(const TextureList& list, const std::string& path);

} // namespace facetor
