#pragma once

#include "base/angle.h"

namespace facetor {

// Table look-ups without interpolation, four decimals. The table covers a quarter turn without its
// end, 16384 entries; the other quarters are reflected about 65535 and 32767, one unit beside the
// exact mirror, as the console's pictures depend on.

/// From -1 to 1. Needs no particular range: full turns are taken off the magnitude.
float sine(Angle angle);

/// sine(angle + 16384)
float cosine(Angle angle);

/// sine / cosine, divided in double precision. Infinite or not a number where the cosine is 0.
double tangent(Angle angle);

} // namespace facetor
