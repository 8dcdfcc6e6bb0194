#include "base/data_file.h"

#include <array>

namespace facetor {

std::size_t writeDataFileHeader(ByteWriter& out, std::uint32_t tag, std::uint32_t count)
{
    const std::size_t payload = out.beginChunk(tag);
    out.u32(dataFileVersion);
    const std::size_t countOffset = out.size();
    out.u32(count);
    out.text(dataFileBanner);
    out.zeros(payload + dataFileHeaderSize - out.size());
    out.endChunk(payload);
    return countOffset;
}

bool ChunkReader::expect(std::uint32_t tag, ChunkHeader& header)
{
    setChunk(tag, in.offset());
    const std::optional<ChunkHeader> found = readChunkHeader(in);
    if (!found) {
        (void)fail("the file ends before it");
        return false;
    }
    if (found->tag != tag) {
        std::array<char, 4> buffer;
        (void)fail("\"" + std::string(tagText(found->tag, buffer)) + "\" stands in its place");
        return false;
    }
    header = *found;
    return true;
}

void ChunkReader::setChunk(std::uint32_t tag, std::uint64_t offset)
{
    std::array<char, 4> buffer;
    chunk_ = tagText(tag, buffer);
    offset_ = offset;
}

Message ChunkReader::fail(const std::string& what)
{
    if (fault_.text.empty())
        fault_ = {"chunk " + chunk_ + " at offset " + std::to_string(offset_) + ": " + what,
                  offset_};
    return Message::formatNotSupported;
}

} // namespace facetor
