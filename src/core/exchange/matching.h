#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace facetor {

/// Two things that could be joined, and how good that would be.
struct Pair {
    std::uint32_t first, second;
    float quality; ///< more is better
};

/// Joins as many of `count` things two by two as can be, of good pairs first: a maximum matching of
/// the graph, begun with the best pairs. Returns for each thing its partner, or 0xFFFFFFFF.
std::vector<std::uint32_t> matchPairs(std::uint32_t count, std::span<const Pair> pairs);

} // namespace facetor
