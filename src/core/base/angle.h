#pragma once

#include <cstdint>

namespace facetor {

/// Angle units in a full turn; an Angle is a signed count of them.
inline constexpr std::int32_t fullTurn = 65536;
using Angle = std::int32_t;

/// Units a degree and degrees a unit, as the editor's dialogs and files use them. They are no exact
/// inverses: 16384 units are written as 89.997314 degrees and read back as 16383 units. That drift,
/// on each save and load, belongs to the format: at most one unit up to half a turn and two up to a
/// whole one, always toward zero.
inline constexpr float unitsPerDegree = 182.0444f;
inline constexpr float degreesPerUnit = 0.005493f;

/// True when degreesToAngle() can take the value: a number whose angle fits 32 bits. Since
/// unitsPerDegree lies below 65536 / 360 a few degrees more than 32768 turns do, -11796483 to
/// 11796482.
bool isConvertibleDegrees(float degrees);

/// Degrees to angle units, truncated toward zero. Needs isConvertibleDegrees(degrees).
Angle degreesToAngle(float degrees);

/// Angle units to degrees, rounded to a float.
float angleToDegrees(Angle angle);

} // namespace facetor
