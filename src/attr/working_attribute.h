#pragma once

#include "model/model.h"

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace facetor {

/// The pages of the attribute window, in the order of its tabs. Each shows a part of an attribute.
enum class AttributePage {
    material, ///< kind of polygon, light, colour, texture and its flips
    mode,     ///< mesh, and how the colour meets what lies below
    zSort,    ///< the point by which the polygon is sorted
    gouraud,  ///< Gouraud shading, light, the four colours
    option,   ///< one or two sides, near clip
};

inline constexpr int attributePageCount = 5;

/// What the attribute window edits, before it is applied to any polygon. One of it in the program;
/// it lives on while the window is closed.
struct WorkingAttribute {
    std::uint16_t plane = 0;
    std::uint16_t sort = sortCentre;
    std::uint16_t texture = 0;
    Rgb555 color = 0xFFFF;
    std::uint32_t flags = polygonFace | useLight;
    std::array<Rgb555, 4> gouraud = {0xC210, 0xC210, 0xC210, 0xC210};
};

/// Takes attribute and Gouraud colours of a polygon. Needs polygonIndex < model.totalPolygonCount.
void loadWorkingAttribute(WorkingAttribute& working, const Model& model,
                          std::uint32_t polygonIndex);

/// Gives every picked polygon what `page` shows of the working attribute, and nothing else of it.
void applyAttributePage(Model& model, const WorkingAttribute& working, AttributePage page,
                        PickedAfter after);

/// The number in the field of the texture: decimal, a slot of the texture list (0-4095), perhaps
/// with blanks around it. None for everything else: a model with another slot could be saved but
/// not opened again.
std::optional<std::uint16_t> parseTextureNumber(std::string_view text);

// The controls of the pages, by their numbers. Exactly one of the radio buttons of a group is
// checked, whatever the flags of a file are.

/// The check boxes and radio buttons of a page.
std::span<const int> pageButtons(AttributePage page);

/// Whether a check box or radio button is checked; false for every other control.
bool isButtonChecked(const WorkingAttribute& working, int control);

/// Checks a radio button, or checks or clears a check box, `checked` being its new state. False,
/// with nothing changed, for every other control.
bool setButton(WorkingAttribute& working, int control, bool checked);

/// The colour that a colour button shows and changes; nullptr for every other control.
Rgb555* colourOfButton(WorkingAttribute& working, int control);

} // namespace facetor
