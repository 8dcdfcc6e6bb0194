#include "driver/held_key.h"
#include "driver/running_editor.h"
#include "model/model_file.h"
#include "resources/resource_ids.h"
#include "texture/texture_file.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <utility>
#include <vector>

namespace facetor {

namespace {

/// What an edit can change, as bytes.
Bytes stateOf(const RunningEditor& editor)
{
    return editor.ask([](Editor& e) {
        Bytes state;
        const auto add = [&](const auto& pool, std::uint32_t count) {
            const auto bytes = std::as_bytes(std::span(pool.data(), count));
            state.insert(state.end(), bytes.begin(), bytes.end());
        };
        const Model& model = e.document.model;
        add(model.polygons, model.totalPolygonCount);
        add(model.attributes, model.totalPolygonCount);
        add(model.gouraud, model.totalPolygonCount);
        add(model.vertexNormals, model.totalVertexCount);
        return state;
    });
}

TEST(Edit, EveryPolygonEditShowsMarksTheModelAndIsUndoneAndRedone)
{
    const RunningEditor editor({"samples\\ship.mx3"});
    editor.resizeClient(400, 320);
    editor.sendCommand(IDM_SELECT_ALL);
    editor.sendCommand(IDM_ROTATE_CLOCKWISE); // from now on the picture has the Undo button lit
    for (const int command : {IDM_ROTATE_CLOCKWISE, IDM_ROTATE_COUNTERCLOCKWISE,
                              IDM_ROTATE_HALF_TURN, IDM_INVERT_SURFACE, IDM_GOURAUD_TABLE}) {
        SCOPED_TRACE(command);
        editor.setChanged(false);
        const Bytes before = stateOf(editor);
        const WindowPicture shown = editor.picture();
        editor.sendCommand(command);
        const Bytes edited = stateOf(editor);
        EXPECT_NE(edited, before);
        EXPECT_TRUE(editor.isChanged());
        EXPECT_TRUE(editor.isItemEnabled(IDM_EDIT_UNDO));
        savePicture(editor.picture(), "edit-" + std::to_string(command));
        editor.sendCommand(IDM_EDIT_UNDO);
        EXPECT_EQ(stateOf(editor), before);
        EXPECT_EQ(editor.picture(), shown);
        editor.sendCommand(IDM_EDIT_UNDO);
        EXPECT_EQ(stateOf(editor), edited);
        EXPECT_TRUE(editor.isItemEnabled(IDM_EDIT_UNDO)) << "it can be undone again";
    }
    editor.call([](Editor& e) {
        const auto& attributes = e.document.model.attributes;
        EXPECT_TRUE(std::ranges::none_of(attributes, isLightGouraud));
        EXPECT_TRUE(std::ranges::any_of(attributes, isTableGouraud));
    });
}

TEST(Edit, WithCtrlHeldTheChangedPolygonsAreNoLongerPicked)
{
    const RunningEditor editor;
    for (const int command : {IDM_ROTATE_CLOCKWISE, IDM_INVERT_SURFACE}) {
        editor.sendCommand(IDM_SELECT_ALL);
        {
            const HeldKey control(editor, VK_CONTROL);
            editor.sendCommand(command);
        }
        EXPECT_FALSE(editor.isItemEnabled(IDM_SELECT_CLEAR));
        EXPECT_FALSE(editor.isItemEnabled(IDM_INVERT_SURFACE));
        const Bytes before = stateOf(editor);
        editor.sendCommand(command); // nothing is picked
        EXPECT_EQ(stateOf(editor), before);
        EXPECT_FALSE(editor.findAlert().window);
    }
}

TEST(Edit, RandomEditsAreSteppedBackAndForwardThroughEqualFilesAndTheStatusBarTellsOfTheStep)
{
    const RunningEditor editor({"samples\\ship.mx3", "samples\\ship.mxt"});
    const auto files = [&] {
        return editor.ask([](Editor& e) {
            return std::pair(writeModel(e.document.model), writeTextures(e.document.textures));
        });
    };
    const auto steps = [&] {
        return editor.ask([](Editor& e) { return e.document.history.position; });
    };
    editor.sendCommand(IDM_VIEW_TEXTURES);
    editor.sendCommand(IDM_SELECT_ALL);
    const std::size_t opened = steps();
    std::vector states{files()};
    std::mt19937 random(7);
    constexpr int edits[] = {IDM_ROTATE_CLOCKWISE, IDM_ROTATE_HALF_TURN, IDM_INVERT_SURFACE,
                             IDM_TEXTURE_INSERT,   IDM_TEXTURE_DELETE,   IDM_TEXTURE_BACKSPACE,
                             IDM_GOURAUD_TABLE};
    while (states.size() < 100) {
        editor.call([&](Editor& e) { e.document.textures.current = random() % 8; });
        editor.sendCommand(edits[random() % std::size(edits)]);
        if (opened + states.size() == steps()) states.push_back(files());
    }
    for (std::size_t i = states.size() - 1; i-- > 0;) {
        editor.sendCommand(IDM_EDIT_STEP_BACK);
        ASSERT_EQ(files(), states[i]) << i;
    }
    for (std::size_t i = 1; i < states.size(); ++i) {
        editor.sendCommand(IDM_EDIT_STEP_FORWARD);
        ASSERT_EQ(files(), states[i]) << i;
    }
    EXPECT_FALSE(editor.isItemEnabled(IDM_EDIT_STEP_FORWARD));

    editor.sendCommand(IDM_ROTATE_CLOCKWISE);
    const HMENU menu = GetMenu(editor.window());
    editor.send(WM_MENUSELECT, MAKEWPARAM(IDM_EDIT_STEP_BACK, MF_HILITE),
                reinterpret_cast<LPARAM>(menu));
    const auto showsOneText = [&] {
        return editor.ask([](Editor& e) { return SendMessageA(e.statusBar, SB_ISSIMPLE, 0, 0); });
    };
    EXPECT_TRUE(showsOneText());
    savePicture(editor.pictureOf(editor.window()), "step-name");
    editor.send(WM_MENUSELECT, MAKEWPARAM(0, 0xFFFF), 0);
    EXPECT_FALSE(showsOneText());
}

} // namespace

} // namespace facetor
