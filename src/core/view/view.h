#pragma once

#include "base/angle.h"
#include "base/colour.h"
#include "base/geometry.h"
#include "engine/engine.h"
#include "engine/placed_texture.h"
#include "model/model.h"

#include <array>
#include <cstdint>
#include <optional>

namespace facetor {

/// Size of the main window's client area, in pixels.
struct ClientSize {
    std::int32_t width, height;
};

/// The client area as the view uses it: at most 640 x 489, at least 1 x 1 pixels.
ClientSize clampedClient(ClientSize client);

/// The six directions that the Camera menu offers.
enum class FixedView { forward, back, left, right, top, bottom };

/// How a frame is drawn while a view tool is being dragged.
enum class DragDrawMode : std::uint8_t { wire = 0, flat = 1, full = 2 };

/// The camera, and what the view remembers between frames.
struct View {
    Matrix viewMatrix = identityMatrix; ///< the whole camera transform
    Vector3 cameraPosition{0, 0, 700};
    Vector3 modelCentre{0, 0, 0};
    /// What turning and scaling keep in place; none: modelCentre.
    std::optional<Vector3> turnCentre;
    std::array<Angle, 3> modelRotation{};
    float viewScale = 1.0f;
    std::array<Angle, 3> viewDirection{}; ///< set by the fixed views
    std::array<Matrix, 4> cameras{};
    std::array<bool, 4> cameraStored{};
    bool perspective = true;
    Angle viewAngle = defaultViewAngle;
    Vector3 lightDirection{0.577f, 0.577f, 0.577f};
    Rgb555 lightColour = 0xFFFF;
    Rgb555 ambientColour = 0x8000;
    Rgb555 backgroundColour = 0x8010;
    DragDrawMode dragDrawMode = DragDrawMode::wire;
    bool dragging = false;
    bool frameNeedsDrawing = true;
    HiddenPolygons hidden;                     ///< of the model that was fitted last
    std::uint32_t drawnPolygons = allPolygons; ///< a frame draws so many of its list at most
};

enum class ViewDirectionUse { ignore, apply };

/// Rebuilds the view matrix: the camera position, less scale x model centre, the model rotation,
/// the view direction if it is to be applied (only the fixed views do), and the view scale. Uses
/// the engine's current matrix, and leaves it changed.
void buildViewMatrix(View& view, Engine& engine, ViewDirectionUse direction);

/// Directions and stored cameras cleared, the view matrix built.
void startView(View& view, Engine& engine);

/// Turns the view to one of the fixed directions.
void applyFixedView(View& view, Engine& engine, FixedView direction);

/// Moves and scales the view so that the model appears centred, as large as it can whichever way
/// the fixed views turn it, with the model rotation reset, and hides no polygon. A model without
/// points keeps centre and scale. Changes the current matrix and the engine's clip window.
void fitModel(View& view, Engine& engine, const Model& model, ClientSize client);

/// Makes the frame's polygon list anew: sets the surface's size, the clip window, the centre, the
/// draw flags and the light from the view, and walks the model.
void listFrame(View& view, Engine& engine, const Model& model, ClientSize client);

/// Draws the frame into the engine's surface if it needs it: lists it, clears to the background,
/// puts the picture behind the model if one is given, sorts, draws. What the window then shows is
/// the surface. Returns whether anything was drawn.
bool paintFrame(View& view, Engine& engine, const Model& model, ClientSize client,
                const PlacedTexture* picture = nullptr);

} // namespace facetor
