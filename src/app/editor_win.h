#pragma once

#include "engine/engine.h"
#include "model/model.h"
#include "texture/texture_list.h"
#include "ui/alert_win.h"
#include "view/view.h"

#include <windows.h>

#include <cstdint>
#include <vector>

namespace facetor {

/// What is being edited. The model file's path is not here: the main window's title holds it.
struct Document {
    Model model;
    TextureList textures;
    bool modelChanged = false;
    bool texturesChanged = false;
};

/// A button of the mouse as the model view follows it.
enum class ButtonState : std::int8_t {
    outside = -1, ///< the cursor left the client area
    up = 0,
    down = 1,
};

/// The mouse over the model view, in client pixels.
struct DragState {
    ButtonState left = ButtonState::up;
    ButtonState right = ButtonState::up;
    POINT last{};  ///< where the cursor was last seen
    POINT delta{}; ///< how far the last move with the left button held went
};

/// The operating system's line, as the system itself numbers it. Every other number counts as nt.
enum class Platform : std::uint32_t {
    win32s = 0,   ///< a 16-bit host without the whole interface: the program does not run
    consumer = 1, ///< Windows 95 and its successors
    nt = 2,
};

/// All there is, once in the process.
struct Editor {
    HINSTANCE instance = nullptr;
    Platform platform = Platform::nt;

    Document document;
    Engine engine;
    View view;
    DragState drag;
    AlertState alerts;

    HWND mainWindow = nullptr; ///< from its creation message to its destroy message
    HWND statusBar = nullptr;
    HACCEL accelerators = nullptr; ///< of the program's resources, which own it
    /// Open modeless dialogs that take the keyboard's dialog navigation, in the order in which the
    /// main loop offers them a message.
    std::vector<HWND> modelessDialogs;
};

/// The one editor. Needs one that runs; only window procedures ask, and hand it on.
Editor& theEditor();

/// Makes `editor` the one that window procedures find; nullptr at the end of its life.
void setTheEditor(Editor* editor);

} // namespace facetor
