#include "view/view_settings.h"

#include <cmath>

namespace facetor {

namespace {

float halfWidth(const LightPicker& picker)
{
    return static_cast<float>(picker.bounds.right - picker.bounds.left) * 0.5f;
}

/// The offset of a direction's point along one axis: its share of the distance `z` stands for.
std::int32_t pointOffset(float distance, float along, float across)
{
    if (along == 0.0f) return 0;
    const float ratio = across / along;
    const float offset = std::sqrt(distance * distance / (ratio * ratio + 1.0f));
    return static_cast<std::int32_t>(along > 0.0f ? -offset : offset);
}

} // namespace

void storeCamera(View& view, std::size_t index)
{
    view.cameras[index] = view.viewMatrix;
    view.cameraStored[index] = true;
}

bool recallCamera(View& view, std::size_t index)
{
    if (!view.cameraStored[index]) return false;
    view.viewMatrix = view.cameras[index];
    view.frameNeedsDrawing = true;
    return true;
}

int sliderPosition(Angle viewAngle)
{
    return static_cast<int>(angleToDegrees(viewAngle) * 0.1f) + 1;
}

Angle viewAngleOf(int position)
{
    return degreesToAngle(static_cast<float>(position * 10));
}

ScreenPoint LightPicker::centre() const
{
    return {(bounds.left + bounds.right) / 2, (bounds.top + bounds.bottom) / 2};
}

bool LightPicker::contains(ScreenPoint point) const
{
    // (2 x - left - right)^2 / width^2 + (2 y - top - bottom)^2 / height^2 <= 1, in whole numbers.
    const std::int64_t width = bounds.right - bounds.left, height = bounds.bottom - bounds.top;
    const std::int64_t x = 2 * std::int64_t{point.x} - bounds.left - bounds.right;
    const std::int64_t y = 2 * std::int64_t{point.y} - bounds.top - bounds.bottom;
    if (std::abs(x) > width || std::abs(y) > height) return false;
    return x * x * height * height + y * y * width * width <= width * width * height * height;
}

ScreenPoint lightPoint(const LightPicker& picker, const Vector3& direction)
{
    const float distance = halfWidth(picker) * direction.z;
    const ScreenPoint centre = picker.centre();
    return {centre.x + pointOffset(distance, direction.x, direction.y),
            centre.y + pointOffset(distance, direction.y, direction.x)};
}

Vector3 lightDirection(const LightPicker& picker, ScreenPoint point, LightSide side)
{
    const ScreenPoint centre = picker.centre();
    const auto x = static_cast<float>(centre.x - point.x);
    const auto y = static_cast<float>(centre.y - point.y);
    float z = halfWidth(picker) - std::sqrt(x * x + y * y);
    if (side == LightSide::back) z = -z;
    const Vector3 direction = normalised({x, y, z});
    return isFinite(direction) ? direction : Vector3{0, 0, 1}; // a picker without any extent
}

} // namespace facetor
