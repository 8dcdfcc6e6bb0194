#include "app/main_window.h"
#include "driver/running_editor.h"
#include "resources/resource_ids.h"
#include "windows/slice_view.h"

#include <gtest/gtest.h>

#include <commctrl.h>

#include <utility>

namespace facetor {

namespace {

/// The left button held at one point, moved to another and released there.
void drag(const RunningEditor& editor, POINT from, POINT to)
{
    editor.send(WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(from.x, from.y));
    editor.send(WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(to.x, to.y));
    editor.send(WM_LBUTTONUP, 0, MAKELPARAM(to.x, to.y));
}

std::array<int, 4> placeOf(const RunningEditor& editor)
{
    return editor.ask([](Editor& e) -> std::array<int, 4> {
        const InclusiveRectangle r = slicePlace(e);
        return {r.left, r.top, r.right, r.bottom};
    });
}

bool isToolEnabled(const RunningEditor& editor)
{
    return editor.ask([](Editor& e) {
        const bool item = (GetMenuState(GetMenu(e.mainWindow), IDM_TOOL_MOVE_SLICE, MF_BYCOMMAND) &
                           MF_GRAYED) == 0;
        const bool button =
            SendMessageA(e.toolBox.toolBar, TB_ISBUTTONENABLED, IDM_TOOL_MOVE_SLICE, 0) != 0;
        EXPECT_EQ(item, button);
        return item;
    });
}

TEST(SliceView, ThePictureLiesBehindTheModelAndIsMovedAndSizedWithItsTool)
{
    const RunningEditor editor({"samples\\ship.mx3"});
    editor.resizeClient(640, 420);
    constexpr std::uint32_t left = 0xFF0000, right = 0x0000FF; // of the picture, on the screen
    editor.call([](Editor& e) {
        Texels pixels;
        ASSERT_TRUE(pixels.allocate(16 * 8));
        for (std::size_t i = 0; i < pixels.size(); ++i)
            pixels[i] = opaqueBit | (i % 16 < 8 ? rgb555(31, 0, 0) : rgb555(0, 0, 31));
        e.document.textures.set(0, 16, 8, std::move(pixels));
    });
    editor.send(messageRedraw); // the ship has it as well
    EXPECT_FALSE(isToolEnabled(editor));
    const WindowPicture without = editor.picture();
    editor.call([](Editor& e) {
        e.document.textures.current = 1;
        toggleShowSliced(e);
    });
    EXPECT_EQ(placeOf(editor), (std::array{215, 105, 425, 315})) << "a square for the empty slot";
    editor.call([](Editor& e) { e.document.textures.current = 0; });
    editor.send(messageRedraw);
    EXPECT_EQ(placeOf(editor), (std::array{160, 130, 480, 290}));
    WindowPicture shown = editor.picture();
    savePicture(shown, "slice-shown");
    EXPECT_EQ(shown.at(165, 135), left);
    EXPECT_EQ(shown.at(475, 285), right);
    EXPECT_EQ(shown.at(155, 135), without.at(155, 135));
    EXPECT_EQ(shown.at(320, 210), without.at(320, 210)) << "the ship is before it";

    EXPECT_TRUE(isToolEnabled(editor));
    editor.sendCommand(IDM_TOOL_SCALE);
    editor.sendCommand(IDM_TOOL_MOVE_SLICE);
    savePicture(editor.picture(), "slice-tool");
    drag(editor, {170, 140}, {150, 130});
    EXPECT_EQ(placeOf(editor), (std::array{140, 120, 460, 280}));
    drag(editor, {460, 280}, {500, 300});
    EXPECT_EQ(placeOf(editor), (std::array{140, 120, 500, 300}));
    drag(editor, {10, 10}, {50, 50});
    EXPECT_EQ(placeOf(editor), (std::array{140, 120, 500, 300})) << "beside it nothing is taken";
    editor.send(WM_KEYDOWN, VK_RIGHT);
    EXPECT_EQ(placeOf(editor), (std::array{148, 120, 508, 300})) << "a key moves it";
    editor.send(WM_KEYDOWN, VK_LEFT);
    shown = editor.picture();
    savePicture(shown, "slice-dragged");
    EXPECT_EQ(shown.at(495, 290), right);

    editor.call(toggleShowSliced);
    EXPECT_FALSE(isToolEnabled(editor));
    EXPECT_EQ(editor.ask([](Editor& e) { return e.toolBox.tool; }), ViewTool::scaleModel);
    EXPECT_EQ(editor.picture(), without);
}

} // namespace

} // namespace facetor
