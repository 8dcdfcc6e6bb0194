#pragma once

#include "model_builder.h"

namespace facetor::samples {

inline constexpr double islandRadius = 160, cityRadius = 58;
inline constexpr Point lakeCentre{78, 0, -74};
inline constexpr double lakeRadius = 34;

/// The square of a place's distance from a centre, seen from above.
double squaredDistance(double x, double z, Point centre);

/// Uneven ground: -1 to 1, eased between random values at the corners of squares.
double roughness(double x, double z, double square, std::uint32_t seed);

/// The ground's height above the city's level. Positive is up, unlike y.
double groundHeight(double x, double z);
Point onGround(double x, double z);

/// Adds the island's first part, and below it its underside with crystals.
void addGround(ModelBuilder& builder);

/// Fills the objects that are left with groves, and these with what takes all that the pools still
/// hold.
void addGroves(ModelBuilder& builder);

} // namespace facetor::samples
