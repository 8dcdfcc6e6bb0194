#include "base/file.h"
#include "base/folder.h"
#include "base/temporary_folder.h"
#include "driver/running_editor.h"
#include "gui/model_files.h"
#include "resources/resource_ids.h"
#include "ui/picture_list.h"
#include "ui/window_data.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <commctrl.h>

#include <memory>

namespace facetor {

namespace {

/// An editor that keeps versions and recovery files in `folder`.
std::unique_ptr<RunningEditor> startKeeping(const TemporaryFolder& folder,
                                            std::vector<std::string> arguments = {})
{
    return std::make_unique<RunningEditor>(std::move(arguments), Platform::nt, nullptr,
                                           std::string(), folder.file("kept"));
}

int rowsOf(const ShownAlert& dialog, int list)
{
    return static_cast<int>(SendDlgItemMessageA(dialog.window, list, LVM_GETITEMCOUNT, 0, 0));
}

std::string textOf(const ShownAlert& dialog, int control)
{
    return windowText(GetDlgItem(dialog.window, control));
}

void rename(const RunningEditor& editor, const std::string& name)
{
    editor.call([&](Editor& e) {
        (void)change(e.document, Word::stepRename, [&] {
            e.document.model.names[0] = name;
            return EditOutcome{};
        });
    });
}

std::string nameOf(const RunningEditor& editor)
{
    return editor.ask([](Editor& e) { return e.document.model.names[0]; });
}

TEST(Keep, WhatASaveReplacesCanBeOpenedAgain)
{
    const TemporaryFolder folder;
    const std::string model = folder.file("a model.mx3"), list = folder.file("list.mxt");
    writeCubeFile(model, 5);
    writeTexturesFile(list, 0x8001);
    const auto editor = startKeeping(folder, {model, list});
    ASSERT_TRUE(editor->waitForTitle(model));
    for (const char* name : {"one", "two"}) {
        rename(*editor, name);
        editor->sendCommand(IDM_FILE_SAVE);
    }
    editor->call(
        [](Editor& e) { (void)e.runCommand(e, CommandWindow::textures, IDM_TEXTURE_SAVE, 0); });
    const ShownAlert dialog = editor->openDialog(IDM_FILE_VERSIONS);
    EXPECT_EQ(rowsOf(dialog, IDC_VERSIONS_LIST), 2);
    EXPECT_EQ(textOf(dialog, IDC_VERSIONS_DOCUMENT),
              "a model.mx3  (" + folder.path().string() + ")");
    savePicture(editor->pictureOf(dialog.window), "versions");
    editor->call(
        [&](Editor&) { choosePictureRow(GetDlgItem(dialog.window, IDC_VERSIONS_LIST), 1); });
    editor->closeDialog(dialog, IDOK);
    EXPECT_EQ(nameOf(*editor), "Model00");
    EXPECT_EQ(editor->title(), "Facetor for NT - Untitled");
    EXPECT_TRUE(editor->isChanged());
    editor->sendCommand(IDM_EDIT_STEP_BACK);
    EXPECT_EQ(nameOf(*editor), "two");
    EXPECT_EQ(editor->title(), "Facetor for NT - " + model);
    const ShownAlert again = editor->openDialog(IDM_FILE_VERSIONS);
    editor->call([&](Editor&) {
        const HWND box = GetDlgItem(again.window, IDC_VERSIONS_DOCUMENT);
        SendMessageA(box, CB_SETCURSEL, 1, 0);
        SendMessageA(again.window, WM_COMMAND, MAKEWPARAM(IDC_VERSIONS_DOCUMENT, CBN_SELCHANGE),
                     reinterpret_cast<LPARAM>(box));
    });
    EXPECT_EQ(rowsOf(again, IDC_VERSIONS_LIST), 1) << "the texture list's";
    savePicture(editor->pictureOf(again.window), "versions-list");
    editor->closeDialog(again, IDOK);
    EXPECT_TRUE(editor->ask([](Editor& e) {
        return areTexturesChanged(e.document) && e.document.textureFile.empty();
    }));
    editor->call([](Editor& e) {
        setModelChanged(e.document, false);
        setTexturesChanged(e.document, false);
    });
}

TEST(Keep, AfterAFileThatWasReadInPartTheNextSaveAsks)
{
    const TemporaryFolder folder;
    const std::string good = folder.file("good.mx3"), cut = folder.file("cut.mx3");
    writeCubeFile(good, 6);
    const auto whole = readFile(good);
    ASSERT_TRUE(whole);
    ASSERT_EQ(writeFile(cut, std::span(*whole).first(whole->size() / 2)), Message::none);
    const auto editor = startKeeping(folder, {good});
    ASSERT_TRUE(editor->waitForTitle(good));
    editor->beginOpen(cut);
    editor->dismiss("Sorry, this file format is not supported.");
    EXPECT_EQ(editor->title(), "Facetor for NT - " + good);
    EXPECT_EQ(editor->ask([](Editor& e) { return e.keeper.recoverable.size(); }), 1u);
    for (const int answer : {IDCANCEL, IDNO}) {
        editor->post(WM_COMMAND, IDM_FILE_SAVE);
        const ShownAlert question = editor->waitForAlert();
        EXPECT_EQ(question.text,
                  "Only a part of cut.mx3 could be read. Saving would put that part over "
                  "good.mx3.\nSave under another name?\n\n" +
                      cut + "\n" + good);
        savePicture(editor->pictureOf(question.window), "question");
        editor->closeDialog(question, answer);
        EXPECT_EQ(readFile(good) == whole, answer == IDCANCEL);
    }
    editor->sendCommand(IDM_FILE_SAVE); // asks no more
    const ShownAlert dialog = editor->openDialog(IDM_FILE_RECOVER);
    savePicture(editor->pictureOf(dialog.window), "recover");
    EXPECT_EQ(rowsOf(dialog, IDC_RECOVERY_LIST), 1);
    editor->closeDialog(dialog, IDOK);
    EXPECT_EQ(editor->statusText(1), "Polygons = 6");
    EXPECT_EQ(editor->title(), "Facetor for NT - " + good);
    EXPECT_TRUE(editor->isChanged()) << "no file holds it any more";
    editor->setChanged(false);
}

TEST(Keep, WhatWasNotSavedIsOfferedAtTheNextStart)
{
    enum class How { yesThenCancel, endOfSession, no };
    for (const How how : {How::yesThenCancel, How::endOfSession, How::no}) {
        SCOPED_TRACE(static_cast<int>(how));
        const TemporaryFolder folder;
        const std::string model = folder.file("model.mx3");
        writeCubeFile(model, 6);
        {
            const auto editor = startKeeping(folder, {model});
            ASSERT_TRUE(editor->waitForTitle(model));
            rename(*editor, "changed");
            if (how == How::endOfSession) {
                EXPECT_EQ(editor->send(WM_ENDSESSION, TRUE, 0), 0);
                editor->call([](Editor& e) { setModelChanged(e.document, false); });
            }
            editor->post(WM_CLOSE);
            if (how != How::endOfSession) {
                EXPECT_TRUE(editor->press(editor->waitForAlert(), how == How::no ? IDNO : IDYES));
            }
            if (how == How::yesThenCancel) {
                EXPECT_TRUE(editor->cancelFileDialog());
            }
            EXPECT_EQ(editor->waitForEnd(), 0);
        }
        const auto editor = startKeeping(folder);
        if (how == How::no) {
            EXPECT_TRUE(namesIn(folder.file("kept\\Recovery")).empty());
            EXPECT_EQ(editor->findAlert().window, nullptr);
            continue;
        }
        const ShownAlert dialog = editor->waitForAlert();
        ASSERT_EQ(rowsOf(dialog, IDC_RECOVERY_LIST), 1);
        savePicture(editor->pictureOf(dialog.window), "start");
        EXPECT_TRUE(editor->press(dialog, IDOK));
        ASSERT_TRUE(editor->waitForTitle(model));
        EXPECT_EQ(nameOf(*editor), "changed");
        EXPECT_TRUE(editor->isChanged());
        editor->setChanged(false);
    }
}

} // namespace

} // namespace facetor
