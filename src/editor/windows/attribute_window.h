#pragma once

#include <cstdint>

namespace facetor {

struct Editor;

/// Opens the attribute window, where it was last, or closes it. The working attribute and the
/// current tab outlive the window.
void toggleAttributeWindow(Editor& editor);

/// Takes the attribute of a polygon that was picked as the working attribute, in place of edits
/// that were not applied, and shows it if the window is open. Needs polygonIndex <
/// model.totalPolygonCount.
void loadWorkingAttribute(Editor& editor, std::uint32_t polygonIndex);

/// Makes a slot of the texture list (0-4095) the working attribute's texture. The open window shows
/// it when Material is its current page, else when that page is shown next.
void setWorkingTexture(Editor& editor, std::uint16_t number);

/// Brings the open window up to date with the picked polygons, where it shows which fields are not
/// the same in all of them: what was not touched shows their values.
void showMixedValues(Editor& editor);

/// Makes the window show that, or no longer.
void toggleMixedValues(Editor& editor);

} // namespace facetor
