#pragma once

#include "engine/engine.h"
#include "model/model.h"
#include "view/view.h"

namespace facetor {

// Moves of the camera that belong to no tool. They keep the way in which the view is turned, and
// need an engine whose window, centre and focal length are those of the last frame listed.

/// The depth in view space of what a point of the client area shows: of the nearest polygon there,
/// or else of the model's nearest point, before which a zoom then ends. Needs a frame that was
/// listed and sorted for the model as it is.
float depthAt(const View& view, Engine& engine, const Model& model, ScreenPoint point);

/// Shows what is under `cursor` at a depth `factor` times as large, which must be positive; that
/// point stays where it is. A change beyond 1/50 or 50 times the fitted size does nothing. What is
/// nearer comes nearer still; the camera keeps as much of it in sight as it can.
void zoomAt(View& view, Engine& engine, const Model& model, ScreenPoint cursor, float depth,
            float factor);

/// Moves the model so that what is seen at a depth goes by so many pixels on the screen.
void panView(View& view, const Engine& engine, float depth, std::int32_t dx, std::int32_t dy);

enum class Framed { model, picked };

/// Moves and scales the view so that all shown objects, or the picked polygons of these, fill the
/// client area with a margin, and makes their middle the turn centre. False, with nothing changed,
/// when there are none. Changes the engine's current matrix.
bool frameView(View& view, Engine& engine, const Model& model, ClientSize client, Framed framed);

} // namespace facetor
