#pragma once

#include "base/colour.h"

#include <array>
#include <cstdint>
#include <span>

namespace facetor {

/// The colours chosen last, newest first. Its bytes are shared between calls of the module, so that
/// whoever reads one does not rely on its count.
struct RecentColours {
    std::array<Rgb555, 16> colours{};
    std::uint32_t count = 0;
};

/// Those in use, whatever the count says.
std::span<const Rgb555> inUse(const RecentColours& recent);

/// Puts a colour first, without bit 15; it moves there if it is among them. The oldest drops off
/// when all are in use.
void remember(RecentColours& recent, Rgb555 colour);

} // namespace facetor
