#pragma once

#include "get_color/chosen_colour.h"

#include <cstdint>
#include <vector>

namespace facetor {

// The parts of the dialog that are drawn: where things lie in them, in pixels of the part's client
// area, and what a point of them means.

struct PartSize {
    int width, height;
};

struct PartPoint {
    int x, y;
};

/// A run of pixels: the first, and the one behind the last.
struct PixelRun {
    int begin, end;
};

/// The pixels of cell `index` of `count` cells that share `length` pixels as evenly as they can.
PixelRun cellRun(int index, int count, int length);

/// The cell that holds pixel `at`; pixels outside count as the nearest inside. Needs length >= 1.
int cellAt(int at, int count, int length);

/// The hue and saturation at a point of the field, hue from left to right, saturation from top (1)
/// to bottom (0), with `value`. Points outside count as the nearest inside.
Hsv fieldHsv(PartPoint point, PartSize size, float value);

/// The point of the field that shows a hue and saturation.
PartPoint fieldPoint(const Hsv& hsv, PartSize size);

/// The field's pixels as 0x00RRGGBB, rows from the top, each in the 15-bit colour that a click
/// there gives at full value.
std::vector<std::uint32_t> drawField(PartSize size);

} // namespace facetor
