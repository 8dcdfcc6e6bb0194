#include "driver/running_editor.h"
#include "resources/resource_ids.h"
#include "ui/colour_picker.h"
#include "ui/window_data.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <commctrl.h>

namespace facetor {

namespace {

std::string itemText(const ShownAlert& dialog, int control)
{
    return windowText(GetDlgItem(dialog.window, control));
}

bool isChecked(const ShownAlert& dialog, int control)
{
    return IsDlgButtonChecked(dialog.window, control) == BST_CHECKED;
}

void moveSlider(const ShownAlert& dialog, int position)
{
    const HWND slider = GetDlgItem(dialog.window, IDC_SCREEN_ANGLE);
    SendMessageA(slider, TBM_SETPOS, TRUE, position);
    SendMessageA(dialog.window, WM_HSCROLL, TB_ENDTRACK, reinterpret_cast<LPARAM>(slider));
}

TEST(ScreenDialog, ShowsAndChangesProjectionAndViewAngle)
{
    const RunningEditor editor;
    ShownAlert dialog = editor.openDialog(IDM_OPTIONS_SCREEN);
    savePicture(editor.pictureOf(dialog.window), "screen-dialog");
    moveSlider(dialog, 4);
    EXPECT_TRUE(itemText(dialog, IDC_SCREEN_LABEL).ends_with(" = 40"));
    EXPECT_EQ(editor.ask([](Editor& e) { return e.view.viewAngle; }), 7281) << "seen at once";
    CheckRadioButton(dialog.window, IDC_SCREEN_PARALLEL, IDC_SCREEN_PERSPECTIVE,
                     IDC_SCREEN_PARALLEL);
    editor.closeDialog(dialog, IDCANCEL);
    editor.call([](Editor& e) {
        EXPECT_EQ(e.view.viewAngle, 16383);
        EXPECT_TRUE(e.view.perspective);
        EXPECT_TRUE(isModelChanged(e.document)) << "also when it was cancelled";
    });

    const WindowPicture before = editor.picture();
    dialog = editor.openDialog(IDM_OPTIONS_SCREEN);
    moveSlider(dialog, 4);
    CheckRadioButton(dialog.window, IDC_SCREEN_PARALLEL, IDC_SCREEN_PERSPECTIVE,
                     IDC_SCREEN_PARALLEL);
    editor.closeDialog(dialog, IDOK);
    editor.call([](Editor& e) {
        EXPECT_EQ(e.view.viewAngle, 7281); // trunc(40 x 182.0444)
        EXPECT_FALSE(e.view.perspective);
    });
    EXPECT_NE(editor.picture(), before);
    dialog = editor.openDialog(IDM_OPTIONS_SCREEN);
    EXPECT_TRUE(itemText(dialog, IDC_SCREEN_LABEL).ends_with(" = 40"));
    EXPECT_TRUE(isChecked(dialog, IDC_SCREEN_PARALLEL));
    editor.closeDialog(dialog, IDCANCEL);
}

/// A point of the light dialog's picker, as shares of its frame, in the dialog's client pixels.
POINT inPicker(const ShownAlert& dialog, double x, double y)
{
    RECT frame{};
    const HWND picker = GetDlgItem(dialog.window, IDC_LIGHT_PICKER);
    GetClientRect(picker, &frame);
    MapWindowPoints(picker, dialog.window, reinterpret_cast<POINT*>(&frame), 2);
    return {frame.left + static_cast<LONG>(x * (frame.right - frame.left)),
            frame.top + static_cast<LONG>(y * (frame.bottom - frame.top))};
}

void pressAt(const ShownAlert& dialog, POINT point)
{
    SendMessageA(dialog.window, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(point.x, point.y));
    SendMessageA(dialog.window, WM_LBUTTONUP, 0, MAKELPARAM(point.x, point.y));
}

Vector3 lightOf(const RunningEditor& editor)
{
    return editor.ask([](Editor& e) { return e.view.lightDirection; });
}

TEST(LightDialog, APointOfTheGlobeIsADirection)
{
    const RunningEditor editor;
    ShownAlert dialog = editor.openDialog(IDM_OPTIONS_LIGHT);
    savePicture(editor.pictureOf(dialog.window), "light-dialog");
    EXPECT_TRUE(isChecked(dialog, IDC_LIGHT_FORE));
    pressAt(dialog, inPicker(dialog, 0.5, 0.5));
    pressAt(dialog, inPicker(dialog, 0.02, 0.02)); // outside the globe
    editor.closeDialog(dialog, IDOK);
    Vector3 light = lightOf(editor);
    EXPECT_NEAR(light.x, 0, 0.03);
    EXPECT_NEAR(light.y, 0, 0.03);
    EXPECT_NEAR(light.z, 1, 0.01);

    dialog = editor.openDialog(IDM_OPTIONS_LIGHT);
    pressAt(dialog, inPicker(dialog, 0.9, 0.5));
    CheckRadioButton(dialog.window, IDC_LIGHT_FORE, IDC_LIGHT_BACK, IDC_LIGHT_BACK);
    editor.closeDialog(dialog, IDOK);
    light = lightOf(editor);
    EXPECT_LT(light.x, -0.8f) << "what is picked on the right comes from the right";
    EXPECT_LT(light.z, 0) << "from behind";

    dialog = editor.openDialog(IDM_OPTIONS_LIGHT);
    const HWND globe = GetDlgItem(dialog.window, IDC_LIGHT_PICKER);
    EXPECT_EQ(GetNextDlgTabItem(dialog.window, GetDlgItem(dialog.window, IDC_LIGHT_BACK), TRUE),
              globe);
    EXPECT_TRUE(SendMessageA(globe, WM_GETDLGCODE, 0, 0) & DLGC_WANTARROWS);
    SendMessageA(dialog.window, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(globe), TRUE);
    SendMessageA(globe, WM_KEYDOWN, VK_DOWN, 0);
    SendMessageA(globe, WM_KEYDOWN, VK_LEFT, 0);
    savePicture(editor.pictureOf(dialog.window), "light-dialog-keys");
    editor.closeDialog(dialog, IDOK);
    EXPECT_GT(lightOf(editor).x, light.x + 0.01f);
    EXPECT_LT(lightOf(editor).y, light.y - 0.01f);
    dialog = editor.openDialog(IDM_OPTIONS_LIGHT);
    pressAt(dialog, inPicker(dialog, 0.9, 0.5));
    editor.closeDialog(dialog, IDOK);

    dialog = editor.openDialog(IDM_OPTIONS_LIGHT);
    EXPECT_TRUE(isChecked(dialog, IDC_LIGHT_BACK));
    const POINT marker = inPicker(dialog, 0.9, 0.5);
    editor.call([&](Editor& e) {
        EXPECT_EQ(e.light.point.x, marker.x);
        EXPECT_EQ(e.light.point.y, marker.y);
    });
    pressAt(dialog, inPicker(dialog, 0.3, 0.3));
    EXPECT_NE(lightOf(editor).x, light.x) << "seen at once";
    editor.closeDialog(dialog, IDCANCEL);
    EXPECT_EQ(lightOf(editor).x, light.x);
    editor.call([&](Editor& e) {
        EXPECT_EQ(e.light.point.x, marker.x);
        EXPECT_TRUE(isModelChanged(e.document));
    });
}

TEST(LightDialog, TheChosenLightIsWhatGouraudTablesAreMadeFrom)
{
    const RunningEditor editor;
    editor.sendCommand(IDM_CAMERA_FORWARD);
    editor.call([](Editor& e) { e.document.model.attributes[0].flags |= gouraudShading; });
    const ShownAlert dialog = editor.openDialog(IDM_OPTIONS_LIGHT);
    pressAt(dialog, inPicker(dialog, 0.5, 0.5));
    editor.closeDialog(dialog, IDOK);
    editor.sendCommand(IDM_GOURAUD_TABLE);
    editor.call([](Editor& e) {
        // All four corners of polygon 0 have the normal z -0.57735; light comes along +z.
        // 0.57735 x 16 is 9.24: 20 + 9.
        for (const Rgb555 colour : e.document.model.gouraud[0].color)
            EXPECT_EQ(colour, opaqueBit | rgb555(29, 29, 29));
        EXPECT_EQ(e.document.model.attributes[0].flags, polygonFace | gouraudShading);
    });
}

/// Answers the system's colour dialog over the light dialog: types the three numbers and OK.
void chooseColour(const RunningEditor& editor, const ShownAlert& dialog, int button, int red,
                  int green, int blue)
{
    PostMessageA(dialog.window, WM_COMMAND, static_cast<WPARAM>(button), 0);
    constexpr int redField = 706, greenField = 707, blueField = 708; // of every colour dialog
    HWND colours = nullptr;
    ASSERT_TRUE(waitUntil([&] {
        colours = editor.findWindow("#32770");
        return colours && colours != dialog.window && GetDlgItem(colours, redField);
    }));
    SetDlgItemInt(colours, redField, static_cast<UINT>(red), FALSE);
    SetDlgItemInt(colours, greenField, static_cast<UINT>(green), FALSE);
    SetDlgItemInt(colours, blueField, static_cast<UINT>(blue), FALSE);
    PostMessageA(colours, WM_COMMAND, IDOK, 0);
    ASSERT_TRUE(waitUntil([&] { return !IsWindow(colours); }));
}

TEST(LightDialog, ColoursAreChosenInTheSystemsDialogAndTakenWithOk)
{
    const RunningEditor editor;
    editor.call([](Editor& e) { e.colourPicking.picker = ColourPicker::system; });
    ShownAlert dialog = editor.openDialog(IDM_OPTIONS_LIGHT);
    chooseColour(editor, dialog, IDC_LIGHT_COLOUR, 255, 128, 64);
    chooseColour(editor, dialog, IDC_LIGHT_AMBIENT, 8, 16, 0);
    savePicture(editor.pictureOf(dialog.window), "light-dialog-colours");
    EXPECT_NE(editor.ask([](Editor& e) { return e.view.lightColour; }), 0xFFFF) << "at once";
    editor.closeDialog(dialog, IDOK);
    editor.call([](Editor& e) {
        EXPECT_EQ(e.view.lightColour, fromPickedColour(RGB(255, 128, 64)));
        EXPECT_EQ(e.view.ambientColour, fromPickedColour(RGB(8, 16, 0)));
    });
}

TEST(LightDialog, TheSystemsColoursAreCutToFifteenBitsAndBlueToSix)
{
    EXPECT_EQ(fromPickedColour(RGB(0, 0, 0)), 0);
    EXPECT_EQ(fromPickedColour(RGB(255, 0, 0)), 0x7C00);
    EXPECT_EQ(fromPickedColour(RGB(0, 255, 0)), 0x03E0);
    EXPECT_EQ(fromPickedColour(RGB(0, 0, 255)), 0x003E);
    EXPECT_EQ(fromPickedColour(RGB(7, 7, 3)), 0x0000);
    EXPECT_EQ(fromPickedColour(RGB(0, 0, 64)), 16);
}

TEST(Help, SaysSoWhenThereIsNone)
{
    const RunningEditor editor; // the tests' folder holds no help
    const ShownAlert shown = editor.openDialog(IDM_HELP_CONTENTS);
    EXPECT_EQ(shown.text, "Cannot find Help on this computer.");
    EXPECT_TRUE(editor.press(shown, IDOK));
    editor.post(WM_KEYDOWN, VK_F1);
    const ShownAlert again = editor.waitForAlert();
    EXPECT_EQ(again.text, shown.text) << "F1 asks for it as well";
    EXPECT_TRUE(editor.press(again, IDOK));
}

TEST(Keys, F6GoesFromWindowToWindow)
{
    const RunningEditor editor;
    for (const int command : {IDM_VIEW_HIERARCHY, IDM_VIEW_TEXTURES}) editor.sendCommand(command);
    editor.call([](Editor& e) { SetActiveWindow(e.mainWindow); });
    const auto active = [&] { return editor.ask([](Editor&) { return GetActiveWindow(); }); };
    const auto [textures, hierarchy] = editor.ask([](Editor& e) {
        return std::pair{e.textureWindow.window, e.hierarchyWindow};
    });
    for (const HWND next : {textures, hierarchy, editor.window()}) {
        editor.post(WM_KEYDOWN, VK_F6);
        EXPECT_TRUE(waitUntil([&] { return active() == next; }));
    }
}

} // namespace

} // namespace facetor
