#include "windows/view_gestures.h"

#include "session/view_keys.h"
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

void turnView(Editor& editor, POINT delta)
{
    applyViewTool(editor.view, editor.engine, ViewTool::rotateModel, {delta.x, delta.y, {}, false});
}

float depthUnder(Editor& editor, POINT position)
{
    const Model& model = editor.document.model;
    listFrame(editor.view, editor.engine, model, viewSize(editor));
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
    screen = viewPosition(editor, screen);
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

bool onCommandKey(Editor& editor, WPARAM key)
{
    if (isKeyDown(VK_CONTROL) || editor.view.dragging) return false;
    const int command = viewKeyCommand(static_cast<unsigned>(key), isKeyDown(VK_SHIFT));
    return command != 0 && editor.runCommand(editor, CommandWindow::main, command, 0);
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
    const ClientSize client = viewSize(editor);
    listFrame(editor.view, editor.engine, editor.document.model, client); // the window's own size
    if (frameView(editor.view, editor.engine, editor.document.model, client, framed))
        requestRedraw(editor);
}

} // namespace facetor
