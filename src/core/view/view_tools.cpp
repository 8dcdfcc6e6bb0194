#include "view/view_tools.h"

#include <cstdlib>

namespace facetor {

namespace {

/// How far a move translates, in view units: always the same, however far the mouse moved.
constexpr float translationStep = 10.0f;
constexpr float shrinkFactor = 0.9f;
constexpr float growFactor = 1.1f;

/// A view-space direction in the frame of the current matrix.
Vector3 toModelSpace(const Matrix& matrix, const Vector3& direction)
{
    const Vector3 origin = transformPoint({0, 0, 0}, matrix);
    const auto axis = [&](const Vector3& end) {
        const Vector3 image = transformPoint(end, matrix);
        return normalised({image.x - origin.x, image.y - origin.y, image.z - origin.z});
    };
    return normalised({dotProduct(axis({1, 0, 0}), direction),
                       dotProduct(axis({0, 1, 0}), direction),
                       dotProduct(axis({0, 0, 1}), direction)});
}

/// Degrees about the line of sight: the way in which the move goes around the origin's image.
std::int32_t degreesAroundOrigin(const Engine& engine, const ToolMove& move)
{
    const ScreenPoint origin =
        projectPoint(engine.settings, transformPoint({0, 0, 0}, engine.stack.current()));
    if (std::abs(move.dx) < std::abs(move.dy)) return origin.x > move.cursor.x ? -move.dy : move.dy;
    return origin.y <= move.cursor.y ? -move.dx : move.dx;
}

void rotateModel(const View& view, Engine& engine, const ToolMove& move)
{
    Vector3 axis{0, 0, 1};
    std::int32_t degrees = 0;
    if (move.shift) {
        degrees = degreesAroundOrigin(engine, move);
    } else {
        axis = normalised({static_cast<float>(move.dy), static_cast<float>(-move.dx), 0});
        degrees = std::abs(move.dx) + std::abs(move.dy);
    }
    MatrixStack& stack = engine.stack;
    axis = toModelSpace(stack.current(), axis);
    const Vector3 centre = view.turnCentre.value_or(view.modelCentre);
    translate(stack, centre.x, centre.y, centre.z);
    rotateAxis(stack, axis, degreesToAngle(static_cast<float>(degrees)));
    translate(stack, -centre.x, -centre.y, -centre.z);
}

void translateModel(const View& view, Engine& engine, const ToolMove& move)
{
    const auto dx = static_cast<float>(move.dx), dy = static_cast<float>(move.dy);
    const Vector3 direction = normalised(move.shift ? Vector3{dx, 0, -dy} : Vector3{dx, dy, 0});
    const Vector3 v = toModelSpace(engine.stack.current(), direction);
    const float step = translationStep / view.viewScale;
    translate(engine.stack, v.x * step, v.y * step, v.z * step);
}

void scaleModel(const View& view, Engine& engine, const ToolMove& move)
{
    const std::int32_t longer = std::abs(move.dx) >= std::abs(move.dy) ? move.dx : move.dy;
    MatrixStack& stack = engine.stack;
    const Vector3 centre = view.turnCentre.value_or(view.modelCentre);
    translate(stack, centre.x, centre.y, centre.z);
    scaleUniform(stack, longer < 0 ? shrinkFactor : growFactor);
    translate(stack, -centre.x, -centre.y, -centre.z);
}

} // namespace

void applyViewTool(View& view, Engine& engine, ViewTool tool, const ToolMove& move)
{
    if (move.dx == 0 && move.dy == 0) return;
    engine.stack.current() = view.viewMatrix;
    switch (tool) {
    case ViewTool::rotateModel: rotateModel(view, engine, move); break;
    case ViewTool::translateModel: translateModel(view, engine, move); break;
    case ViewTool::scaleModel: scaleModel(view, engine, move); break;
    case ViewTool::selectPolygons:
    case ViewTool::moveSlicedTexture: return;
    }
    view.viewMatrix = engine.stack.current();
    view.frameNeedsDrawing = true;
}

} // namespace facetor
