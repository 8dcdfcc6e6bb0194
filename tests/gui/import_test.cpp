#include "base/file.h"
#include "base/temporary_folder.h"
#include "driver/running_editor.h"
#include "exchange/look.h"
#include "gui/model_files.h"
#include "resources/resource_ids.h"
#include "ui/window_data.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <commctrl.h>

namespace facetor {

namespace {

/// Two quads of an object, the second with a picture, and a third one where `more` says so.
std::string twoQuads(const std::string& height, const std::string& more = {})
{
    return "mtllib t.mtl\nv 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 " + height +
           " 0\nv 2 0 0\nv 2 1 0\nv 3 0 0\nv 3 1 0\nvt 0 0\nvt 1 0\nvt 1 1\nvt 0 1\no Wall\n"
           "f 1 2 3 4\nusemtl brick\nf 2/1 5/2 6/3 3/4\n" +
           more;
}

void writeModelFiles(const TemporaryFolder& folder)
{
    writeTextFile(folder.file("t.obj"), twoQuads("1"));
    writeTextFile(folder.file("t.mtl"), "newmtl brick\nmap_Kd brick.png\n");
    TextureList list;
    ASSERT_EQ(list.create(), Message::none);
    Texels texels;
    ASSERT_TRUE(texels.allocate(64));
    for (Rgb555& texel : texels) texel = opaqueBit | rgb555(31, 8, 0);
    list.set(0, 8, 8, std::move(texels));
    ASSERT_EQ(writeFile(folder.file("brick.png"), encodeTexture(list, 0)), Message::none);
}

/// What stands in the status bar in place of the counts; empty while those do.
std::string statusLine(const RunningEditor& editor)
{
    const HWND bar = editor.ask([](Editor& e) { return e.statusBar; });
    return SendMessageA(bar, SB_ISSIMPLE, 0, 0) != 0 ? editor.statusText(0) : std::string();
}

TEST(ImportModel, ComesInAsOneStepAndAgainWithItsAttributes)
{
    const TemporaryFolder folder;
    writeModelFiles(folder);
    writeTexturesFile(folder.file("old.mxt"), rgb555(0, 31, 0));
    const RunningEditor editor({folder.file("old.mxt")});
    EXPECT_FALSE(editor.isItemEnabled(IDM_FILE_IMPORT_AGAIN));
    editor.post(WM_COMMAND, IDM_FILE_IMPORT_AGAIN); // by its key: nothing

    editor.postDrop({folder.file("t.obj")});
    const ShownAlert dialog = editor.waitForAlert();
    savePicture(editor.pictureOf(dialog.window), "import-dialog");
    SetDlgItemTextA(dialog.window, IDC_IMPORT_SCALE, "0");
    EXPECT_EQ(editor.refusalOf(dialog), "Data Error(Scale)");
    SetDlgItemTextA(dialog.window, IDC_IMPORT_SCALE, "10");
    SetDlgItemTextA(dialog.window, IDC_IMPORT_WIDTH, "12");
    EXPECT_EQ(editor.refusalOf(dialog), "Width of Texture should be multiple of 8. ");
    SetDlgItemTextA(dialog.window, IDC_IMPORT_WIDTH, "32");
    editor.closeDialog(dialog, IDOK);
    ASSERT_TRUE(editor.waitForTitle("t"));
    EXPECT_EQ(statusLine(editor), "2 polygons, 1 textures");
    editor.call([](Editor& e) {
        EXPECT_TRUE(isModelChanged(e.document) && areTexturesChanged(e.document));
        EXPECT_EQ(e.document.textures.slot(0).pixels[0], opaqueBit | rgb555(31, 8, 0));
        EXPECT_TRUE(e.document.textureFile.empty());
        EXPECT_EQ(e.settings.import.scale, 10);
        (void)change(e.document, Word::stepAttributes, [&] {
            e.document.model.attributes[0].flags |= picked | meshMode;
            return EditOutcome{};
        });
        e.view.modelRotation[1] = 1234;
    });

    writeTextFile(folder.file("t.obj"), twoQuads("1.5"));
    editor.sendCommand(IDM_FILE_IMPORT_AGAIN);
    EXPECT_EQ(statusLine(editor), "2 polygons kept, 0 new, 0 gone");
    writeTextFile(folder.file("t.obj"), twoQuads("1.5", "f 5/1 7/2 8/3 6/4\n"));
    editor.sendCommand(IDM_FILE_IMPORT_AGAIN);
    EXPECT_EQ(statusLine(editor), "2 polygons kept, 1 new, 0 gone");
    savePicture(editor.pictureOf(editor.window()), "import-again");
    editor.call([](Editor& e) {
        const Model& model = e.document.model;
        EXPECT_EQ(model.attributes[0].flags & (picked | meshMode), picked | meshMode);
        EXPECT_EQ(model.vertices[model.polygons[0].corner[1]].y, -15);
        EXPECT_EQ(model.attributes[2].texture, 1);
        EXPECT_EQ(e.document.textures.usedCount(), 2u);
        EXPECT_EQ(e.view.modelRotation[1], 1234);
    });
    editor.sendCommand(IDM_SELECT_ALL);
    EXPECT_EQ(statusLine(editor), "") << "the counts are back";
    EXPECT_EQ(editor.statusText(1), "Polygons = 3");

    const ShownAlert report = editor.openDialog(IDM_FILE_IMPORT_REPORT);
    EXPECT_NE(windowText(GetDlgItem(report.window, IDC_REPORT_TEXT)).find("Polygons kept: 2\r\n"),
              std::string::npos);
    savePicture(editor.pictureOf(report.window), "import-report");
    editor.closeDialog(report, IDOK);

    for (int steps = 0; steps < 4; ++steps) editor.sendCommand(IDM_EDIT_STEP_BACK);
    EXPECT_EQ(editor.title(), "Facetor for NT - Untitled");
    editor.call([&](Editor& e) {
        EXPECT_EQ(e.document.textures.slot(0).pixels[0] & 0x7FFF, rgb555(0, 31, 0));
        EXPECT_EQ(e.document.textureFile, folder.file("old.mxt"));
        EXPECT_FALSE(isModelChanged(e.document) || areTexturesChanged(e.document));
    });
    for (int steps = 0; steps < 4; ++steps) editor.sendCommand(IDM_EDIT_STEP_FORWARD);

    editor.post(WM_COMMAND, IDM_FILE_SAVE);
    const HWND save = editor.waitForFileDialog();
    EXPECT_EQ(windowText(GetDlgItem(save, 1148)), "t.mx3") << "which is asked for";
    ASSERT_TRUE(editor.fillFileDialog(folder.file("t.mx3")));
    ASSERT_TRUE(editor.waitForTitle(folder.file("t.mx3")));
    EXPECT_FALSE(editor.isChanged());
    editor.open(folder.file("t.mx3"));
    editor.sendCommand(IDM_FILE_IMPORT_AGAIN);
    EXPECT_EQ(statusLine(editor), "3 polygons kept, 0 new, 0 gone") << "what it came from is known";

    writeTextFile(folder.file("u.obj"), twoQuads("2", "f 5/1 7/2 8/3 6/4\n"));
    editor.beginOpen(folder.file("u.obj"));
    const ShownAlert onto = editor.waitForAlert();
    EXPECT_EQ(windowText(GetDlgItem(onto.window, IDC_IMPORT_SCALE)), "10") << "as chosen last";
    CheckDlgButton(onto.window, IDC_IMPORT_ONTO, BST_CHECKED);
    editor.closeDialog(onto, IDOK);
    EXPECT_EQ(statusLine(editor), "3 polygons kept, 0 new, 0 gone");
    EXPECT_EQ(editor.title(), "Facetor for NT - " + folder.file("t.mx3"));
}

TEST(ImportModel, WhatIsRefusedChangesNothingAndSaysWhy)
{
    const TemporaryFolder folder;
    std::string many = "v 0 0 0\nv 1 0 0\nv 0 1 0\nv 1 1 1\n";
    for (int i = 0; i < 4097; ++i) many += "f 1 2 3 4\n";
    const std::string unsupported = "Sorry, this file format is not supported.\n\n";
    const std::pair<std::string, std::string> rows[] = {
        {"v 0 0 0\nf 1 2 3\n", unsupported + "bad.obj: line 2: an index is out of range"},
        {many, unsupported + "bad.obj: 4097 polygons where 4096 fit"}};
    const RunningEditor editor;
    const auto refuse = [&](const std::string& path, const std::string& expected) {
        editor.beginOpen(path);
        const ShownAlert dialog = editor.waitForAlert();
        EXPECT_TRUE(editor.press(dialog, IDOK));
        editor.dismiss(expected, "exclamation");
        EXPECT_EQ(editor.title(), "Facetor for NT - Untitled");
        EXPECT_EQ(editor.statusText(1), "Polygons = 6");
        EXPECT_FALSE(editor.isChanged());
    };
    for (const auto& [text, expected] : rows) {
        writeTextFile(folder.file("bad.obj"), text);
        refuse(folder.file("bad.obj"), expected);
    }
    refuse(folder.file("gone.glb"), "Cannot open File.\n\ngone.glb: missing");
}

TEST(ImportModel, IsExportedAgainAndAsksBeforeItReplacesOtherFiles)
{
    const TemporaryFolder folder;
    writeModelFiles(folder);
    writeTextFile(folder.file("out.mtl"), "not ours");
    const RunningEditor editor;
    editor.postDrop({folder.file("t.obj")});
    editor.closeDialog(editor.waitForAlert(), IDOK);
    ASSERT_TRUE(editor.waitForTitle("t"));
    for (const int answer : {IDNO, IDYES}) {
        editor.post(WM_COMMAND, IDM_FILE_EXPORT);
        ASSERT_TRUE(editor.fillFileDialog(folder.file("out"), 1));
        const ShownAlert question = editor.waitForAlert();
        EXPECT_TRUE(question.text.starts_with("The export also writes out.mtl,")) << question.text;
        EXPECT_TRUE(editor.press(question, answer));
        editor.call([](Editor&) {});
        EXPECT_EQ(readFile(folder.file("out.obj")).has_value(), answer == IDYES);
    }
    EXPECT_TRUE(readFile(folder.file("out.textures/0000.png")));
    editor.post(WM_COMMAND, IDM_FILE_EXPORT);
    ASSERT_TRUE(editor.fillFileDialog(folder.file("whole"), 2));
    editor.call([](Editor&) {});
    EXPECT_TRUE(readFile(folder.file("whole.glb")));
}

} // namespace

} // namespace facetor
