#include "attr/working_attribute.h"

#include "base/text.h"

#include <algorithm>
#include <iterator>

namespace facetor {

namespace {

/// The flags that a page shows.
constexpr std::uint32_t pageFlags(AttributePage page)
{
    switch (page) {
    case AttributePage::material: return flipHorizontal | flipVertical | materialBits | useLight;
    case AttributePage::mode: return meshMode | modeBits;
    case AttributePage::zSort: return 0;
    case AttributePage::gouraud: return gouraudShading | useLight;
    case AttributePage::option: return nearClip;
    }
    return 0;
}

} // namespace

void loadWorkingAttribute(WorkingAttribute& working, const Model& model, std::uint32_t polygonIndex)
{
    const PolygonAttribute& attribute = model.attributes[polygonIndex];
    working = {attribute.plane, attribute.sort,  attribute.texture,
               attribute.color, attribute.flags, model.gouraud[polygonIndex].color};
}

void applyAttributePage(Model& model, const WorkingAttribute& working, AttributePage page,
                        PickedAfter after)
{
    const std::uint32_t mask = pageFlags(page);
    for (std::uint32_t i = 0; i < model.totalPolygonCount; ++i) {
        PolygonAttribute& attribute = model.attributes[i];
        if ((attribute.flags & picked) == 0) continue;
        attribute.flags = replaceBits(attribute.flags, mask, working.flags);
        switch (page) {
        case AttributePage::material:
            attribute.color = working.color;
            attribute.texture = working.texture;
            break;
        case AttributePage::zSort: attribute.sort = working.sort; break;
        case AttributePage::gouraud: model.gouraud[i].color = working.gouraud; break;
        case AttributePage::option: attribute.plane = working.plane; break;
        case AttributePage::mode: break; // flags alone
        }
        if (after == PickedAfter::clear) attribute.flags &= ~std::uint32_t{picked};
    }
}

std::optional<std::uint16_t> parseTextureNumber(std::string_view text)
{
    constexpr std::string_view blanks = " \t";
    text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
    text.remove_suffix(text.size() - (text.find_last_not_of(blanks) + 1));
    const std::optional<std::int32_t> number = parseWhole(text);
    if (!number || *number < INT16_MIN || *number > UINT16_MAX) return std::nullopt;
    return static_cast<std::uint16_t>(*number);
}

} // namespace facetor
