#include "windows/view_gestures.h"

#include "resources/resource_ids.h"
#include "state/editor.h"
#include "ui/window_data.h"
#include "view/view_tools.h"
#include "windows/model_view_window.h"

#include <cmath>

namespace facetor {

namespace {

/// How much larger a notch of the wheel makes the model.
constexpr float notchFactor = 1.15f;

/// Degrees that an arrow key turns.
constexpr LONG turnStep = 5;
constexpr LONG fastTurnStep = 45;

/// The views from the sides as they lie on the number pad.
constexpr int padCommands[] = {IDM_CAMERA_BACK, 0, IDM_CAMERA_BOTTOM, 0, IDM_CAMERA_LEFT,
                               IDM_CAMERA_FORWARD, IDM_CAMERA_RIGHT, 0, IDM_CAMERA_TOP, 0};

void turnView(Editor& editor, POINT delta)
{
    applyViewTool(editor.view, editor.engine, ViewTool::rotateModel,
                  {delta.x, delta.y, {}, false});
}

float depthUnder(Editor& editor, POINT position)
{
    const Model& model = editor.document.model;
    listFrame(editor.view, editor.engine, model, clientSize(editor.mainWindow));
    sortPolygons(editor.engine);
    return depthAt(editor.view, editor.engine, model, {position.x, position.y});
}

} // namespace

void onWheel(Editor& editor, int turn, POINT screen)
{
    if (editor.drag.left == ButtonState::down) return;
    RECT client{};
    GetClientRect(editor.mainWindow, &client);
    ScreenToClient(editor.mainWindow, &screen);
    if (!PtInRect(&client, screen)) return;
    const float notches = static_cast<float>(turn) / WHEEL_DELTA;
    zoomAt(editor.view, editor.engine, editor.document.model, {screen.x, screen.y},
           depthUnder(editor, screen), std::pow(notchFactor, notches));
    requestRedraw(editor);
}

void onMiddleButtonDown(Editor& editor, POINT position)
{
    editor.drag.last = position;
    if (editor.drag.left == ButtonState::down) return;
    editor.drag.middle = ButtonState::down;
    editor.drag.depth = depthUnder(editor, position);
    editor.view.dragging = true;
    SetCapture(editor.mainWindow); // a drag may leave the window
    requestRedraw(editor);
}

void onMiddleButtonUp(Editor& editor)
{
    if (editor.drag.middle != ButtonState::down) return;
    editor.drag.middle = ButtonState::up;
    editor.view.dragging = editor.drag.left == ButtonState::down;
    if (GetCapture() == editor.mainWindow) ReleaseCapture();
    requestRedraw(editor);
}

void onMiddleDrag(Editor& editor, POINT delta, WPARAM keys)
{
    if (!(keys & MK_MBUTTON)) return onMiddleButtonUp(editor); // released over another window
    if (keys & MK_CONTROL || isKeyDown(VK_MENU))
        turnView(editor, delta);
    else
        panView(editor.view, editor.engine, editor.drag.depth, delta.x, delta.y);
    requestRedraw(editor);
}

bool onFramingKey(Editor& editor, WPARAM key)
{
    int command = 0;
    if (key == 'F' && !isKeyDown(VK_CONTROL))
        command = isKeyDown(VK_SHIFT) ? IDM_VIEW_FIT_PICKED : IDM_VIEW_FIT;
    else if (key >= VK_NUMPAD0 && key <= VK_NUMPAD9)
        command = padCommands[key - VK_NUMPAD0];
    if (command == 0) return false;
    SendMessageA(editor.mainWindow, WM_COMMAND, static_cast<WPARAM>(command), 0);
    return true;
}

void onTurningKey(Editor& editor, WPARAM key)
{
    const std::optional<POINT> direction = arrowDirection(key);
    if (!direction || editor.view.dragging) return;
    const LONG step = isKeyDown(VK_SHIFT) ? fastTurnStep : turnStep;
    turnView(editor, {direction->x * step, direction->y * step});
    requestRedraw(editor);
}

void frameInView(Editor& editor, Framed framed)
{
    const ClientSize client = clientSize(editor.mainWindow);
    listFrame(editor.view, editor.engine, editor.document.model, client); // the window's own size
    if (frameView(editor.view, editor.engine, editor.document.model, client, framed))
        requestRedraw(editor);
}

} // namespace facetor
