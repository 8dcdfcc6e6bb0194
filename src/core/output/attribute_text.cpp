#include "output/attribute_text.h"

#include "base/colour.h"

#include <charconv>
#include <cstring>
#include <string_view>

namespace facetor {

namespace {

std::string_view sortText(std::uint16_t sort)
{
    if (sort == sortNearest) return "SORT_MIN";
    if (sort == sortFarthest) return "SORT_MAX";
    return "SORT_CEN";
}

void appendNumber(TextWriter& text, std::uint32_t value)
{
    constexpr std::size_t longest = 10; // digits of 32 bits
    char* const room = text.room(longest);
    text.advance(static_cast<std::size_t>(std::to_chars(room, room + longest, value).ptr - room));
}

void appendGouraud(TextWriter& text, const PolygonAttribute& attribute, std::uint32_t& lightIndex,
                   std::uint32_t& tableIndex)
{
    if ((attribute.flags & gouraudShading) == 0) return text.append("No_Gouraud");
    const bool light = isLightGouraud(attribute);
    text.append(light ? std::string_view("GRreal(") : std::string_view("GRtbl("));
    appendNumber(text, light ? lightIndex++ : tableIndex++);
    text.append(')');
}

void appendMode(TextWriter& text, std::uint32_t flags)
{
    text.append("CL32KRGB");
    text.append(flags & meshMode ? std::string_view("|MESHon") : std::string_view("|MESHoff"));
    if (flags & shadowMode) text.append("|CL_Shadow");
    if (flags & halfMode) text.append("|CL_Half");
    if (flags & translucentMode) text.append("|CL_Trans");
    if (flags & gouraudShading) text.append("|CL_Gouraud");
}

std::string_view directionText(std::uint32_t flags)
{
    if (flags & textureMap) {
        const bool horizontal = flags & flipHorizontal, vertical = flags & flipVertical;
        if (horizontal) return vertical ? "sprHVflip" : "sprHflip";
        return vertical ? "sprVflip" : "sprNoflip";
    }
    return flags & polyLine ? "sprPolyLine" : "sprPolygon";
}

std::string_view optionText(std::uint32_t flags)
{
    const bool near = flags & nearClip;
    if ((flags & useLight) == 0) return near ? "UseNearClip" : "No_Option";
    if (flags & gouraudShading) return near ? "UseGouraud|UseNearClip" : "UseGouraud";
    return near ? "UseLight|UseNearClip" : "UseLight";
}

} // namespace

void appendColour(TextWriter& text, Rgb555 colour)
{
    constexpr std::string_view form = "C_RGB(  ,  ,  )";
    char* const to = text.room(form.size());
    std::memcpy(to, form.data(), form.size());
    const auto put = [to](std::size_t column, int component) {
        if (component >= 10) to[column] = static_cast<char>('0' + component / 10);
        to[column + 1] = static_cast<char>('0' + component % 10);
    };
    put(6, redOf(colour));
    put(9, greenOf(colour));
    put(12, blueOf(colour));
    text.advance(form.size());
}

void appendAttribute(TextWriter& text, const PolygonAttribute& attribute, std::uint32_t& lightIndex,
                     std::uint32_t& tableIndex)
{
    constexpr std::string_view separator = ", ";
    text.append(attribute.plane & dualPlaneBit ? "Dual_Plane, " : "Single_Plane, ");
    text.append(sortText(attribute.sort));
    text.append(separator);
    if (attribute.flags & textureMap)
        appendNumber(text, attribute.texture);
    else
        text.append("No_Texture");
    text.append(separator);
    appendColour(text, attribute.color);
    text.append(separator);
    appendGouraud(text, attribute, lightIndex, tableIndex);
    text.append(separator);
    appendMode(text, attribute.flags);
    text.append(separator);
    text.append(directionText(attribute.flags));
    text.append(separator);
    text.append(optionText(attribute.flags));
}

std::string formatAttribute(const PolygonAttribute& attribute, std::uint32_t& lightIndex,
                            std::uint32_t& tableIndex)
{
    TextWriter text(128);
    appendAttribute(text, attribute, lightIndex, tableIndex);
    return std::string(text.view());
}

} // namespace facetor
