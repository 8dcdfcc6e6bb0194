// What the mouse and the keys do in the view with any tool, and the windows that follow what is
// picked.
#include "base/file.h"
#include "base/temporary_folder.h"
#include "commands/picture_commands.h"
#include "driver/held_key.h"
#include "driver/running_editor.h"
#include "image/png_codec.h"
#include "resources/resource_ids.h"
#include "ui/window_data.h"
#include "view/selection.h"
#include "windows/attribute_window.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <commctrl.h>

#include <cstring>

namespace facetor {

namespace {

Matrix viewOf(const RunningEditor& editor)
{
    return editor.ask([](Editor& e) { return e.view.viewMatrix; });
}

bool operator==(const Matrix& a, const Matrix& b)
{
    return std::memcmp(&a, &b, sizeof a) == 0;
}

std::string marked(const RunningEditor& editor)
{
    return editor.ask([](Editor& e) {
        std::string digits;
        for (std::uint32_t i = 0; i < e.document.model.totalPolygonCount; ++i)
            if (isPicked(e.document.model.attributes[i])) digits += std::to_string(i);
        return digits;
    });
}

void press(const RunningEditor& editor, WPARAM key)
{
    editor.send(WM_KEYDOWN, key);
}

TEST(ViewGestures, WheelAndMiddleButtonMoveTheViewWithEveryTool)
{
    const RunningEditor editor;
    editor.resizeClient(400, 320);
    POINT at{200, 160};
    ClientToScreen(editor.window(), &at);
    const Matrix start = viewOf(editor);
    for (const int tool : {IDM_TOOL_ROTATE, IDM_TOOL_SELECT}) {
        SCOPED_TRACE(tool);
        editor.sendCommand(tool);
        Matrix before = viewOf(editor);
        editor.send(WM_MOUSEWHEEL, MAKEWPARAM(0, WHEEL_DELTA), MAKELPARAM(at.x, at.y));
        Matrix after = viewOf(editor);
        EXPECT_GT(after.element[0] / after.element[14], before.element[0] / before.element[14]);
        editor.send(WM_MOUSEWHEEL, MAKEWPARAM(0, WHEEL_DELTA), MAKELPARAM(at.x + 9999, at.y));
        EXPECT_TRUE(viewOf(editor) == after) << "the cursor is elsewhere";
        const auto drag = [&](WPARAM keys) {
            before = viewOf(editor);
            editor.send(WM_MBUTTONDOWN, MK_MBUTTON | keys, MAKELPARAM(200, 160));
            editor.send(WM_MOUSEMOVE, MK_MBUTTON | keys, MAKELPARAM(230, 150));
            EXPECT_TRUE(editor.ask([](Editor& e) { return e.view.dragging; }));
            editor.send(WM_MBUTTONUP, 0, MAKELPARAM(230, 150));
            EXPECT_FALSE(editor.ask([](Editor& e) { return e.view.dragging; }));
            after = viewOf(editor);
        };
        drag(0);
        EXPECT_GT(after.element[12], before.element[12]);
        EXPECT_LT(after.element[13], before.element[13]);
        EXPECT_EQ(after.element[0], before.element[0]);
        drag(MK_CONTROL);
        EXPECT_NE(after.element[0], before.element[0]) << "turned";
        EXPECT_EQ(marked(editor), "");
    }
    savePicture(editor.pictureOf(editor.window()), "gestures-zoomed");
    press(editor, 'F');
    savePicture(editor.pictureOf(editor.window()), "gestures-fitted");
    press(editor, VK_NUMPAD5);
    EXPECT_TRUE(viewOf(editor) == start) << "from the front, as at first";
    editor.send(WM_SYSKEYDOWN, VK_RIGHT, 1 << 29);
    EXPECT_FALSE(viewOf(editor) == start);
}

TEST(ViewGestures, KeysSelectHideAndShow)
{
    const RunningEditor editor;
    editor.resizeClient(400, 320);
    editor.sendCommand(IDM_TOOL_SELECT);
    const auto click = [&](UINT message) {
        editor.send(message, MK_LBUTTON, MAKELPARAM(200, 160));
        editor.send(WM_LBUTTONUP, 0, MAKELPARAM(200, 160));
    };
    click(WM_LBUTTONDOWN);
    const std::string one = marked(editor);
    EXPECT_EQ(one.size(), 1u);
    press(editor, 'G');
    EXPECT_EQ(marked(editor).size(), 5u);
    press(editor, 'I');
    EXPECT_EQ(marked(editor).size(), 1u);
    press(editor, 'C');
    EXPECT_EQ(marked(editor), "012345");
    editor.sendCommand(IDM_SELECT_CLEAR);
    click(WM_LBUTTONDOWN);
    press(editor, 'H');
    EXPECT_EQ(marked(editor), "");
    EXPECT_TRUE(editor.isItemEnabled(IDM_SHOW_HIDDEN));
    click(WM_LBUTTONDOWN); // nothing is there any more
    EXPECT_EQ(marked(editor), "");
    editor.sendCommand(IDM_SHOW_HIDDEN);
    EXPECT_EQ(marked(editor), one);
    editor.sendCommand(IDM_SELECT_CLEAR);
    click(WM_LBUTTONDBLCLK);
    EXPECT_EQ(marked(editor), "012345") << "what hangs together";
    const HeldKey shift(editor, VK_SHIFT);
    click(WM_LBUTTONDBLCLK);
    EXPECT_EQ(marked(editor), "");
    EXPECT_FALSE(editor.isChanged());
}

TEST(ViewGestures, WithZoomTheMouseFollowsTheLargerPixels)
{
    const RunningEditor editor;
    editor.resizeClient(720, 600);
    editor.sendCommand(IDM_TOOL_SELECT);
    press(editor, '3');
    EXPECT_TRUE(editor.isItemChecked(IDM_VIEW_ZOOM_3));
    const WindowPicture shown = editor.picture();
    savePicture(shown, "zoomed-3");
    editor.call([&](Editor& e) {
        ASSERT_EQ(e.engine.surface.width, 240);
        ASSERT_EQ(e.engine.surface.height, 200);
    });
    for (const int x : {300, 301, 302}) EXPECT_EQ(shown.at(x, 300), shown.at(300, 302));
    EXPECT_NE(shown.at(719, 500), 0x808080u) << "the window is filled";
    editor.send(WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(361, 299));
    editor.send(WM_LBUTTONUP, 0, MAKELPARAM(361, 299));
    EXPECT_EQ(marked(editor).size(), 1u);
    editor.send(WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(30, 60));
    editor.send(WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(690, 560));
    savePicture(editor.picture(), "zoomed-band");
    editor.call([](Editor& e) { EXPECT_EQ(e.band.rectangle.right, 230); });
    editor.send(WM_LBUTTONUP, 0, MAKELPARAM(690, 560));
    press(editor, '1');
    EXPECT_EQ(editor.picture().at(700, 500), 0x808080u);
}

TEST(ViewGestures, ThePictureIsSavedAndCopied)
{
    const TemporaryFolder folder;
    const RunningEditor editor;
    editor.resizeClient(320, 300);
    for (const int filter : {1, 2}) {
        const std::string path = folder.file("picture" + std::to_string(filter) + ".png");
        editor.post(WM_COMMAND, IDM_FILE_SAVE_PICTURE);
        ASSERT_TRUE(editor.fillFileDialog(path, filter));
        ASSERT_TRUE(waitUntil([&] { return readFile(path).has_value(); }));
        editor.call([](Editor&) {});
        const Bytes file = readFile(path).value_or(Bytes{});
        EXPECT_EQ(pngCodec.info(file).value_or(ImageInfo{}).width, 320u);
        Bytes pixels(320 * 300 * 4);
        EXPECT_TRUE(pngCodec.decode(file, pixels));
        EXPECT_EQ(pixels[0] == std::byte{0}, filter == 2) << "the background is blue";
    }
    editor.sendCommand(IDM_FILE_COPY_PICTURE);
    EXPECT_TRUE(IsClipboardFormatAvailable(CF_DIB));
}

/// The start-up cube, whose six polygons have six colours, with the attribute window.
struct Mixed : testing::Test {
    HWND page() const
    {
        return editor.ask([](Editor& e) { return e.attributePages.pages.at(0); });
    }
    void click(HWND parent, int control) const
    {
        SendMessageA(GetDlgItem(parent, control), BM_CLICK, 0, 0);
    }
    const RunningEditor editor;
    HWND window = nullptr;

