#include "attr/attribute_fields.h"

#include <cstddef>

namespace facetor {

namespace {

constexpr std::uint16_t colourBits = 0x7FFF;

/// The fields that are bits of the flags.
struct FlagField {
    AttributeField field;
    std::uint32_t bits;
};
constexpr FlagField flagFields[] = {
    {fieldMaterial, materialBits},     {fieldMode, modeBits},
    {fieldUseLight, useLight},         {fieldFlipHorizontal, flipHorizontal},
    {fieldFlipVertical, flipVertical}, {fieldMesh, meshMode},
    {fieldGouraud, gouraudShading},    {fieldNearClip, nearClip},
};

constexpr AttributeFields gouraudField(std::size_t corner)
{
    return AttributeFields{fieldGouraudColour} << corner;
}

bool differ(Rgb555 a, Rgb555 b)
{
    return ((a ^ b) & colourBits) != 0;
}

} // namespace

AttributeFields differingFields(const WorkingAttribute& a, const WorkingAttribute& b)
{
    AttributeFields fields = (a.plane != b.plane ? fieldPlane : 0u) |
                             (a.sort != b.sort ? fieldSort : 0u) |
                             (a.texture != b.texture ? fieldTexture : 0u) |
                             (differ(a.color, b.color) ? fieldColour : 0u);
    for (const auto& [field, bits] : flagFields)
        if (((a.flags ^ b.flags) & bits) != 0) fields |= field;
    for (std::size_t i = 0; i < 4; ++i)
        if (differ(a.gouraud[i], b.gouraud[i])) fields |= gouraudField(i);
    return fields;
}

AttributeFields mixedFields(const Model& model)
{
    const std::optional<std::uint32_t> first = firstPicked(model);
    if (!first) return 0;
    WorkingAttribute sample, other;
    loadWorkingAttribute(sample, model, *first);
    AttributeFields fields = 0;
    for (std::uint32_t i = *first + 1; i < model.totalPolygonCount; ++i) {
        if (!isPicked(model.attributes[i])) continue;
        loadWorkingAttribute(other, model, i);
        fields |= differingFields(sample, other);
    }
    return fields;
}

void copyFields(WorkingAttribute& to, const WorkingAttribute& from, AttributeFields fields)
{
    if (fields & fieldPlane) to.plane = from.plane;
    if (fields & fieldSort) to.sort = from.sort;
    if (fields & fieldTexture) to.texture = from.texture;
    if (fields & fieldColour) to.color = from.color;
    for (const auto& [field, bits] : flagFields)
        if (fields & field) to.flags = replaceBits(to.flags, bits, from.flags);
    for (std::size_t i = 0; i < 4; ++i)
        if (fields & gouraudField(i)) to.gouraud[i] = from.gouraud[i];
}

void applyFields(Model& model, const WorkingAttribute& working, AttributeFields fields,
                 PickedAfter after)
{
    WorkingAttribute edited;
    for (std::uint32_t i = 0; i < model.totalPolygonCount; ++i) {
        PolygonAttribute& attribute = model.attributes[i];
        if (!isPicked(attribute)) continue;
        loadWorkingAttribute(edited, model, i);
        copyFields(edited, working, fields);
        attribute.plane = edited.plane;
        attribute.sort = edited.sort;
        attribute.texture = edited.texture;
        attribute.color = edited.color;
        attribute.flags = edited.flags;
        if (after == PickedAfter::clear) attribute.flags &= ~std::uint32_t{picked};
        model.gouraud[i].color = edited.gouraud;
    }
}

std::optional<std::uint32_t> firstPicked(const Model& model)
{
    for (std::uint32_t i = 0; i < model.totalPolygonCount; ++i)
        if (isPicked(model.attributes[i])) return i;
    return std::nullopt;
}

} // namespace facetor
