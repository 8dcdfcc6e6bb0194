#pragma once

#include "base/bytes.h"
#include "base/message.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace facetor {

// What model files and texture list files have in common: a stream of chunks that begins with a
// header of 256 bytes.

/// The layout that is written.
inline constexpr std::uint32_t dataFileVersion = 0x00011000;
/// Size of the header chunk's payload in bytes: version, count, banner, zeros.
inline constexpr std::uint32_t dataFileHeaderSize = 256;
/// The banner in the header, followed by a NUL.
inline constexpr std::string_view dataFileBanner = "FACETOR DATA FILE 1995-1996/GRAPHICS TOOLS";

/// Writes the header chunk. Returns the offset of the count, for ByteWriter::patchU32().
std::size_t writeDataFileHeader(ByteWriter& out, std::uint32_t tag, std::uint32_t count);

/// Reads chunk after chunk, and knows which one it is at when something turns out to be wrong.
class ChunkReader {
public:
    explicit ChunkReader(const ByteReader& file) : in(file) {}

    /// Reads the next chunk's header, whose tag has to be `tag`. False, with a fault noted, when
    /// the file ends before it or another one stands there.
    [[nodiscard]] bool expect(std::uint32_t tag, ChunkHeader& header);

    /// Makes the chunk at `offset` the one that faults are in.
    void setChunk(std::uint32_t tag, std::uint64_t offset);

    /// Notes what is wrong with the current chunk, and where it is; the first fault stays. Always
    /// formatNotSupported.
    Message fail(const std::string& what);
    /// fail() for a chunk that the end of the file cuts.
    Message failCut() { return fail("the file ends inside it"); }

    /// The noted fault: "chunk TAG at offset N: what"; empty when there is none.
    const Reason& fault() const { return fault_; }

    ByteReader in;

private:
    std::string chunk_;
    std::uint64_t offset_ = 0;
    Reason fault_;
};

} // namespace facetor
