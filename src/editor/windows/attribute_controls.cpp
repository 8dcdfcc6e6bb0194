#include "windows/attribute_controls.h"

#include "resources/resource_ids.h"

#include <algorithm>
#include <iterator>

namespace facetor {

namespace {

/// A control that stands for the value of a field, or for bits of the flags.
struct ButtonValue {
    int control;
    std::uint32_t value;
};

constexpr ButtonValue checkBoxes[] = {
    {IDC_ATTRIBUTE_USE_LIGHT, useLight},     {IDC_ATTRIBUTE_FLIP_H, flipHorizontal},
    {IDC_ATTRIBUTE_FLIP_V, flipVertical},    {IDC_ATTRIBUTE_MESH, meshMode},
    {IDC_ATTRIBUTE_GOURAUD, gouraudShading}, {IDC_ATTRIBUTE_NEAR_CLIP, nearClip},
};

// Radio buttons. Of several material or mode bits, which only a file can have set, the first one
// here counts; what fits no button is shown as the last one.
constexpr ButtonValue materials[] = {
    {IDC_ATTRIBUTE_POLYLINE, polyLine},
    {IDC_ATTRIBUTE_TEXTURE_MAP, textureMap},
    {IDC_ATTRIBUTE_POLYGON, polygonFace},
};
constexpr ButtonValue modes[] = {
    {IDC_ATTRIBUTE_SHADOW, shadowMode},
    {IDC_ATTRIBUTE_HALF, halfMode},
    {IDC_ATTRIBUTE_TRANSLUCENT, translucentMode},
    {IDC_ATTRIBUTE_REPLACE, 0},
};
constexpr ButtonValue sorts[] = {
    {IDC_ATTRIBUTE_NEAREST, sortNearest},
    {IDC_ATTRIBUTE_FARTHEST, sortFarthest},
    {IDC_ATTRIBUTE_CENTRE, sortCentre},
};
constexpr ButtonValue planes[] = {
    {IDC_ATTRIBUTE_DUAL, dualPlaneBit},
    {IDC_ATTRIBUTE_SINGLE, 0},
};

template <std::size_t count>
const ButtonValue* findButton(const ButtonValue (&buttons)[count], int control)
{
    const auto* found = std::ranges::find(buttons, control, &ButtonValue::control);
    return found != std::end(buttons) ? found : nullptr;
}

/// The checked one of a group of radio buttons that stand for bits of the flags.
template <std::size_t count>
int checkedByBits(const ButtonValue (&buttons)[count], std::uint32_t flags)
{
    const auto* found =
        std::ranges::find_if(buttons, [&](const ButtonValue& b) { return (flags & b.value) != 0; });
    return found != std::end(buttons) ? found->control : buttons[count - 1].control;
}

/// The checked one of a group of radio buttons that stand for values of one field.
template <std::size_t count>
int checkedByValue(const ButtonValue (&buttons)[count], std::uint32_t value)
{
    const auto* found = std::ranges::find(buttons, value, &ButtonValue::value);
    return found != std::end(buttons) ? found->control : buttons[count - 1].control;
}

} // namespace

std::span<const int> pageButtons(AttributePage page)
{
    static constexpr int material[] = {IDC_ATTRIBUTE_POLYGON,     IDC_ATTRIBUTE_POLYLINE,
                                       IDC_ATTRIBUTE_TEXTURE_MAP, IDC_ATTRIBUTE_USE_LIGHT,
                                       IDC_ATTRIBUTE_FLIP_H,      IDC_ATTRIBUTE_FLIP_V};
    static constexpr int mode[] = {IDC_ATTRIBUTE_REPLACE, IDC_ATTRIBUTE_SHADOW, IDC_ATTRIBUTE_HALF,
                                   IDC_ATTRIBUTE_TRANSLUCENT, IDC_ATTRIBUTE_MESH};
    static constexpr int zSort[] = {IDC_ATTRIBUTE_CENTRE, IDC_ATTRIBUTE_NEAREST,
                                    IDC_ATTRIBUTE_FARTHEST};
    static constexpr int gouraud[] = {IDC_ATTRIBUTE_GOURAUD, IDC_ATTRIBUTE_USE_LIGHT};
    static constexpr int option[] = {IDC_ATTRIBUTE_SINGLE, IDC_ATTRIBUTE_DUAL,
                                     IDC_ATTRIBUTE_NEAR_CLIP};
    switch (page) {
    case AttributePage::material: return material;
    case AttributePage::mode: return mode;
    case AttributePage::zSort: return zSort;
    case AttributePage::gouraud: return gouraud;
    case AttributePage::option: return option;
    }
    return {};
}

bool isButtonChecked(const WorkingAttribute& working, int control)
{
    if (const ButtonValue* box = findButton(checkBoxes, control))
        return (working.flags & box->value) != 0;
    return control == checkedByBits(materials, working.flags) ||
           control == checkedByBits(modes, working.flags) ||
           control == checkedByValue(sorts, working.sort) ||
           control == checkedByValue(planes, working.plane);
}

bool setButton(WorkingAttribute& working, int control, bool checked)
{
    if (const ButtonValue* box = findButton(checkBoxes, control))
        working.flags = replaceBits(working.flags, box->value, checked ? box->value : 0);
    else if (const ButtonValue* material = findButton(materials, control))
        working.flags = replaceBits(working.flags, materialBits, material->value);
    else if (const ButtonValue* mode = findButton(modes, control))
        working.flags = replaceBits(working.flags, modeBits, mode->value);
    else if (const ButtonValue* sort = findButton(sorts, control))
        working.sort = static_cast<std::uint16_t>(sort->value);
    else if (const ButtonValue* plane = findButton(planes, control))
        working.plane = static_cast<std::uint16_t>(plane->value);
    else
        return false;
    return true;
}

bool isCheckBox(int control)
{
    return findButton(checkBoxes, control) != nullptr;
}

AttributeFields fieldOf(int control)
{
    constexpr ButtonValue fields[] = {
        {IDC_ATTRIBUTE_USE_LIGHT, fieldUseLight},  {IDC_ATTRIBUTE_FLIP_H, fieldFlipHorizontal},
        {IDC_ATTRIBUTE_FLIP_V, fieldFlipVertical}, {IDC_ATTRIBUTE_MESH, fieldMesh},
        {IDC_ATTRIBUTE_GOURAUD, fieldGouraud},     {IDC_ATTRIBUTE_NEAR_CLIP, fieldNearClip},
        {IDC_ATTRIBUTE_TEXTURE, fieldTexture},     {IDC_ATTRIBUTE_COLOUR, fieldColour},
    };
    if (const ButtonValue* field = findButton(fields, control)) return field->value;
    if (findButton(materials, control)) return fieldMaterial;
    if (findButton(modes, control)) return fieldMode;
    if (findButton(sorts, control)) return fieldSort;
    if (findButton(planes, control)) return fieldPlane;
    if (control >= IDC_ATTRIBUTE_COLOUR_0 && control <= IDC_ATTRIBUTE_COLOUR_3)
        return AttributeFields{fieldGouraudColour} << (control - IDC_ATTRIBUTE_COLOUR_0);
    return 0;
}

Rgb555* colourOfButton(WorkingAttribute& working, int control)
{
    if (control == IDC_ATTRIBUTE_COLOUR) return &working.color;
    const int corner = control - IDC_ATTRIBUTE_COLOUR_0;
    const bool gouraud = corner >= 0 && control <= IDC_ATTRIBUTE_COLOUR_3;
    return gouraud ? &working.gouraud[static_cast<std::size_t>(corner)] : nullptr;
}

} // namespace facetor
