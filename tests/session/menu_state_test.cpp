#include "session/menu_state.h"

#include <gtest/gtest.h>

namespace facetor {

namespace {

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
         {{40070, true, false},
          {40090, true, false},
          {40092, true, false},
          {40093, true, false},
          {40201, true, false},
          {40203, true, false},
          {40204, true, false},
          {40205, true, false},
          {40206, true, false},
          {40207, true, false},
          {40208, true, false},
          {40209, true, false}}},
        {"hidden polygons", {.anyHidden = true}, {{40210, true, false}}},
        {"the attribute window", {.attributesShown = true}, {{40008, true, true}}},
        {"the hierarchy window", {.hierarchyShown = true}, {{40009, true, true}}},
        {"the texture list window", {.texturesShown = true}, {{40030, true, true}}},
        {"the budget window", {.budgetShown = true}, {{40170, true, true}}},
        {"the drawing order window", {.drawOrderShown = true}, {{40171, true, true}}},
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

} // namespace

} // namespace facetor
