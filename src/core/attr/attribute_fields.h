#pragma once

#include "attr/working_attribute.h"

#include <cstdint>
#include <optional>

namespace facetor {

/// The single values that the attribute window shows, as bits.
enum AttributeField : std::uint32_t {
    fieldPlane = 0x0001,
    fieldSort = 0x0002,
    fieldTexture = 0x0004,
    fieldColour = 0x0008,
    fieldMaterial = 0x0010, ///< the kind of polygon
    fieldMode = 0x0020,     ///< how the colour meets what lies below
    fieldUseLight = 0x0040,
    fieldFlipHorizontal = 0x0080,
    fieldFlipVertical = 0x0100,
    fieldMesh = 0x0200,
    fieldGouraud = 0x0400,
    fieldNearClip = 0x0800,
    fieldGouraudColour = 0x1000, ///< of corner 0; those of corners 1 to 3 are the next three bits
};
using AttributeFields = std::uint32_t; ///< some of them

inline constexpr AttributeFields allAttributeFields = 0xFFFF;

/// The fields in which two attributes differ. Bit 15 of colours does not count.
AttributeFields differingFields(const WorkingAttribute& a, const WorkingAttribute& b);

/// The fields that are not the same in all picked polygons.
AttributeFields mixedFields(const Model& model);

/// Takes some fields, and nothing else, of another attribute.
void copyFields(WorkingAttribute& to, const WorkingAttribute& from, AttributeFields fields);

/// Gives every picked polygon some fields of the working attribute, and nothing else of it.
void applyFields(Model& model, const WorkingAttribute& working, AttributeFields fields,
                 PickedAfter after);

/// The first picked polygon; none when none is.
std::optional<std::uint32_t> firstPicked(const Model& model);

} // namespace facetor
