#include "attr/attribute_text.h"

#include "base/colour.h"

#include <string_view>

namespace facetor {

namespace {

std::string_view sortText(std::uint16_t sort)
{
    if (sort == sortNearest) return "SORT_MIN";
    if (sort == sortFarthest) return "SORT_MAX";
    return "SORT_CEN";
}

/// A colour component, right-aligned in two columns.
std::string componentText(int component)
{
    return (component < 10 ? " " : "") + std::to_string(component);
}

std::string colourText(Rgb555 colour)
{
    return "C_RGB(" + componentText(redOf(colour)) + "," + componentText(greenOf(colour)) + "," +
           componentText(blueOf(colour)) + ")";
}

std::string gouraudText(const PolygonAttribute& attribute, std::uint32_t& lightIndex,
                        std::uint32_t& tableIndex)
{
    if (isLightGouraud(attribute)) return "GRreal(" + std::to_string(lightIndex++) + ")";
    if (isTableGouraud(attribute)) return "GRtbl(" + std::to_string(tableIndex++) + ")";
    return "No_Gouraud";
}

std::string modeText(std::uint32_t flags)
{
    std::string text = "CL32KRGB";
    text += flags & meshMode ? "|MESHon" : "|MESHoff";
    if (flags & shadowMode) text += "|CL_Shadow";
    if (flags & halfMode) text += "|CL_Half";
    if (flags & translucentMode) text += "|CL_Trans";
    if (flags & gouraudShading) text += "|CL_Gouraud";
    return text;
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

std::string optionText(std::uint32_t flags)
{
    std::string text;
    if (flags & useLight) text = flags & gouraudShading ? "UseGouraud" : "UseLight";
    if (flags & nearClip) text += text.empty() ? "UseNearClip" : "|UseNearClip";
    return text.empty() ? "No_Option" : text;
}

} // namespace

std::string formatAttribute(const PolygonAttribute& attribute, std::uint32_t& lightIndex,
                            std::uint32_t& tableIndex)
{
    std::string text = attribute.plane & dualPlaneBit ? "Dual_Plane" : "Single_Plane";
    const auto add = [&text](std::string_view argument) { (text += ", ") += argument; };
    add(sortText(attribute.sort));
    add(attribute.flags & textureMap ? std::to_string(attribute.texture) : "No_Texture");
    add(colourText(attribute.color));
    add(gouraudText(attribute, lightIndex, tableIndex));
    add(modeText(attribute.flags));
    add(directionText(attribute.flags));
    add(optionText(attribute.flags));
    return text;
}

} // namespace facetor
