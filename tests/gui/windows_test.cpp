// One text of all windows of the editor and of all that is in them, windows.txt. With the
// environment variable FACETOR_WINDOWS set it is written anew: read the difference.
#include "base/file.h"
#include "driver/held_key.h"
#include "driver/running_editor.h"
#include "driver/window_outline.h"
#include "resources/resource_ids.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <commctrl.h>

#include <cstdlib>

namespace facetor {

namespace {

TEST(Windows, AreAsTheirTextSays)
{
    constexpr char golden[] = "tests/gui/windows.txt";
    const RunningEditor editor;
    std::string found;
    const auto show = [&](HWND window, const std::string& name) {
        ASSERT_TRUE(window) << name;
        editor.call([&](Editor&) { found += windowOutline(window); });
        savePicture(editor.pictureOf(window), "window " + name);
    };
    /// Shows a dialog that a command brings up.
    const auto showDialog = [&](HWND window, int command) {
        PostMessageA(window, WM_COMMAND, static_cast<WPARAM>(command), 0);
        const ShownAlert dialog = editor.waitForAlert();
        show(dialog.window, std::to_string(command));
        editor.closeDialog(dialog, command == IDM_HELP_ABOUT ? IDOK : IDCANCEL);
    };
    editor.call([&](Editor& e) { found += keyOutline(e.accelerators); });
    show(editor.window(), "main");
    show(editor.ask([](Editor& e) { return e.toolBox.window; }), "tool box");
    for (const int command : {IDM_OPTIONS_LIGHT, IDM_OPTIONS_SCREEN, IDM_EDIT_PROPERTY,
                              IDM_HELP_ABOUT, IDM_FILE_VERSIONS, IDM_FILE_RECOVER})
        showDialog(editor.window(), command);
    const ShownAlert light = editor.openDialog(IDM_OPTIONS_LIGHT);
    PostMessageA(light.window, WM_COMMAND, IDC_LIGHT_COLOUR, 0);
    ShownAlert colours;
    ASSERT_TRUE(waitUntil([&] {
        colours = editor.findAlert();
        return colours.window != light.window && !colours.buttons.empty();
    }));
    show(colours.window, "colour module");
    EXPECT_TRUE(editor.press(colours, IDCANCEL));
    editor.closeDialog(light, IDCANCEL);
    editor.sendCommand(IDM_VIEW_ATTRIBUTES);
    show(editor.ask([](Editor& e) { return e.attributeWindow; }), "attributes");
    editor.sendCommand(IDM_VIEW_HIERARCHY);
    const HWND hierarchy = editor.ask([](Editor& e) {
        SendDlgItemMessageA(e.hierarchyWindow, IDC_HIERARCHY_TREE, TVM_SELECTITEM, TVGN_CARET,
                            reinterpret_cast<LPARAM>(e.hierarchyItems.at(0)));
        return e.hierarchyWindow;
    });
    show(hierarchy, "hierarchy");
    showDialog(hierarchy, IDM_HIERARCHY_RENAME);
    {
        const HeldKey shift(editor, VK_SHIFT), control(editor, VK_CONTROL);
        showDialog(hierarchy, IDM_HIERARCHY_INFORMATION); // the object editor
    }
    editor.sendCommand(IDM_VIEW_BUDGET);
    show(editor.ask([](Editor& e) { return e.budget.window; }), "budget");
    editor.sendCommand(IDM_VIEW_DRAW_ORDER);
    show(editor.ask([](Editor& e) { return e.drawOrder.window; }), "draw order");
    editor.sendCommand(IDM_VIEW_TEXTURES);
    const HWND textures = editor.ask([](Editor& e) { return e.textureWindow.window; });
    SendMessageA(textures, WM_COMMAND, IDM_TEXTURE_EMPTY_CLIPBOARD, 0);
    show(textures, "textures");
    editor.call([](Editor& e) {
        Texels texels;
        ASSERT_TRUE(texels.allocate(64));
        e.document.textures.set(0, 8, 8, std::move(texels));
    });
    for (const int command :
         {IDM_TEXTURE_SCALE, IDM_TEXTURE_FLIP, IDM_TEXTURE_ROTATE, IDM_TEXTURE_EXPORT})
        showDialog(textures, command);
    editor.sendCommand(IDM_SELECT_ALL);
    PostMessageA(textures, WM_COMMAND, IDM_TEXTURE_SLICE, 0);
    EXPECT_TRUE(editor.press(editor.waitForAlert(), IDNO)); // nothing to save before
    const ShownAlert slice = editor.waitForAlert();
    show(slice.window, "slice");
    editor.closeDialog(slice, IDCANCEL);
    editor.setChanged(false);

    if (std::getenv("FACETOR_WINDOWS")) {
        ASSERT_EQ(writeFile(golden, std::as_bytes(std::span(found))), Message::none);
    }
    const auto bytes = readFile(golden).value_or(Bytes{});
    const std::string expected(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    EXPECT_EQ(found, expected);
}

} // namespace

} // namespace facetor
