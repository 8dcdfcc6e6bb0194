#pragma once

#include "get_color/dialog_parts.h"

#include <windows.h>

namespace facetor {

// A part of the colour dialog: a child window that its dialog draws, with a frame, a mark for the
// focus and a mouse that can be dragged. What it shows and does is the dialog's affair, to which it
// sends these messages; the first argument is its control number.

inline constexpr char colourPartClass[] = "FacetorColourPart";

/// Draw the part; the second argument points to a PartPaint.
inline constexpr UINT messageDrawPart = WM_APP;
/// The mouse was pressed or dragged; the second argument points to a PartPointing.
inline constexpr UINT messagePartPoint = WM_APP + 1;
/// A key was pressed; the second argument is its virtual key code.
inline constexpr UINT messagePartKey = WM_APP + 2;

/// The inside of a part's frame, whose top-left pixel is the device context's origin.
struct PartPaint {
    HDC dc;
    PartSize size;
};

/// Where the mouse is, in pixels of the inside; while it is dragged, that may be outside.
struct PartPointing {
    PartPoint point;
    PartSize size;
};

/// Registers the class of the parts for a module, until the scope ends: the class must not outlive
/// the code of its procedure.
class ColourPartClass {
public:
    explicit ColourPartClass(HINSTANCE instance);
    ~ColourPartClass();
    ColourPartClass(const ColourPartClass&) = delete;
    ColourPartClass& operator=(const ColourPartClass&) = delete;

private:
    HINSTANCE instance_;
};

} // namespace facetor
