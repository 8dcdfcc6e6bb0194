#pragma once

#include "view/view.h"

#include <cstdint>

namespace facetor {

// What the view's commands and its Screen and Light dialogs compute.

inline constexpr std::size_t cameraCount = 4;

/// Keeps the view as stored camera `index`, 0 to 3.
void storeCamera(View& view, std::size_t index);

/// Brings a stored camera back. False, with nothing changed, when none was stored.
bool recallCamera(View& view, std::size_t index);

/// The range of the view angle's slider, in tens of degrees.
inline constexpr int leastSliderPosition = 3;
inline constexpr int mostSliderPosition = 12;

/// Where the slider stands for a view angle: trunc(degrees / 10) + 1, since an angle made by the
/// slider is a little less than its tens of degrees.
int sliderPosition(Angle viewAngle);
Angle viewAngleOf(int sliderPosition);

/// The light dialog's picker: an ellipse that fills a rectangle, in pixels.
struct LightPicker {
    InclusiveRectangle bounds; ///< right and bottom lie just outside

    ScreenPoint centre() const;
    bool contains(ScreenPoint point) const;
};

/// The side of the model that the light comes from.
enum class LightSide { fore, back };

/// Where the picker shows a direction.
ScreenPoint lightPoint(const LightPicker& picker, const Vector3& direction);

/// The unit direction of a picked point: its offset from the centre turned about, and a z that
/// grows linearly from the picker's rim to its centre, as on a cone.
Vector3 lightDirection(const LightPicker& picker, ScreenPoint point, LightSide side);

} // namespace facetor
