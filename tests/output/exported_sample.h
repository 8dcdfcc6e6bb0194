#pragma once

#include "output/console_tables.h"

#include <span>

namespace facetor::test {

/// What the compiler made of an exported sample: its first object, and its Gouraud tables (none
/// where the sample has no polygon of the kind).
struct ExportedSample {
    const OBJECT* root;
    std::span<const GOURAUDTBL> lightTables, tableTables;
};

ExportedSample exportedShip();
ExportedSample exportedProp();
ExportedSample exportedMax();

} // namespace facetor::test
