#include "windows/tool_box_window.h"

#include "driver/running_editor.h"
#include "resources/resource_ids.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <commctrl.h>

#include <vector>

namespace facetor {

namespace {

RECT placeOf(HWND window)
{
    RECT place{};
    GetWindowRect(window, &place);
    return place;
}

TEST(ToolBox, IsASmallWindowAroundOneColumnOfSixButtons)
{
    const RunningEditor editor;
    const HWND box = editor.findWindow(toolBoxClass);
    ASSERT_TRUE(box);
    EXPECT_EQ(placeOf(box).left, 64);
    EXPECT_EQ(placeOf(box).top, 64);
    editor.call([&](Editor& e) {
        LONG bottom = 0;
        for (WPARAM i = 0; i < 6; ++i) {
            RECT place{};
            SendMessageA(e.toolBox.toolBar, TB_GETITEMRECT, i, reinterpret_cast<LPARAM>(&place));
            EXPECT_EQ(place.left, 0);
            EXPECT_GE(place.bottom - place.top, 22);
            EXPECT_TRUE(i == 0 || place.top == bottom) << "each in a row of its own";
            bottom = place.bottom;
        }
        RECT client{};
        GetClientRect(box, &client);
        EXPECT_EQ(client.bottom, bottom);
    });
}

ViewTool currentTool(const RunningEditor& editor)
{
    return editor.ask([](Editor& e) { return e.toolBox.tool; });
}

bool isPressed(const RunningEditor& editor, int command)
{
    return editor.ask([&](Editor& e) {
        return SendMessageA(e.toolBox.toolBar, TB_ISBUTTONCHECKED, static_cast<WPARAM>(command),
                            0) != 0;
    });
}

/// The commands of Edit > Tools that are checked.
std::vector<int> checkedTools(const RunningEditor& editor)
{
    std::vector<int> checked;
    for (const int command : {40103, 40104, 40105, 40107, 40108})
        if (editor.isItemChecked(command)) checked.push_back(command);
    return checked;
}

TEST(ToolBox, AToolChosenFromTheMenuIsCheckedThereAndPressedInTheBox)
{
    const RunningEditor editor;
    EXPECT_EQ(checkedTools(editor), std::vector<int>{40103});
    for (const int command : {40104, 40105, 40107, 40103}) {
        SCOPED_TRACE(command);
        editor.sendCommand(command);
        EXPECT_EQ(checkedTools(editor), std::vector<int>{command});
        for (const int other : {40103, 40104, 40105, 40107})
            EXPECT_EQ(isPressed(editor, other), other == command);
    }
}

/// A click of the left button on a button of the tool box.
void click(const RunningEditor& editor, int index)
{
    editor.call([&](Editor& e) {
        RECT place{};
        SendMessageA(e.toolBox.toolBar, TB_GETITEMRECT, static_cast<WPARAM>(index),
                     reinterpret_cast<LPARAM>(&place));
        const LPARAM position =
            MAKELPARAM((place.left + place.right) / 2, (place.top + place.bottom) / 2);
        PostMessageA(e.toolBox.toolBar, WM_LBUTTONDOWN, MK_LBUTTON, position);
        PostMessageA(e.toolBox.toolBar, WM_LBUTTONUP, 0, position);
    });
}

TEST(ToolBox, AButtonMakesItsToolCurrentAndLeavesTheMenuAsItWas)
{
    const RunningEditor editor;
    editor.sendCommand(IDM_TOOL_TRANSLATE);
    click(editor, 3);
    EXPECT_TRUE(waitUntil([&] { return currentTool(editor) == ViewTool::selectPolygons; }));
    EXPECT_TRUE(isPressed(editor, IDM_TOOL_SELECT));
    EXPECT_FALSE(isPressed(editor, IDM_TOOL_TRANSLATE));
    editor.send(WM_USER);
    EXPECT_EQ(checkedTools(editor), std::vector<int>{IDM_TOOL_TRANSLATE});
}

TEST(ToolBox, CameraShowsTheCameraMenuAndKeepsTheTool)
{
    const RunningEditor editor;
    click(editor, 2);
    ASSERT_TRUE(waitUntil([&] { return currentTool(editor) == ViewTool::scaleModel; }));
    click(editor, 5);
    HWND popup = nullptr;
    ASSERT_TRUE(waitUntil([&] { return (popup = editor.findWindow("#32768")) != nullptr; }));
    constexpr UINT menuHandleMessage = 0x1E1; // MN_GETHMENU
    const auto menu = reinterpret_cast<HMENU>(SendMessageA(popup, menuHandleMessage, 0, 0));
    EXPECT_EQ(GetMenuItemID(menu, 0), 40044u);
    editor.call([](Editor&) { EndMenu(); });
    EXPECT_TRUE(waitUntil([&] { return !editor.findWindow("#32768"); }));
    EXPECT_EQ(currentTool(editor), ViewTool::scaleModel);
    EXPECT_TRUE(isPressed(editor, IDM_TOOL_SCALE));
}

TEST(ToolBox, IsHiddenAndShownAgainWhereItWas)
{
    const RunningEditor editor;
    const HWND box = editor.findWindow(toolBoxClass);
    const auto checked = [&] {
        const bool item = editor.isItemChecked(IDM_VIEW_TOOL_BOX);
        EXPECT_EQ(editor.ask([](Editor& e) {
            return SendMessageA(e.toolBar, TB_ISBUTTONCHECKED, IDM_VIEW_TOOL_BOX, 0) != 0;
        }),
                  item);
        return item;
    };
    EXPECT_TRUE(checked());
    SetWindowPos(box, nullptr, 321, 123, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
    SendMessageA(box, WM_CLOSE, 0, 0);
    EXPECT_FALSE(IsWindowVisible(box));
    EXPECT_FALSE(checked());
    editor.sendCommand(IDM_VIEW_TOOL_BOX);
    EXPECT_TRUE(IsWindowVisible(box));
    EXPECT_TRUE(checked());
    EXPECT_EQ(placeOf(box).left, 321);
    EXPECT_EQ(placeOf(box).top, 123);
    editor.sendCommand(IDM_VIEW_TOOL_BOX);
    EXPECT_FALSE(IsWindowVisible(box));
    EXPECT_FALSE(checked());
}

} // namespace

} // namespace facetor
