#include "output/exported_sample.h"

#include <cstddef> // NULL, which the exported sources name

// The sources that facetor-cli made of the samples, each in a namespace of its own. Their tables
// are flat lists of numbers, as the console's macros expect.
#pragma GCC diagnostic ignored "-Wmissing-field-initializers"

namespace {

namespace ship {
#include "ship.mdl"
}
#undef GRreal
#undef GRtbl
namespace prop {
#include "prop.mdl"
}
#undef GRreal
#undef GRtbl
namespace max {
#include "max.mdl"
}
#undef GRreal
#undef GRtbl

} // namespace

namespace facetor::test {

ExportedSample exportedShip()
{
    return {ship::object_Hull, ship::grreal_ship, ship::grtbl_ship};
}

ExportedSample exportedProp()
{
    return {prop::object_Chest, prop::grreal_prop, {}};
}

ExportedSample exportedMax()
{
    return {max::object_Island, max::grreal_max, max::grtbl_max};
}

} // namespace facetor::test
