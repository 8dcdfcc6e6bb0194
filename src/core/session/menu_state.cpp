#include "session/menu_state.h"

#include "session/command_numbers.h"
#include "session/session_text.h"

#include <algorithm>
#include <cassert>
#include <iterator>

namespace facetor {

namespace {

/// In the order of ViewTool.
constexpr int toolCommands[] = {IDM_TOOL_ROTATE, IDM_TOOL_TRANSLATE, IDM_TOOL_SCALE,
                                IDM_TOOL_SELECT, IDM_TOOL_MOVE_SLICE};
static_assert(std::size(toolCommands) == static_cast<std::size_t>(ViewTool::moveSlicedTexture) + 1);

} // namespace

std::vector<CommandState> menuState(const MenuFacts& facts)
{
    std::vector<CommandState> states{{IDM_VIEW_ATTRIBUTES, true, facts.attributesShown},
                                     {IDM_VIEW_HIERARCHY, true, facts.hierarchyShown},
                                     {IDM_EDIT_UNDO, facts.undoAvailable, false},
                                     {IDM_VIEW_TEXTURES, true, facts.texturesShown}};
    for (int i = 0; const bool stored : facts.cameraStored)
        states.push_back({IDM_CAMERA_RECALL_1 + i++, stored, false});
    states.insert(states.end(), {{IDM_INVERT_SURFACE, facts.anyPicked, false},
                                 {IDM_SELECT_MODEL, facts.anyPicked, false},
                                 {IDM_SELECT_ALL, true, false},
                                 {IDM_SELECT_CLEAR, facts.anyPicked, false},
                                 {IDM_SELECT_MATERIAL, facts.anyPicked, false}});
    for (const int command : toolCommands)
        states.push_back({command, command != IDM_TOOL_MOVE_SLICE || facts.sliceShown,
                          command == commandOf(facts.menuTool)});
    states.insert(states.end(), {{IDM_VIEW_TOOL_BOX, true, facts.toolBoxShown},
                                 {IDM_EDIT_STEP_BACK, facts.canStepBack, false},
                                 {IDM_EDIT_STEP_FORWARD, facts.canStepForward, false},
                                 {IDM_FILE_IMPORT_AGAIN, facts.isImported, false},
                                 {IDM_FILE_IMPORT_REPORT, facts.hasImportReport, false},
                                 {IDM_FILE_WATCH, true, facts.watchesFiles},
                                 {IDM_FILE_WITH_TEXTURES, true, facts.opensTextures},
                                 {IDM_SEND_ON_SAVE, true, facts.resendsOnSave},
                                 {IDM_VIEW_BUDGET, true, facts.budgetShown},
                                 {IDM_VIEW_DRAW_ORDER, true, facts.drawOrderShown},
                                 {IDM_VIEW_FIT_PICKED, facts.anyPicked, false}});
    for (int command = IDM_SELECT_GROW; command <= IDM_HIDE_PICKED; ++command)
        states.push_back({command, facts.anyPicked, false});
    states.push_back({IDM_SHOW_HIDDEN, facts.anyHidden, false});
    states.push_back({IDM_SHOW_MIXED, true, facts.mixedShown});
    for (int zoom = 1; zoom <= mostViewZoom; ++zoom)
        states.push_back({IDM_VIEW_ZOOM_1 + zoom - 1, true, zoom == facts.zoom});
    return states;
}

std::vector<CommandState> textureMenuState(const TextureMenuFacts& facts)
{
    return {{IDM_TEXTURE_LINE_UP, facts.aboveStart, false},
            {IDM_TEXTURE_PAGE_UP, facts.aboveStart, false},
            {IDM_TEXTURE_UNDO, facts.undoAvailable, false},
            {IDM_TEXTURE_PASTE, facts.pasteAvailable, false},
            {IDM_TEXTURE_EMPTY_CLIPBOARD, facts.pasteAvailable, false},
            {IDM_TEXTURE_SHOW_SLICED, true, facts.sliceShown},
            {IDM_TEXTURE_WATCH, true, facts.watchesPictures}};
}

int commandOf(ViewTool tool)
{
    return toolCommands[static_cast<std::size_t>(tool)];
}

ViewTool toolOf(int command)
{
    const auto* found = std::ranges::find(toolCommands, command);
    assert(found != std::end(toolCommands));
    return static_cast<ViewTool>(found - toolCommands);
}

} // namespace facetor
