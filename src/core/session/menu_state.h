#pragma once

#include "view/view_settings.h"
#include "view/view_tools.h"

#include <array>
#include <vector>

namespace facetor {

/// What the menu and the tool bar depend on.
struct MenuFacts {
    bool undoAvailable = false;
    bool canStepBack = false, canStepForward = false; ///< in the history
    bool isImported = false;                          ///< the model, from a file that is known
    bool hasImportReport = false;
    bool anyPicked = false; ///< at least one polygon is marked
    int zoom = 1;           ///< of the view
    bool anyHidden = false; ///< and at least one is out of sight
    bool toolBoxShown = false;
    bool attributesShown = false;
    bool hierarchyShown = false;
    bool texturesShown = false;
    bool budgetShown = false;
    bool drawOrderShown = false;
    bool sliceShown = false; ///< the picture that is to be sliced
    bool mixedShown = false; ///< in the attribute window
    bool resendsOnSave = false;
    bool watchesFiles = false;                 ///< that other programs write
    bool opensTextures = false;                ///< with a model
    ViewTool menuTool = ViewTool::rotateModel; ///< chosen last from the menu
    std::array<bool, cameraCount> cameraStored{};
};

/// How a command's menu item, and its button if it has one, are to look.
struct CommandState {
    int command;
    bool enabled;
    bool checked;

    bool operator==(const CommandState&) const = default;
};

/// The commands whose look changes while the program runs, in order of their numbers; every other
/// one keeps the look that the menu resource gives it.
std::vector<CommandState> menuState(const MenuFacts& facts);

/// What the menu and the tool bar of the texture list window depend on.
struct TextureMenuFacts {
    bool undoAvailable = false;
    bool aboveStart = false; ///< slots lie before the one in the first cell
    bool pasteAvailable = false;
    bool sliceShown = false; ///< behind the model
    bool watchesPictures = false;
};

/// The same of the texture list window.
std::vector<CommandState> textureMenuState(const TextureMenuFacts& facts);

/// The command of a view tool, and the tool of a command; needs one of the five tools' commands.
int commandOf(ViewTool tool);
ViewTool toolOf(int command);

} // namespace facetor
