#include "view/view_gestures.h"

#include "view/selection.h"
#include "view/visit_points.h"

#include <algorithm>
#include <cmath>

namespace facetor {

namespace {

/// Where the turn centre lies along z unless that brings something too near: where the view begins.
constexpr float usualDistance = View{}.cameraPosition.z;

/// How many times smaller or larger than fitted a zoom makes the model.
constexpr float mostMagnification = 50.0f;

/// What framing fills of half the client area. The bars cover some of its height.
constexpr float filledAcross = 0.9f;
constexpr float filledDown = 0.85f;

/// Of its distance, what a framed point may come nearer than the middle: about as much as in a
/// fitted view, so that framing does not make the perspective steeper.
constexpr float mostNearer = 0.54f;

/// A depth just behind the one before which polygons are dropped, as a factor of the focal length,
/// and one before that at which they are dropped for being too far.
constexpr float nearMargin = 1.01f;
constexpr float mostDepth = farLimit * 0.98f;

Vector3 centreInView(const View& view)
{
    return transformPoint(view.turnCentre.value_or(view.modelCentre), view.viewMatrix);
}

bool isParallel(const Engine& engine)
{
    return (engine.settings.drawFlags & drawParallel) != 0;
}

/// View units that a pixel stands for at a depth.
float unitsPerPixel(const Engine& engine, float depth)
{
    if (isParallel(engine)) return 1.0f;
    return std::max(depth, nearClampZ) / engine.settings.focalLength;
}

/// How large the model is seen at a depth, as a factor of the fitted size.
float magnification(const View& view, float depth)
{
    const float* x = view.viewMatrix.row(0);
    const float length = std::sqrt(x[0] * x[0] + x[1] * x[1] + x[2] * x[2]);
    return length * usualDistance / (view.viewScale * std::max(depth, nearClampZ));
}

/// The point in view space that a point of the client area shows at a depth.
Vector3 pointInView(const Engine& engine, ScreenPoint point, float depth)
{
    const float units = unitsPerPixel(engine, depth);
    const ScreenPoint centre = engine.settings.centre;
    return {static_cast<float>(point.x - centre.x) * units,
            static_cast<float>(point.y - centre.y) * units, depth};
}

/// Scales the view's whole space about a point of it.
void scaleAbout(Matrix& matrix, const Vector3& point, float factor)
{
    for (const std::size_t row : {0u, 1u, 2u, 3u})
        for (std::size_t column = 0; column < 3; ++column) matrix.row(row)[column] *= factor;
    float* moved = matrix.row(3);
    moved[0] += point.x * (1 - factor);
    moved[1] += point.y * (1 - factor);
    moved[2] += point.z * (1 - factor);
}

Extents extentsInView(const View& view, Engine& engine, const Model& model)
{
    Extents points;
    engine.stack.current() = view.viewMatrix;
    visitPoints(engine, model, [&](const Vector3& point) { points.widen(point); });
    return points;
}

/// Puts the camera at a distance at which no point is too near. In perspective, scaling about the
/// eye does that and leaves the picture as it is; in parallel projection a move along z.
void keepDistance(View& view, Engine& engine, const Model& model)
{
    const Extents points = extentsInView(view, engine, model);
    const float near = points.least.z, far = points.most.z;
    const float least = engine.settings.focalLength * nearMargin;
    if (points.isEmpty()) return;
    if (isParallel(engine)) {
        if (near < least) view.viewMatrix.row(3)[2] += least - near;
        return;
    }
    float factor = usualDistance / std::max(centreInView(view).z, nearClampZ);
    if (near * factor < least) factor = least / std::max(near, 1.0f);
    factor = std::min(factor, mostDepth / std::max(far, 1.0f));
    scaleAbout(view.viewMatrix, {0, 0, 0}, factor);
}

template <typename Visit>
void visitFramed(Engine& engine, const Model& model, Framed framed, Visit visit)
{
    if (framed == Framed::picked)
        visitPickedPoints(engine, model, visit);
    else
        visitPoints(engine, model, visit);
}

/// The largest scale at which a point, `offset` from a middle that lies at the usual distance,
/// appears within half a width or height on the screen.
float scaleToFit(const Engine& engine, float offset, float depthOffset, float half)
{
    const float across = std::abs(offset);
    const float room =
        isParallel(engine)
            ? across / half
            : (across * engine.settings.focalLength - half * depthOffset) / (half * usualDistance);
    return room > 0 ? 1 / room : INFINITY;
}

} // namespace

float depthAt(const View& view, Engine& engine, const Model& model, ScreenPoint point)
{
    const std::optional<std::uint32_t> hit = hitTest(engine, point, 0);
    if (!hit) {
        const Extents points = extentsInView(view, engine, model);
        return points.isEmpty() ? centreInView(view).z : std::max(points.least.z, nearClampZ);
    }
    const PolygonEntry& entry = engine.entries[*hit];
    Extents corners;
    for (const std::uint16_t corner : model.polygons[entry.attribute].corner)
        corners.widen(engine.viewVertices[entry.firstVertex + corner]);
    // Where the line of sight, from one depth to the next, meets the polygon's plane.
    const Vector3& onPlane =
        engine.viewVertices[entry.firstVertex + model.polygons[entry.attribute].corner[0]];
    const Vector3 from = pointInView(engine, point, corners.least.z);
    const Vector3 to = pointInView(engine, point, corners.least.z + 1);
    const float away =
        dotProduct(entry.normal, {onPlane.x - from.x, onPlane.y - from.y, onPlane.z - from.z});
    const float step = dotProduct(entry.normal, {to.x - from.x, to.y - from.y, to.z - from.z});
    const float depth = corners.least.z + away / step;
    // Seen from its edge, or bent, a polygon has no one depth; it lies between its corners.
    return std::isfinite(depth) ? std::clamp(depth, corners.least.z, corners.most.z)
                                : corners.middle().z;
}

void zoomAt(View& view, Engine& engine, const Model& model, ScreenPoint cursor, float depth,
            float factor)
{
    const float size = magnification(view, depth) * factor;
    if (factor > 1 ? size > mostMagnification : size * mostMagnification < 1) return;
    scaleAbout(view.viewMatrix, pointInView(engine, cursor, depth), factor);
    keepDistance(view, engine, model);
    view.frameNeedsDrawing = true;
}

void panView(View& view, const Engine& engine, float depth, std::int32_t dx, std::int32_t dy)
{
    const float units = unitsPerPixel(engine, depth);
    view.viewMatrix.row(3)[0] += static_cast<float>(dx) * units;
    view.viewMatrix.row(3)[1] += static_cast<float>(dy) * units;
    view.frameNeedsDrawing = true;
}

bool frameView(View& view, Engine& engine, const Model& model, ClientSize client, Framed framed)
{
    client = clampedClient(client);
    Extents box;
    engine.stack.current() = identityMatrix;
    visitFramed(engine, model, framed, [&](const Vector3& point) { box.widen(point); });
    if (box.isEmpty()) return false;

    const Vector3 middle = transformPoint(box.middle(), view.viewMatrix);
    const float halfWidth = static_cast<float>(client.width) / 2 * filledAcross;
    const float halfHeight = static_cast<float>(client.height) / 2 * filledDown;
    float scale = INFINITY;
    engine.stack.current() = view.viewMatrix;
    visitFramed(engine, model, framed, [&](const Vector3& point) {
        const float dz = point.z - middle.z;
        scale = std::min({scale, scaleToFit(engine, point.x - middle.x, dz, halfWidth),
                          scaleToFit(engine, point.y - middle.y, dz, halfHeight)});
        if (dz < 0) scale = std::min(scale, usualDistance * mostNearer / -dz);
    });
    if (!std::isfinite(scale)) scale = 1; // a single point
    scaleAbout(view.viewMatrix, {0, 0, 0}, scale);
    float* translation = view.viewMatrix.row(3);
    translation[0] -= middle.x * scale;
    translation[1] -= middle.y * scale;
    translation[2] += usualDistance - middle.z * scale;
    // What is nearer appears larger: the middle of the box is not that of what is seen of it.
    Extents seen;
    engine.stack.current() = view.viewMatrix;
    visitFramed(engine, model, framed, [&](const Vector3& point) {
        const float size = isParallel(engine) ? 1 : usualDistance / point.z;
        seen.widen({point.x * size, point.y * size, 0});
    });
    translation[0] -= seen.middle().x;
    translation[1] -= seen.middle().y;
    view.turnCentre = box.middle();
    keepDistance(view, engine, model);
    view.frameNeedsDrawing = true;
    return true;
}

} // namespace facetor
