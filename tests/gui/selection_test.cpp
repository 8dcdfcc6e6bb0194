#include "app/main_window.h"
#include "driver/held_key.h"
#include "driver/running_editor.h"
#include "resources/resource_ids.h"
#include "view/selection.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <cstring>
#include <set>

namespace facetor {

namespace {

int pickedCount(const RunningEditor& editor)
{
    return editor.ask([](Editor& e) {
        int count = 0;
        for (std::uint32_t i = 0; i < e.document.model.totalPolygonCount; ++i)
            count += (e.document.model.attributes[i].flags & picked) != 0;
        return count;
    });
}

void mouse(const RunningEditor& editor, UINT message, int x, int y)
{
    editor.send(message, message == WM_LBUTTONUP ? 0 : MK_LBUTTON, MAKELPARAM(x, y));
}

TEST(Selection, AClickMarksThePolygonUnderTheCursor)
{
    const RunningEditor editor;
    editor.resizeClient(400, 320);
    editor.sendCommand(IDM_TOOL_SELECT);
    for (const int command : {IDM_SELECT_MODEL, IDM_SELECT_MATERIAL, IDM_SELECT_CLEAR})
        EXPECT_FALSE(editor.isItemEnabled(command));
    mouse(editor, WM_LBUTTONDOWN, 200, 160);
    mouse(editor, WM_LBUTTONUP, 200, 160);
    EXPECT_EQ(pickedCount(editor), 1);
    for (const int command : {IDM_SELECT_MODEL, IDM_SELECT_MATERIAL, IDM_SELECT_CLEAR})
        EXPECT_TRUE(editor.isItemEnabled(command));
    editor.sendCommand(IDM_SELECT_MODEL);
    EXPECT_EQ(pickedCount(editor), 6);
    editor.sendCommand(IDM_SELECT_CLEAR);
    EXPECT_EQ(pickedCount(editor), 0);
    EXPECT_FALSE(editor.isItemEnabled(IDM_SELECT_CLEAR));
    EXPECT_TRUE(editor.isItemEnabled(IDM_SELECT_ALL));
    editor.sendCommand(IDM_SELECT_ALL);
    EXPECT_EQ(pickedCount(editor), 6);
    EXPECT_FALSE(editor.isChanged());
}

TEST(Selection, ShiftTakesTheWholeObjectAndCtrlClearsMarks)
{
    const RunningEditor editor;
    editor.resizeClient(400, 320);
    editor.sendCommand(IDM_TOOL_SELECT);
    const auto click = [&] {
        mouse(editor, WM_LBUTTONDOWN, 200, 160);
        mouse(editor, WM_LBUTTONUP, 200, 160);
        return pickedCount(editor);
    };
    {
        const HeldKey shift(editor, VK_SHIFT);
        EXPECT_EQ(click(), 6);
    }
    {
        const HeldKey control(editor, VK_CONTROL);
        EXPECT_EQ(click(), 5);
        editor.sendCommand(IDM_SELECT_MODEL);
        EXPECT_EQ(pickedCount(editor), 0);
        editor.sendCommand(IDM_SELECT_ALL);
        EXPECT_EQ(pickedCount(editor), 6) << "its own key is with Ctrl";
    }
    editor.sendCommand(IDM_SELECT_CLEAR);
    const HeldKey tab(editor, VK_TAB);
    EXPECT_EQ(click(), 0) << "no other polygon lies behind the nearest";
}

TEST(Selection, TheRubberBandIsSeenOnEveryBackgroundMarksWhatItHoldsAndLeavesNothingBehind)
{
    constexpr std::uint32_t black = 0x000000, white = 0xFFFFFF;
    const RunningEditor editor;
    editor.resizeClient(400, 320);
    editor.sendCommand(IDM_TOOL_SELECT);
    for (const Rgb555 background : {rgb555(0, 0, 16), rgb555(31, 31, 31), rgb555(0, 0, 0)}) {
        SCOPED_TRACE(background);
        editor.sendCommand(IDM_SELECT_CLEAR);
        editor.call([&](Editor& e) { e.view.backgroundColour = background; });
        editor.send(messageRedraw);
        mouse(editor, WM_LBUTTONDOWN, 20, 50);
        mouse(editor, WM_MOUSEMOVE, 390, 280);
        const WindowPicture drawn = editor.picture();
        savePicture(drawn, "rubber-band-" + std::to_string(background));
        int blackDashes = 0, whiteDashes = 0;
        for (int x = 20; x <= 390; ++x) {
            blackDashes += drawn.at(x, 50) == black && drawn.at(x, 280) == black;
            whiteDashes += drawn.at(x, 50) == white;
        }
        EXPECT_GT(whiteDashes, 100);
        EXPECT_GT(371 - whiteDashes, 100) << "and as many black ones";
        EXPECT_EQ(pickedCount(editor), 0) << "nothing is marked before the release";
        mouse(editor, WM_LBUTTONUP, 390, 280);
        EXPECT_EQ(pickedCount(editor), 1) << "the one side of the cube that is listed";
        editor.sendCommand(IDM_SELECT_CLEAR);
        const WindowPicture after = editor.picture();
        for (int x = 20; x <= 390; ++x) EXPECT_EQ(after.at(x, 50), after.at(10, 45)) << x;
    }
}

TEST(Selection, ABandThatReachesBeyondTheSurfaceLeavesNothingBehindThere)
{
    const RunningEditor editor;
    editor.resizeClient(700, 540);
    editor.sendCommand(IDM_TOOL_SELECT);
    const WindowPicture before = editor.picture();
    mouse(editor, WM_LBUTTONDOWN, 20, 50);
    mouse(editor, WM_MOUSEMOVE, 690, 505);
    (void)editor.picture(); // painted in between
    mouse(editor, WM_MOUSEMOVE, 680, 500);
    const WindowPicture drawn = editor.picture();
    int changed = 0;
    for (int x = 20; x < 640; ++x) changed += drawn.at(x, 50) != before.at(x, 50);
    EXPECT_GT(changed, 300) << "the band itself is seen";
    mouse(editor, WM_LBUTTONUP, 680, 500);
    editor.sendCommand(IDM_SELECT_CLEAR);
    EXPECT_TRUE(editor.picture() == before);
}

TEST(Selection, ABandThatLeavesTheWindowMarksWhatItHeld)
{
    const RunningEditor editor;
    editor.resizeClient(400, 320);
    editor.sendCommand(IDM_TOOL_SELECT);
    mouse(editor, WM_LBUTTONDOWN, 20, 50);
    mouse(editor, WM_MOUSEMOVE, 390, 280);
    editor.send(WM_NCMOUSEMOVE, HTRIGHT);
    EXPECT_EQ(pickedCount(editor), 1);
    EXPECT_FALSE(editor.ask([](Editor& e) { return e.band.open; }));
}

TEST(Selection, StoredCamerasComeBackAndTheirItemsAreEnabled)
{
    const RunningEditor editor;
    const auto matrix = [&] { return editor.ask([](Editor& e) { return e.view.viewMatrix; }); };
    const Matrix start = matrix();
    editor.sendCommand(IDM_CAMERA_RECALL_2);
    for (int i = 0; i < 4; ++i) EXPECT_FALSE(editor.isItemEnabled(IDM_CAMERA_RECALL_1 + i));
    editor.sendCommand(IDM_CAMERA_STORE_2);
    EXPECT_TRUE(editor.isItemEnabled(IDM_CAMERA_RECALL_2));
    EXPECT_FALSE(editor.isItemEnabled(IDM_CAMERA_RECALL_1));
    std::set<std::uint32_t> sides; // the colours of the cube's
    for (const int command : {IDM_CAMERA_FORWARD, IDM_CAMERA_BACK, IDM_CAMERA_LEFT,
                              IDM_CAMERA_RIGHT, IDM_CAMERA_BOTTOM, IDM_CAMERA_TOP}) {
        editor.sendCommand(command);
        const WindowPicture picture = editor.picture();
        sides.insert(picture.at(picture.width / 2, picture.height / 2));
    }
    EXPECT_EQ(sides.size(), 6u);
    const Matrix top = matrix();
    editor.sendCommand(IDM_CAMERA_RECALL_1);
    const Matrix unchanged = matrix();
    EXPECT_EQ(std::memcmp(&unchanged, &top, sizeof top), 0);
    editor.sendCommand(IDM_CAMERA_RECALL_2);
    const Matrix recalled = matrix();
    EXPECT_EQ(std::memcmp(&recalled, &start, sizeof start), 0);
    EXPECT_FALSE(editor.isChanged());
}

} // namespace

} // namespace facetor
