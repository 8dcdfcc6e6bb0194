#include "output/attribute_packing.h"

#include "base/colour.h"

namespace facetor {

namespace {

/// The console library's kind of a polygon: its low six bits are the record's last field, the
/// others go into the option byte and the drawing mode.
std::uint32_t kindOf(std::uint32_t flags)
{
    if (!(flags & textureMap)) return flags & polyLine ? 0xC0000005 : 0xC0000004;
    std::uint32_t kind = 0x00040002;
    if (flags & flipHorizontal) kind |= 0x10;
    if (flags & flipVertical) kind |= 0x20;
    return kind;
}

std::uint8_t sortAndOptions(const PolygonAttribute& attribute, std::uint32_t kind)
{
    std::uint32_t value = kind >> 16 & 0x1C;
    if (attribute.flags & useLight) value |= attribute.flags & gouraudShading ? 0x80 : 0x08;
    if (attribute.flags & nearClip) value |= 0x40;
    switch (attribute.sort) { // any other value sorts by no point that the console knows
    case sortCentre: value |= 3; break;
    case sortNearest: value |= 1; break;
    case sortFarthest: value |= 2; break;
    default: break;
    }
    return static_cast<std::uint8_t>(value);
}

std::uint16_t drawingMode(std::uint32_t flags, std::uint32_t kind)
{
    std::uint32_t mode = (kind >> 24 & 0xC0) | 0x28;
    if (flags & meshMode) mode |= 0x0100;
    if (flags & shadowMode) mode |= 0x0001;
    if (flags & halfMode) mode |= 0x0002;
    if (flags & translucentMode) mode |= 0x0003;
    if (flags & gouraudShading) mode |= 0x0004;
    return static_cast<std::uint16_t>(mode);
}

} // namespace

PackedAttribute packAttribute(const PolygonAttribute& attribute, std::uint16_t& lightTable,
                              std::uint16_t& tableTable)
{
    const std::uint32_t flags = attribute.flags;
    const std::uint32_t kind = kindOf(flags);
    std::uint16_t gouraudTable = 0;
    if (isLightGouraud(attribute)) gouraudTable = lightTable++;
    if (isTableGouraud(attribute)) gouraudTable = tableTable++;

    PackedAttribute packed{};
    const auto put16 = [&packed](std::size_t offset, std::uint32_t value) {
        packed[offset] = static_cast<std::byte>(value >> 8 & 0xFF);
        packed[offset + 1] = static_cast<std::byte>(value & 0xFF);
    };
    packed[0] = std::byte{attribute.plane != 0};
    packed[1] = std::byte{sortAndOptions(attribute, kind)};
    put16(2, flags & textureMap ? attribute.texture : 0u);
    put16(4, drawingMode(flags, kind));
    put16(6, toConsoleColour(attribute.color));
    put16(8, gouraudTable);
    put16(10, kind & 0x3F);
    return packed;
}

} // namespace facetor