    void SetUp() override
    {
        editor.sendCommand(IDM_VIEW_ATTRIBUTES);
        window = editor.ask([](Editor& e) { return e.attributeWindow; });
    }
};

TEST_F(Mixed, WhatDiffersIsLeftOpenAndApplyTouchedLeavesItAlone)
{
    editor.call([](Editor& e) {
        e.document.model.attributes[1].flags = textureMap;
        e.document.model.attributes[1].texture = 5;
    });
    editor.sendCommand(IDM_SELECT_ALL);
    EXPECT_EQ(IsDlgButtonChecked(page(), IDC_ATTRIBUTE_POLYGON), UINT{BST_CHECKED})
        << "as without the option";
    editor.sendCommand(IDM_SHOW_MIXED);
    EXPECT_TRUE(editor.isItemChecked(IDM_SHOW_MIXED));
    savePicture(editor.pictureOf(window), "attribute-mixed");
    for (const int control :
         {IDC_ATTRIBUTE_POLYGON, IDC_ATTRIBUTE_TEXTURE_MAP, IDC_ATTRIBUTE_FLIP_H})
        EXPECT_EQ(IsDlgButtonChecked(page(), control), UINT{BST_UNCHECKED}) << control;
    EXPECT_EQ(IsDlgButtonChecked(page(), IDC_ATTRIBUTE_USE_LIGHT), UINT{BST_INDETERMINATE});
    EXPECT_EQ(windowText(GetDlgItem(page(), IDC_ATTRIBUTE_TEXTURE)), "");
    const auto isAnyTouched = [&] {
        return IsWindowEnabled(GetDlgItem(window, IDC_ATTRIBUTE_APPLY_TOUCHED)) != FALSE;
    };
    const HWND first = GetDlgItem(page(), IDC_ATTRIBUTE_POLYGON);
    EXPECT_NE(GetWindowLongA(first, GWL_STYLE) & WS_TABSTOP, 0) << "where the keyboard comes in";
    editor.call([&](Editor&) { SetFocus(first); });
    EXPECT_FALSE(isAnyTouched());

    click(page(), IDC_ATTRIBUTE_USE_LIGHT);
    EXPECT_EQ(IsDlgButtonChecked(page(), IDC_ATTRIBUTE_USE_LIGHT), UINT{BST_CHECKED});
    click(page(), IDC_ATTRIBUTE_USE_LIGHT);
    EXPECT_EQ(IsDlgButtonChecked(page(), IDC_ATTRIBUTE_USE_LIGHT), UINT{BST_UNCHECKED});
    savePicture(editor.pictureOf(window), "attribute-touched");
    EXPECT_TRUE(isAnyTouched());
    click(window, IDC_ATTRIBUTE_APPLY_TOUCHED);
    EXPECT_FALSE(isAnyTouched()) << "what is picked next gets what is set then";
    editor.call([](Editor& e) {
        const auto& attributes = e.document.model.attributes;
        EXPECT_EQ(attributes[0].flags, std::uint32_t{polygonFace} | picked);
        EXPECT_EQ(attributes[1].flags, std::uint32_t{textureMap} | picked);
        EXPECT_EQ(attributes[1].texture, 5);
        EXPECT_EQ(attributes[2].color, 0x83E0);
        EXPECT_TRUE(isModelChanged(e.document));
        markModelSaved(e.document);
    });
}

TEST_F(Mixed, TheValuesOfOnePolygonArePutOnOthers)
{
    editor.call([](Editor& e) {
        e.document.model.attributes[1] = {1, sortNearest, 5, 0x1234, textureMap | picked, 1};
        e.document.model.gouraud[2].color = {1, 2, 3, 4};
        loadWorkingAttribute(e, 1);
    });
    click(window, IDC_ATTRIBUTE_COPY);
    editor.sendCommand(IDM_SELECT_ALL);
    click(window, IDC_ATTRIBUTE_PUT);
    editor.call([](Editor& e) {
        for (std::uint32_t i = 0; i < 6; ++i) {
            PolygonAttribute expected = e.document.model.attributes[1];
            expected.gouraud = i;
            EXPECT_EQ(std::memcmp(&e.document.model.attributes[i], &expected, sizeof expected), 0);
        }
        EXPECT_EQ(e.document.model.gouraud[2].color, e.document.model.gouraud[1].color);
    });
    editor.sendCommand(IDM_EDIT_UNDO);
    editor.call([](Editor& e) {
        EXPECT_EQ(e.document.model.gouraud[2].color, (std::array<Rgb555, 4>{1, 2, 3, 4}));
        markModelSaved(e.document);
    });
    editor.sendCommand(IDM_VIEW_ATTRIBUTES);                 // closed
    editor.call([](Editor& e) { setWorkingTexture(e, 9); }); // by the texture list
    editor.sendCommand(IDM_SHOW_MIXED);
    editor.sendCommand(IDM_VIEW_ATTRIBUTES);
    editor.call([](Editor& e) { EXPECT_EQ(e.workingAttribute.texture, 9); });
}

TEST(ViewGestures, TheTreePicksItsObjectAndShowsWhatWasClicked)
{
    const RunningEditor editor({"samples/ship.mx3"});
    editor.sendCommand(IDM_VIEW_HIERARCHY);
    const HWND window = editor.ask([](Editor& e) { return e.hierarchyWindow; });
    const HWND tree = GetDlgItem(window, IDC_HIERARCHY_TREE);
    const auto item = [&](std::uint32_t object) {
        return editor.ask([&](Editor& e) { return e.hierarchyItems.at(object); });
    };
    SendMessageA(tree, TVM_SELECTITEM, TVGN_CARET, reinterpret_cast<LPARAM>(item(6)));
    SendMessageA(window, WM_COMMAND, IDM_HIERARCHY_PICK, 0);
    const auto picked = [&] {
        return editor.ask([](Editor& e) {
            std::vector<std::uint32_t> objects;
            for (std::uint32_t k = 0; k < e.document.model.objectCount; ++k)
                if (isPicked(
                        e.document.model.attributes[e.document.model.meshes[k].attributeTable]))
                    objects.push_back(k);
            return objects;
        });
    };
    EXPECT_EQ(picked(), std::vector<std::uint32_t>{6});
    SendMessageA(window, WM_COMMAND, IDM_HIERARCHY_LINK, 0);
    SendMessageA(tree, WM_KEYDOWN, VK_DOWN, 0);
    EXPECT_EQ(picked(), std::vector<std::uint32_t>{7}) << "linked, each choice picks";
    editor.sendCommand(IDM_TOOL_SELECT);
    editor.resizeClient(600, 460);
    editor.send(WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(300, 230));
    editor.send(WM_LBUTTONUP, 0, MAKELPARAM(300, 230));
    const auto chosen =
        reinterpret_cast<HTREEITEM>(SendMessageA(tree, TVM_GETNEXTITEM, TVGN_CARET, 0));
    EXPECT_NE(chosen, item(7)) << "the object under the cursor";
    savePicture(editor.pictureOf(window), "hierarchy-linked");
}

} // namespace

} // namespace facetor
