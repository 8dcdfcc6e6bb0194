#include "texture/texture_file.h"

#include "base/file.h"
#include "base/file_window.h"

#include <cassert>
#include <new>
#include <utility>

namespace facetor {

namespace {

constexpr std::uint32_t textureTag = tag("TQTx");
/// Files of a sort that passes for a texture list and that nothing reads.
constexpr std::uint32_t unreadTag = tag("TEXR");

/// What stands before a texture's texels, in bytes: slot number, width, height.
constexpr std::size_t textureHeaderSize = 8;

/// Reads one file from its first byte to its last texture.
class TextureReader {
public:
    TextureReader(TextureList& list, const ByteReader& bytes) : list_(list), chunks_(bytes) {}

    Message read();
    const Reason& reason() const { return chunks_.fault(); }

private:
    enum class Progress { goOn, outOfMemory };

    Message readHeader(std::uint32_t& count);
    Message readTexture(Progress& progress);
    Message fail(const std::string& what) { return chunks_.fail(what); }

    TextureList& list_;
    ChunkReader chunks_;
    ByteReader& in_ = chunks_.in;
};

Message TextureReader::read()
{
    std::uint32_t count = 0;
    if (const Message message = readHeader(count); message != Message::none) return message;
    for (std::uint32_t i = 0; i < count; ++i) {
        Progress progress = Progress::goOn;
        if (const Message message = readTexture(progress); message != Message::none) return message;
        if (progress == Progress::outOfMemory) return Message::none;
    }
    return Message::none;
}

Message TextureReader::readHeader(std::uint32_t& count)
{
    ChunkHeader header; // whose size is not looked at: the block has one of its own
    if (!chunks_.expect(textureFileTag, header)) return Message::formatNotSupported;
    ByteReader fields{in_.take(dataFileHeaderSize)};
    if (!in_.ok()) return chunks_.failCut();
    (void)fields.u32(); // the version: there is one layout only
    count = fields.u32();
    return Message::none;
}

Message TextureReader::readTexture(Progress& progress)
{
    ChunkHeader header; // whose size is not looked at: width and height give it
    if (!chunks_.expect(textureTag, header)) return Message::formatNotSupported;
    ByteReader fields{in_.take(textureHeaderSize)};
    if (!in_.ok()) return chunks_.failCut();
    const std::uint32_t number = fields.u32();
    const std::uint16_t width = fields.u16();
    const std::uint16_t height = fields.u16();
    if (number >= textureSlotCount)
        return fail("slot " + std::to_string(number) + " does not exist");
    const std::string size = std::to_string(width) + " x " + std::to_string(height) + " texels";
    if (width == 0 || height == 0) return fail("a texture of " + size);
    const std::uint64_t texelCount = std::uint64_t{width} * height;
    if (texelCount * 2 > in_.left()) return fail("the file ends inside its " + size);

    list_.clear(number); // its memory may be what the new one needs
    Texels pixels;
    if (!pixels.allocate(static_cast<std::size_t>(texelCount))) {
        progress = Progress::outOfMemory;
        (void)fail("memory is short for its " + size);
        return Message::none;
    }
    for (std::size_t row = 0; row < height; ++row) {
        ByteReader texels{in_.take(std::size_t{width} * 2)};
        for (std::size_t i = 0; i < width; ++i) pixels[row * width + i] = texels.u16();
    }
    if (!in_.ok()) return chunks_.failCut(); // the file has become shorter
    list_.set(number, width, height, std::move(pixels));
    return Message::none;
}

void writeTexture(ByteWriter& out, std::uint32_t number, const TextureSlot& slot)
{
    const std::size_t payload = out.beginChunk(textureTag);
    out.u32(number);
    out.u16(slot.width);
    out.u16(slot.height);
    const std::size_t texelCount = std::size_t{slot.width} * slot.height;
    for (std::size_t i = 0; i < texelCount; ++i) out.u16(slot.pixels[i]);
    out.endChunk(payload);
}

} // namespace

bool isTextureFile(const std::string& path)
{
    const std::optional<Bytes> start = readFileStart(path, 4);
    if (!start) return false;
    ByteReader in{*start};
    const std::uint32_t found = in.u32();
    return in.ok() && (found == textureFileTag || found == unreadTag);
}

Message readTextures(TextureList& list, std::span<const std::byte> bytes, Reason* reason)
{
    return readTextures(list, ByteReader(bytes), reason);
}

Message readTextures(TextureList& list, const ByteReader& bytes, Reason* reason)
{
    assert(list.slots().size() == textureSlotCount);
    TextureReader reader(list, bytes);
    const Message message = reader.read();
    if (reason) *reason = reader.reason();
    return message;
}

Message readTextureFile(TextureList& list, const std::string& path, Reason* reason)
{
    FileWindow file;
    if (!file.open(path, reason ? &reason->text : nullptr)) return Message::cannotOpenFile;
    return readTextures(list, ByteReader(file), reason);
}

Bytes writeTextures(const TextureList& list)
{
    ByteWriter out;
    const std::size_t countOffset = writeDataFileHeader(out, textureFileTag, 0);
    std::uint32_t count = 0;
    const std::uint32_t used = list.usedCount();
    for (std::uint32_t number = 0; number < used; ++number) {
        if (list.isEmpty(number)) continue;
        writeTexture(out, number, list.slot(number));
        ++count;
    }
    out.patchU32(countOffset, count);
    return out.release();
}

Message writeTextureFile(const TextureList& list, const std::string& path)
{
    if (list.usedCount() == 0) return Message::texturesEmpty;
    try {
        return writeFile(path, writeTextures(list));
    } catch (const std::bad_alloc&) {
        return Message::outOfMemory;
    }
}

} // namespace facetor
