#pragma once

#include "base/data_file.h"
#include "base/message.h"
#include "model/model.h"

#include <span>
#include <string>

namespace facetor {

// The model file, described in docs/formats/mx3.md.

/// In bytes, without the NUL behind it. A file with a longer name is refused.
inline constexpr std::size_t longestObjectName = 4095;

inline constexpr std::uint32_t modelFileTag = tag("MX3D");
/// The older layout, without the objects' matrices; dataFileVersion marks the one that is written.
inline constexpr std::uint32_t olderModelFileVersion = 0x00010000;

/// True when the file opens and starts with a model's header chunk.
bool probeModelFile(const std::string& path);

/// Reads a model into the pools, in place. Needs pools that createModelStore() has made.
/// formatNotSupported when a required chunk is missing or cut, or when the contents would overrun a
/// pool or name an object, corner or texture slot that does not exist; `reason`, when given, then
/// says where. There is no rollback: the object count and the objects read so far stay. Whatever
/// happens, isSafeToDraw() holds afterwards; objects that were not read are left without polygons.
Message readModel(Model& model, std::span<const std::byte> bytes, Reason* reason = nullptr);

/// The same from a reader, which may be one of a file.
Message readModel(Model& model, const ByteReader& bytes, Reason* reason = nullptr);

/// readModel() of a file, of which only a small part is in memory at a time; cannotOpenFile when it
/// cannot be read, with the cause in `reason`.
Message readModelFile(Model& model, const std::string& path, Reason* reason = nullptr);

/// The model in the current layout. Angles go through degrees and drift toward zero as
/// base/angle.h says; selection marks are written as they stand, and cleared by the reader.
Bytes writeModel(const Model& model);

/// writeModel() into a file; cannotCreateFile when it cannot be put in place, outOfMemory when
/// memory is short.
Message writeModelFile(const Model& model, const std::string& path);

} // namespace facetor
