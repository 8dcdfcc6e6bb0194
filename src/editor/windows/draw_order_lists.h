#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>
#include <string>

namespace facetor {

struct Editor;

// The texts of the drawing order window.

/// The polygon at a place of the list with its depth and rule; empty beyond the list.
std::string placeText(const Editor& editor, std::size_t place);

/// A row of the list of what writes a pixel: place, polygon, rule, depth.
std::string writerText(const Editor& editor, std::size_t row, int column);

/// A row of the list of pairs: the one that is drawn first, the one over it, the turn, what settles
/// it.
std::string pairText(const Editor& editor, std::size_t row, int column);

} // namespace facetor
