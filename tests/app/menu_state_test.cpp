#include "app/menu_state.h"

#include "resources/resource_ids.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace facetor {

namespace {

CommandState stateOf(const MenuFacts& facts, int command)
{
    const std::vector<CommandState> states = menuState(facts);
    const auto found = std::ranges::find(states, command, &CommandState::command);
    return found == states.end() ? CommandState{} : *found;
}

TEST(MenuState, EachFactTurnsItsOwnCommandsAndNoOther)
{
    struct Case {
        const char* name;
        MenuFacts facts;
        std::vector<CommandState> changed; ///< against the start
    };
    const Case cases[] = {
        {"an edit to undo", {.undoAvailable = true}, {{40014, true, false}}},
        {"marked polygons",
         {.anyPicked = true},
         {{40070, true, false}, {40090, true, false}, {40092, true, false}, {40093, true, false}}},
        {"the attribute window", {.attributesShown = true}, {{40008, true, true}}},
        {"the hierarchy window", {.hierarchyShown = true}, {{40009, true, true}}},
        {"the texture list window", {.texturesShown = true}, {{40030, true, true}}},
        {"the tool box", {.toolBoxShown = true}, {{40125, true, true}}},
        {"a stored camera", {.cameraStored = {false, false, true, false}}, {{40052, true, false}}},
        {"a tool", {.menuTool = ViewTool::scaleModel}, {{40103, true, false}, {40105, true, true}}},
        {"a picture to be sliced", {.sliceShown = true}, {{40108, true, false}}},
    };
    const std::vector<CommandState> start = menuState({});
    for (const Case& current : cases) {
        SCOPED_TRACE(current.name);
        const std::vector<CommandState> now = menuState(current.facts);
        ASSERT_EQ(now.size(), start.size());
        std::vector<CommandState> changed;
        for (std::size_t i = 0; i < now.size(); ++i)
            if (now[i] != start[i]) changed.push_back(now[i]);
        EXPECT_EQ(changed, current.changed);
    }
}

TEST(MenuState, AtTheStartOnlyTheRotateToolIsCheckedAndSelectAllEnabled)
{
    EXPECT_EQ(stateOf({}, IDM_TOOL_ROTATE), (CommandState{IDM_TOOL_ROTATE, true, true}));
    EXPECT_EQ(stateOf({}, IDM_SELECT_ALL), (CommandState{IDM_SELECT_ALL, true, false}));
    for (const int command : {40014, 40050, 40051, 40052, 40053, 40070, 40090, 40092, 40093, 40108})
        EXPECT_EQ(stateOf({}, command), (CommandState{command, false, false}));
}

TEST(MenuState, TheTextureWindowsCommandsFollowTheirFacts)
{
    using States = std::vector<CommandState>;
    EXPECT_EQ(textureMenuState({}), (States{{40032, false, false},
                                            {40034, false, false},
                                            {40035, false, false},
                                            {40038, false, false},
                                            {40085, false, false},
                                            {40099, true, false}}));
    EXPECT_EQ(textureMenuState({true, true, true, true}), (States{{40032, true, false},
                                                                  {40034, true, false},
                                                                  {40035, true, false},
                                                                  {40038, true, false},
                                                                  {40085, true, false},
                                                                  {40099, true, true}}));
}

TEST(MenuState, ToolsAndCommandsAreEachOthers)
{
    for (const int command : {40103, 40104, 40105, 40107, 40108})
        EXPECT_EQ(commandOf(toolOf(command)), command);
    EXPECT_EQ(toolOf(40107), ViewTool::selectPolygons);
}

} // namespace

} // namespace facetor
