#include "view/view.h"

#include "engine/hierarchy.h"
#include "view/visit_points.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace facetor {

namespace {

/// How far along z the model is held while its extents are taken.
constexpr float fitDistance = 500.0f;

/// How far before the model the camera stands at the start, at which a model is fitted.
constexpr float startDistance = View{}.cameraPosition.z;

/// Room around the fitted model, as a factor of its extents.
constexpr float fitMargin = 1.2f;

/// How much smaller than the start distance shows them the extents are taken, which makes the
/// model larger in the window: as large as the depth test allows, which drops what comes nearer
/// than the focal length when a fixed view turns a long model's nose to the camera.
constexpr float sizeAcross = 0.8f;
constexpr float sizeDown = 0.9f;

/// The model's extents in screen units around the screen's centre. Each point enters by the circles
/// that it sweeps when the fixed views turn the model, so the model stays in view whichever way it
/// is turned, and the middle of the extents is the model's own.
Extents sweptExtents(Engine& engine, const Model& model)
{
    Extents box;
    visitPoints(engine, model, [&](const Vector3& point) { box.widen(point); });
    if (box.isEmpty()) return box;

    const Vector3 middle = box.middle();
    float acrossX = 0, acrossY = 0;
    visitPoints(engine, model, [&](const Vector3& point) {
        const float dx = point.x - middle.x, dy = point.y - middle.y, dz = point.z - middle.z;
        acrossX = std::max(acrossX, std::sqrt(dx * dx + dz * dz));
        acrossY = std::max(acrossY, std::sqrt(dy * dy + dz * dz));
    });

    const EngineSettings& settings = engine.settings;
    float size = 1.0f;
    if ((settings.drawFlags & drawParallel) == 0) size = settings.focalLength / startDistance;
    if (!(size > 0.0f) || !std::isfinite(size)) size = 1.0f;
    acrossX *= size * sizeAcross;
    acrossY *= size * sizeDown;
    const auto centreX = static_cast<float>(settings.centre.x);
    const auto centreY = static_cast<float>(settings.centre.y);
    return {{centreX + middle.x - acrossX, centreY + middle.y - acrossY, box.least.z},
            {centreX + middle.x + acrossX, centreY + middle.y + acrossY, box.most.z}};
}

void setWindow(Engine& engine, ClientSize client)
{
    engine.settings.window = {0, 0, client.width, client.height};
    engine.settings.centre = {client.width / 2, client.height / 2};
}

/// Gives the engine what the view's dialogs set: projection, view angle, light.
void applySettings(const View& view, Engine& engine)
{
    setViewAngle(engine, view.viewAngle);
    setDrawFlags(engine, drawParallel, !view.perspective);
    engine.settings.light.direction = view.lightDirection;
    setLightColour(engine.settings.light, view.lightColour);
    setAmbientColour(engine.settings.light, view.ambientColour);
    engine.settings.hidden = view.hidden;
    setDrawFlags(engine, drawWireframe, view.dragging && view.dragDrawMode == DragDrawMode::wire);
    setDrawFlags(engine, drawFlat, view.dragging && view.dragDrawMode == DragDrawMode::flat);
}

} // namespace

ClientSize clampedClient(ClientSize client)
{
    return {std::clamp(client.width, 1, surfaceMaxWidth),
            std::clamp(client.height, 1, surfaceMaxHeight)};
}

void buildViewMatrix(View& view, Engine& engine, ViewDirectionUse direction)
{
    MatrixStack& stack = engine.stack;
    stack.current() = identityMatrix;
    translate(stack, view.cameraPosition.x, view.cameraPosition.y, view.cameraPosition.z);
    translate(stack, -view.viewScale * view.modelCentre.x, -view.viewScale * view.modelCentre.y,
              -view.viewScale * view.modelCentre.z);
    rotateXYZ(stack, view.modelRotation[0], view.modelRotation[1], view.modelRotation[2]);
    if (direction == ViewDirectionUse::apply)
        rotateXYZ(stack, view.viewDirection[0], view.viewDirection[1], view.viewDirection[2]);
    scaleUniform(stack, view.viewScale);
    view.viewMatrix = stack.current();
    view.frameNeedsDrawing = true;
}

void startView(View& view, Engine& engine)
{
    view.viewDirection = {};
    view.cameraStored = {};
    buildViewMatrix(view, engine, ViewDirectionUse::ignore);
}

void applyFixedView(View& view, Engine& engine, FixedView direction)
{
    // One unit short of a half and of a quarter turn, as the menu's directions have always been.
    constexpr Angle half = 32767, quarter = 16383;
    switch (direction) {
    case FixedView::forward: view.viewDirection = {0, 0, 0}; break;
    case FixedView::back: view.viewDirection = {0, half, 0}; break;
    case FixedView::left: view.viewDirection = {0, -quarter, 0}; break;
    case FixedView::right: view.viewDirection = {0, quarter, 0}; break;
    case FixedView::top: view.viewDirection = {quarter, 0, 0}; break;
    case FixedView::bottom: view.viewDirection = {-quarter, 0, 0}; break;
    }
    view.turnCentre.reset();
    buildViewMatrix(view, engine, ViewDirectionUse::apply);
}

void fitModel(View& view, Engine& engine, const Model& model, ClientSize client)
{
    client = clampedClient(client);
    setWindow(engine, client);
    applySettings(view, engine);
    engine.stack.current() = identityMatrix;
    translateZ(engine.stack, fitDistance);
    Extents extents = sweptExtents(engine, model);
    view.modelRotation = {};
    view.turnCentre.reset();
    view.hidden.reset();
    if (!extents.isEmpty()) {
        const auto halfWidth = static_cast<float>(client.width / 2);
        const auto halfHeight = static_cast<float>(client.height / 2);
        extents.least.x -= halfWidth;
        extents.most.x -= halfWidth;
        extents.least.y -= halfHeight;
        extents.most.y -= halfHeight;
        const float ex = (extents.most.x - extents.least.x) * fitMargin;
        const float ey = (extents.most.y - extents.least.y) * fitMargin;
        const float scale = ey <= ex ? static_cast<float>(client.width * 2 / 4) / ex
                                     : static_cast<float>(client.height * 3 / 4) / ey;
        // A single point has no extent to be scaled to.
        view.viewScale = std::isfinite(scale) && scale > 0.0f ? scale : 1.0f;
        view.modelCentre = extents.middle();
        view.modelCentre.z -= fitDistance;
    }
    buildViewMatrix(view, engine, ViewDirectionUse::ignore);
}

void listFrame(View& view, Engine& engine, const Model& model, ClientSize client)
{
    client = clampedClient(client);
    setSurfaceSize(engine.surface, client.width, client.height);
    setWindow(engine, client);
    applySettings(view, engine);
    resetFrame(engine);
    engine.stack.current() = view.viewMatrix;
    walkHierarchy(engine, model, 0);
    engine.stack.current() = view.viewMatrix;
}

bool paintFrame(View& view, Engine& engine, const Model& model, ClientSize client,
                const PlacedTexture* picture)
{
    if (!view.frameNeedsDrawing) return false;
    listFrame(view, engine, model, client);
    clearSurface(engine.surface, view.backgroundColour);
    if (picture) drawPlacedTexture(engine.surface, *picture);
    sortPolygons(engine);
    drawPolygons(engine, model, view.drawnPolygons);
    view.frameNeedsDrawing = false;
    return true;
}

} // namespace facetor
