#include "output/texture_source.h"

#include "base/file.h"
#include "base/text.h"
#include "output/source_text.h"

#include <array>
#include <new>
#include <span>

namespace facetor {

namespace {

constexpr std::size_t texelsPerLine = 8;

/// Room for one texel's share of the text, in bytes, so that the text does not move while it grows.
constexpr std::size_t textPerTexel = 8;

/// "base" and the texture's number with at least three digits.
std::string arrayName(std::string_view base, std::uint32_t number)
{
    std::string digits = std::to_string(number);
    if (digits.size() < 3) digits.insert(0, 3 - digits.size(), '0');
    return std::string(base) + digits;
}

std::size_t texelCount(const TextureSlot& slot)
{
    return std::size_t{slot.width} * slot.height;
}

void appendTexels(TextWriter& text, std::span<const Rgb555> texels)
{
    for (std::size_t i = 0; i < texels.size(); ++i) {
        if (i % texelsPerLine == 0) text.append('\t');
        appendHex16(text, (texels[i] & opaqueBit) != 0 ? toConsoleColour(texels[i]) : Rgb555{0});
        text.append(',');
        if (i % texelsPerLine == texelsPerLine - 1 || i + 1 == texels.size()) text.append("\r\n");
    }
}

} // namespace

TextWriter formatTextureSource(const TextureList& list, std::string_view path, SourceNames names)
{
    const std::string_view title = fileTitle(path);
    const std::string base = toIdentifier(cutExtension(title), names);
    const auto slots = list.slots().first(list.usedCount());
    std::size_t size = 4096;
    for (const TextureSlot& slot : slots) size += 128 + texelCount(slot) * textPerTexel;
    TextWriter text(size);

    appendHeaderStart(text, toComment(title, names));
    appendCountLine(text, "TEXTURES = ", static_cast<std::uint32_t>(slots.size()));
    appendHeaderEnd(text);
    for (std::uint32_t i = 0; i < slots.size(); ++i) {
        appendTableStart(text, "Uint16", "texture", arrayName(base, i));
        appendTexels(text, {slots[i].pixels, texelCount(slots[i])});
        appendTableEnd(text);
    }

    appendTableStart(text, "TEXTURE", "tex", base);
    std::uint32_t offset = 0; // in bytes, without gaps
    for (const TextureSlot& slot : slots) {
        text.append("\tTEXTBL(");
        appendNumber(text, slot.width, 3);
        text.append(',');
        appendNumber(text, slot.height, 3);
        text.append(", CGADDRESS+");
        appendNumber(text, offset);
        text.append("),\r\n");
        offset += static_cast<std::uint32_t>(texelCount(slot) * sizeof(Rgb555));
    }
    appendTableEnd(text);

    appendTableStart(text, "PICTURE", "pic", base);
    for (std::uint32_t i = 0; i < slots.size(); ++i) {
        text.append("\tPICTBL(");
        appendNumber(text, i, 3);
        text.append(", COL_32K, texture_" + arrayName(base, i) + "),\r\n");
    }
    appendTableEnd(text);
    return text;
}

Message writeTextureSource(const TextureList& list, const std::string& path)
{
    if (list.usedCount() == 0) return Message::texturesEmpty;
    try {
        const TextWriter text = formatTextureSource(list, path);
        return writeFile(path, std::as_bytes(std::span(text.view())));
    } catch (const std::bad_alloc&) { // the text is four times as long as the texels
        return Message::outOfMemory;
    }
}

} // namespace facetor
