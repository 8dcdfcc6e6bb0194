#include "app/main_window.h"
#include "driver/held_key.h"
#include "driver/running_editor.h"
#include "resources/resource_ids.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <commctrl.h>

#include <cstring>
#include <set>

namespace facetor {

namespace {

constexpr std::uint32_t grey = 0x808080;
constexpr UINT menuHandleMessage = 0x1E1; // MN_GETHMENU
constexpr char popupMenuClass[] = "#32768";

int statusBarHeight(const RunningEditor& editor)
{
    RECT bar{};
    GetClientRect(FindWindowExA(editor.window(), nullptr, STATUSCLASSNAMEA, nullptr), &bar);
    return bar.bottom;
}

/// Where the model view begins to show, under the tool bar.
int toolBarHeight(const RunningEditor& editor)
{
    RECT bar{};
    GetWindowRect(FindWindowExA(editor.window(), nullptr, TOOLBARCLASSNAMEA, nullptr), &bar);
    return bar.bottom - bar.top;
}

std::uint32_t centreOf(const WindowPicture& picture)
{
    return picture.at(picture.width / 2, picture.height / 2);
}

TEST(ModelView, ShowsTheFrameSurfacePixelByPixel)
{
    const RunningEditor editor;
    editor.resizeClient(400, 320);
    editor.call([](Editor& e) {
        for (std::uint32_t i = 0; i < e.document.model.totalVertexCount; ++i) {
            Vertex& vertex = e.document.model.vertices[i]; // out of the centre, and no square
            vertex = {vertex.x * 2 + 90, vertex.y + 40, vertex.z};
        }
    });
    editor.send(messageRedraw);
    const WindowPicture shown = editor.picture();
    ASSERT_EQ(shown.width, 400);
    ASSERT_EQ(shown.height, 320);
    const int top = toolBarHeight(editor);
    const int rows = shown.height - statusBarHeight(editor);
    int wrong = 0;
    std::set<Rgb555> colours;
    editor.call([&](Editor& e) {
        ASSERT_EQ(e.engine.surface.width, 400);
        for (int y = top; y < rows; ++y)
            for (int x = 0; x < shown.width; ++x) {
                const Rgb555 pixel = e.engine.surface.at(x, y);
                const std::uint32_t rgb = shown.at(x, y);
                const auto expected =
                    rgb555(static_cast<int>(rgb >> 19 & 31), static_cast<int>(rgb >> 11 & 31),
                           static_cast<int>(rgb >> 3 & 31));
                wrong += (pixel & 0x7FFF) != expected;
                colours.insert(pixel);
            }
    });
    EXPECT_EQ(wrong, 0);
    EXPECT_GE(colours.size(), 2u) << "the model must be in the picture";
}

TEST(ModelView, ReachesTheEdgeOfAWidthThatIsNoMultipleOfFour)
{
    const RunningEditor editor;
    for (const int width : {501, 502, 503, 639}) {
        SCOPED_TRACE(width);
        editor.resizeClient(width, 300);
        const WindowPicture picture = editor.picture();
        ASSERT_EQ(picture.width, width);
        for (const int y : {40, 150, 260})
            EXPECT_EQ(picture.at(width - 1, y), picture.at(width / 4 * 4 - 1, y)) << y;
        EXPECT_NE(picture.at(width - 1, 40), grey);
    }
}

TEST(ModelView, LeavesAWindowBeyondTheSurfaceGrey)
{
    const RunningEditor editor;
    editor.resizeClient(720, 600);
    const WindowPicture picture = editor.picture();
    ASSERT_EQ(picture.width, 720);
    ASSERT_EQ(picture.height, 600);
    savePicture(picture, "large-window");
    const std::uint32_t background = picture.at(0, 40);
    EXPECT_NE(background, grey);
    for (const auto& [x, y, expected] : {std::tuple{639, 40, background},
                                         {0, 488, background},
                                         {639, 488, background},
                                         {640, 40, grey},
                                         {640, 488, grey},
                                         {0, 489, grey},
                                         {639, 489, grey},
                                         {719, 40, grey},
                                         {719, 489, grey}})
        EXPECT_EQ(picture.at(x, y), expected) << x << ", " << y;
    EXPECT_NE(picture.at(320, 244), background) << "the centre is the middle of 640 x 489";
}

TEST(ModelView, ErasingLeavesTheShownPictureAlone)
{
    constexpr COLORREF marked = RGB(255, 0, 255);
    const RunningEditor editor;
    editor.resizeClient(720, 600);
    editor.call([&](Editor& e) {
        UpdateWindow(e.mainWindow);
        const HDC dc = GetDC(e.mainWindow);
        for (const int x : {10, 639, 640}) SetPixel(dc, x, 50, marked);
        EXPECT_EQ(SendMessageA(e.mainWindow, WM_ERASEBKGND, reinterpret_cast<WPARAM>(dc), 0), 1);
        SelectClipRgn(dc, nullptr);
        EXPECT_EQ(GetPixel(dc, 10, 50), marked);
        EXPECT_EQ(GetPixel(dc, 639, 50), marked);
        EXPECT_EQ(GetPixel(dc, 640, 50), grey);
        ReleaseDC(e.mainWindow, dc);
    });
}

TEST(ModelView, SurvivesTinyAndMinimisedWindows)
{
    const RunningEditor editor;
    // The status bar covers the whole client area of the smallest ones. Under Wine the first paint
    // after that is still clipped away, so only the last size is looked at.
    for (const auto& [width, height] : {std::pair{1, 1}, {150, 2}, {150, 40}, {240, 180}}) {
        editor.resizeClient(width, height);
        (void)editor.picture();
    }
    editor.call([](Editor& e) {
        ShowWindow(e.mainWindow, SW_MINIMIZE);
        SendMessageA(e.mainWindow, messageRedraw, 0, 0);
        SendMessageA(e.mainWindow, WM_COMMAND, 40045, 0);
        UpdateWindow(e.mainWindow);
        ShowWindow(e.mainWindow, SW_RESTORE);
    });
    editor.resizeClient(400, 320);
    const WindowPicture picture = editor.picture();
    EXPECT_NE(centreOf(picture), picture.at(1, 40));
    EXPECT_EQ(editor.statusText(1), "Polygons = 6");
}

TEST(ModelView, RedrawRequestsOnlyMarkTheFrame)
{
    const RunningEditor editor;
    editor.call([](Editor& e) {
        UpdateWindow(e.mainWindow);
        EXPECT_FALSE(e.view.frameNeedsDrawing);
        for (int i = 0; i < 1000; ++i) SendMessageA(e.mainWindow, messageRedraw, 0, 0);
        EXPECT_TRUE(e.view.frameNeedsDrawing);
        EXPECT_TRUE(GetUpdateRect(e.mainWindow, nullptr, FALSE));
        UpdateWindow(e.mainWindow);
        EXPECT_FALSE(e.view.frameNeedsDrawing);
    });
}

TEST(ModelView, FollowsTheMouse)
{
    struct Step {
        UINT message;
        int x, y;
        ButtonState left, right;
        bool turns; ///< the model, since Rotate Model is the tool
        POINT last;
        const char* reason;
    };
    constexpr auto up = ButtonState::up, down = ButtonState::down, outside = ButtonState::outside;
    const Step steps[] = {
        {WM_MOUSEMOVE, 10, 20, up, up, false, {10, 20}, "moving alone is remembered"},
        {WM_LBUTTONDOWN, 12, 20, down, up, false, {12, 20}, "a press begins a drag where it is"},
        {WM_MOUSEMOVE, 15, 18, down, up, true, {15, 18}, "a drag turns the model"},
        {messageRedraw, 0, 0, down, up, false, {15, 18}, "each move acts once"},
        {WM_MOUSEMOVE, 15, 18, down, up, false, {15, 18}, "a move by nothing does nothing"},
        {WM_MOUSEMOVE, -4, 18, down, up, true, {-4, 18}, "coordinates are signed"},
        {WM_LBUTTONUP, 15, 18, up, up, false, {-4, 18}, "release ends it"},
        {WM_MOUSEMOVE, 30, 30, up, up, false, {30, 30}, "nothing turns without a button"},
        {WM_LBUTTONDBLCLK, 30, 30, up, up, false, {30, 30}, "a double click is nothing"},
        {WM_LBUTTONDOWN, 30, 30, down, up, false, {30, 30}, "a second drag"},
        {WM_NCMOUSEMOVE, 99, 99, outside, outside, false, {30, 30}, "the frame ends both buttons"},
        {WM_MOUSEMOVE, 40, 40, outside, outside, false, {40, 40}, "coming back is no drag"},
        {WM_LBUTTONUP, 40, 40, up, outside, false, {40, 40}, "a late release"},
        {WM_RBUTTONUP, 40, 40, up, up, false, {40, 40}, "the right one likewise"},
        {WM_LBUTTONDOWN, 40, 40, down, up, false, {40, 40}, "a third drag"},
        {WM_MOUSEMOVE, 50, 50, outside, outside, false, {50, 50}, "released over another window"},
    };
    const RunningEditor editor;
    // In one go on the editor's thread: the real mouse could come between otherwise.
    editor.call([&](Editor& e) {
        for (const Step& step : steps) {
            SCOPED_TRACE(step.reason);
            MSG waiting; // moves of the real mouse, of which the last one would count
            while (PeekMessageA(&waiting, nullptr, WM_MOUSEMOVE, WM_MOUSEMOVE, PM_REMOVE)) {
            }
            const Matrix before = e.view.viewMatrix;
            const WPARAM keys = step.left == down ? MK_LBUTTON : 0;
            SendMessageA(e.mainWindow, step.message, keys, MAKELPARAM(step.x, step.y));
            EXPECT_EQ(e.drag.left, step.left);
            EXPECT_EQ(e.drag.right, step.right);
            EXPECT_EQ(std::memcmp(&before, &e.view.viewMatrix, sizeof before) != 0, step.turns);
            EXPECT_EQ(e.drag.last.x, step.last.x);
            EXPECT_EQ(e.drag.last.y, step.last.y);
            EXPECT_EQ(e.view.dragging, step.left == down);
        }
    });
}

TEST(ModelView, OfTheMovesThatWaitTheLastOneBeforeTheReleaseCounts)
{
    const RunningEditor editor;
    editor.call([](Editor& e) {
        const auto post = [&](UINT message, WPARAM keys, int x) {
            PostMessageA(e.mainWindow, message, keys, MAKELPARAM(x, 40));
        };
        SendMessageA(e.mainWindow, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(40, 40));
        for (int x = 41; x <= 90; ++x) post(WM_MOUSEMOVE, MK_LBUTTON, x);
        post(WM_LBUTTONUP, 0, 90);
        post(WM_MOUSEMOVE, 0, 99);
        SendMessageA(e.mainWindow, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(40, 40));
        EXPECT_EQ(e.drag.last.x, 90);
        MSG next{};
        PeekMessageA(&next, e.mainWindow, WM_MOUSEFIRST, WM_MOUSELAST, PM_NOREMOVE);
        EXPECT_EQ(next.message, UINT{WM_LBUTTONUP});
    });
}

TEST(ModelView, TheArrowKeysDoWhatTheMouseDoes)
{
    const RunningEditor editor;
    const auto press = [&](WPARAM key) { editor.send(WM_KEYDOWN, key); };
    const auto view = [&] { return editor.ask([](Editor& e) { return e.view.viewMatrix; }); };
    for (const int tool : {IDM_TOOL_ROTATE, IDM_TOOL_TRANSLATE, IDM_TOOL_SCALE}) {
        SCOPED_TRACE(tool);
        editor.sendCommand(tool);
        const Matrix before = view();
        press(VK_RIGHT);
        const Matrix moved = view();
        EXPECT_NE(std::memcmp(&before, &moved, sizeof before), 0);
        press(VK_HOME);
        press('A');
        const Matrix after = view();
        EXPECT_EQ(std::memcmp(&moved, &after, sizeof before), 0) << "other keys do nothing";
    }
    editor.sendCommand(IDM_TOOL_SELECT);
    press(VK_DOWN);
    const auto marked = [&] {
        return editor.ask([](Editor& e) {
            std::string numbers;
            for (std::uint32_t i = 0; i < e.document.model.totalPolygonCount; ++i)
                if (e.document.model.attributes[i].flags & picked) numbers += std::to_string(i);
            return numbers;
        });
    };
    const std::string first = marked();
    EXPECT_EQ(first.size(), 1u);
    {
        const HeldKey shift(editor, VK_SHIFT);
        press(VK_DOWN);
    }
    EXPECT_EQ(marked().size(), 2u);
    press(VK_UP);
    EXPECT_EQ(marked().size(), 1u);
}

TEST(ModelView, WhatIsErasedIsPaintedAnew)
{
    const RunningEditor editor;
    editor.resizeClient(400, 320);
    editor.call([](Editor& e) {
        e.view.backgroundColour = rgb555(31, 0, 0);
        e.view.frameNeedsDrawing = true;
        InvalidateRect(e.mainWindow, nullptr, TRUE); // as when the window comes into sight
    });
    EXPECT_EQ(editor.picture().at(20, 200), 0xFF0000u);
}

TEST(ModelView, RightButtonShowsAMenuAtTheCursor)
{
    struct Case {
        WPARAM keys;
        int items;
        UINT first;
    };
    const RunningEditor editor;
    editor.resizeClient(400, 320);
    POINT cursor{300, 200};
    ClientToScreen(editor.window(), &cursor);
    for (const Case& current : {Case{MK_RBUTTON, 20, IDM_EDIT_UNDO},
                                {MK_RBUTTON | MK_SHIFT, 5, IDM_TOOL_ROTATE},
                                {MK_RBUTTON | MK_CONTROL, 11, IDM_CAMERA_FORWARD}}) {
        SCOPED_TRACE(current.first);
        editor.post(WM_RBUTTONDOWN, current.keys, MAKELPARAM(300, 200));
        HWND popup = nullptr;
        ASSERT_TRUE(
            waitUntil([&] { return (popup = editor.findWindow(popupMenuClass)) != nullptr; }));
        const auto menu = reinterpret_cast<HMENU>(SendMessageA(popup, menuHandleMessage, 0, 0));
        EXPECT_EQ(GetMenuItemCount(menu), current.items);
        EXPECT_EQ(GetMenuItemID(menu, 0), current.first);
        savePicture(editor.pictureOf(popup), "context-menu-" + std::to_string(current.first));
        RECT place{};
        GetWindowRect(popup, &place);
        EXPECT_EQ(place.left, cursor.x - 32);
        EXPECT_EQ(place.top, cursor.y - 16);
        EXPECT_EQ(editor.ask([](Editor& e) { return e.drag.right; }), ButtonState::down);
        editor.call([](Editor&) { EndMenu(); });
        EXPECT_TRUE(waitUntil([&] { return !editor.findWindow(popupMenuClass); }));
    }
}

} // namespace

} // namespace facetor
