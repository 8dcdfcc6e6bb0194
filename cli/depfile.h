#pragma once

#include "base/bytes.h"
#include "outputs.h"

#include <span>
#include <string>

namespace facetor {

/// A make rule with the outputs as targets and every file read as a prerequisite, each path once
/// and with GNU make's escapes. What went to the standard output is no target.
Bytes formatMakeRule(std::span<const std::string> filesRead, std::span<const Output> outputs);

} // namespace facetor
