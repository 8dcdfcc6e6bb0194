#pragma once

#include "attr/working_attribute.h"
#include "document/document.h"
#include "engine/engine.h"
#include "keep/keeper.h"
#include "keep/versions.h"
#include "plug_ins/plug_ins.h"
#include "session/import_memory.h"
#include "session/plug_in_list.h"
#include "session/recent_files.h"
#include "session/session_text.h"
#include "session/settings_text.h"
#include "state/command.h"
#include "state/target_windows.h"
#include "state/watching.h"
#include "state/window_state.h"
#include "ui/alert.h"
#include "ui/colour_picker.h"
#include "ui/file_dialog.h"
#include "ui/tab_pages.h"
#include "view/selection.h"
#include "view/view.h"
#include "view/view_settings.h"

#include <windows.h>

#include <commctrl.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace facetor {

/// A button of the mouse as the model view follows it.
enum class ButtonState : std::int8_t {
    outside = -1, ///< the cursor left the client area
    up = 0,
    down = 1,
};

/// The mouse over the model view, in pixels of the view.
struct DragState {
    ButtonState left = ButtonState::up;
    ButtonState right = ButtonState::up;
    ButtonState middle = ButtonState::up;
    POINT last{};    ///< where the cursor was last seen
    POINT delta{};   ///< how far the last move with the left button held went
    float depth = 0; ///< in view space, of what the middle button moves
};

/// The operating system's line, as the system itself numbers it. Every other number counts as nt.
enum class Platform : std::uint32_t {
    win32s = 0,   ///< a 16-bit host without the whole interface: the program does not run
    consumer = 1, ///< Windows 95 and its successors
    nt = 2,
};

/// What the light dialog remembers from one time to the next.
struct LightChoice {
    ScreenPoint point{}; ///< in the dialog's client pixels; (0, 0) until it is first shown
    LightSide side = LightSide::fore;
};

/// The file dialogs, each with the filter that was set in it last.
struct FileDialogs {
    FileDialog openModel{{{Word::modelFiles, "*.mx3"},
                          {Word::objFiles, "*.obj"},
                          {Word::gltfFiles, "*.gltf;*.glb"}}};
    FileDialog saveModel{{{Word::modelFiles, "*.mx3"}, {Word::modelSourceFiles, "*.mdl"}}};
    FileDialog openTextures{
        {{Word::textureListFiles, "*.mxt"}, {Word::textureSourceFiles, "*.txr"}}};
    FileDialog saveTextures{
        {{Word::textureListFiles, "*.mxt"}, {Word::textureSourceFiles, "*.txr"}}};
    FileDialog exportModel{.kinds = {{Word::objFiles, "*.obj"}, {Word::glbFiles, "*.glb"}},
                           .folder = {},
                           .defaultExtension = "obj"};
    FileDialog savePicture{
        .kinds = {{Word::pictureFiles, "*.png"}, {Word::pictureFilesCut, "*.png"}},
        .folder = {},
        .defaultExtension = "png"};
    FileDialog importTextures{}; ///< these two with the filters of the plug-ins
    FileDialog exportTextures{};
};

/// All there is, once in the process.
struct Editor {
    HINSTANCE instance = nullptr;
    Platform platform = Platform::nt;

    CommandRunner runCommand = nullptr; ///< how windows reach the commands

    Document document;
    Engine engine;
    View view;
    int zoom = 1; ///< pixels of the window that a pixel of the view takes, across and down
    DragState drag;
    RubberBand band;
    LightChoice light;
    SliceView slice;
    TransformSettings transforms;
    AlertState alerts;
    ColourPicking colourPicking;
    Rgb555 transparentColour = 0x8000; ///< of textures; bit 15 does not count
    int propertyTab = 0;               ///< the page of the property dialog that was shown last
    FileDialogs fileDialogs;
    PlugIns plugIns;
    LoadedPlugIns loadedPlugIns;
    ExportChoice exportChoice;
    ImportMemory imports;
    std::string importReport; ///< on the last import; empty before the first
    std::string statusLine;   ///< stands in the status bar until the next command; mostly empty

    std::array<std::string, 2> targetFolders; ///< for target images: the first that takes them
    bool resendsOnSave = false;               ///< what is saved is sent to the target as well
    Watching watching;
    ListWithModel listWithModel = ListWithModel::no;
    /// Whatever is said there: a list of its own is opened with the model.
    bool opensModelAlone = false;
    std::string settingsPath; ///< empty when no settings are kept
    SessionRecord session;    ///< as read; beside the settings
    SettingsRecord settings;  ///< as read; what belongs to no window of this run is written again
    VersionStore versions;    ///< without a folder nothing is kept
    bool keepsVersions = true;
    bool toldVersionNotKept = false; ///< in this run
    Keeper keeper;                   ///< of recovery files
    RecentFiles recentModels;
    RecentFiles recentTextures;

    HWND mainWindow = nullptr; ///< from its creation message to its destroy message
    HWND toolBar = nullptr;
    HWND statusBar = nullptr;
    ToolBox toolBox;
    TextureWindow textureWindow;
    HWND attributeWindow = nullptr; ///< while it is open
    WorkingAttribute workingAttribute;
    AttributeEditing attributeEditing;
    TabPages attributePages;        ///< of the attribute window; `current` also while it is closed
    HWND hierarchyWindow = nullptr; ///< while it is open
    std::vector<HTREEITEM> hierarchyItems; ///< of its tree, by object index
    bool treeLinked = false;               ///< with what is picked in the view
    BudgetWindow budget;
    DrawOrderWindow drawOrder;
    std::optional<FurtherStatus> furtherStatus; ///< none before the bar shows any
    HACCEL accelerators = nullptr;              ///< of the program's resources, which own it
    /// Open modeless dialogs that take the keyboard's dialog navigation, in the order in which the
    /// main loop offers them a message.
    std::vector<HWND> modelessDialogs;
};

/// Whether the document is there. After the main window's end it is released, while a question or a
/// dialog that was up at that time still returns to the command that asked.
inline bool isRunning(const Editor& editor)
{
    return editor.mainWindow != nullptr;
}

/// The one editor. Needs one that runs; only window procedures ask, and hand it on.
Editor& theEditor();

/// Makes `editor` the one that window procedures find; nullptr at the end of its life.
void setTheEditor(Editor* editor);

} // namespace facetor
