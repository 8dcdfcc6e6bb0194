// What other programs write while the editor has it open. The test's own thread is the other
// program.
#include "base/file.h"
#include "base/temporary_folder.h"
#include "commands/watched_pictures.h"
#include "driver/running_editor.h"
#include "gui/model_files.h"
#include "image/png_codec.h"
#include "resources/resource_ids.h"
#include "watch/picture_store.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <filesystem>
#include <utility>
#include <vector>

namespace facetor {

namespace {

constexpr Rgb555 red = opaqueBit | rgb555(31, 0, 0), green = opaqueBit | rgb555(0, 31, 0);

void writePicture(const std::string& path, std::uint16_t width, Rgb555 colour)
{
    const std::vector<Rgb555> texels(std::size_t{width} * 8, colour);
    EXPECT_EQ(writeFile(path, pngCodec.encode({width, 8, texels})), Message::none);
}

std::uint32_t polygonsOf(const RunningEditor& editor)
{
    return editor.ask([](Editor& e) { return e.document.model.totalPolygonCount; });
}

Rgb555 texelOf(const RunningEditor& editor, std::uint32_t slot)
{
    return editor.ask([&](Editor& e) { return e.document.textures.slot(slot).pixels[0]; });
}

std::string lineOf(const RunningEditor& editor)
{
    return editor.ask([](Editor& e) { return e.statusLine; });
}

/// Waits until the editor knows all its files as they are, and has nothing to do about them.
bool isUpToDate(const RunningEditor& editor)
{
    return waitUntil([&] {
        return editor.ask([](Editor& e) {
            for (const WatchedPart part : {WatchedPart::model, WatchedPart::textures,
                                           WatchedPart::source, WatchedPart::pictures})
                for (const WatchedFile& file : e.watching.watch.files(part))
                    if (e.watching.looker.stamps()[file.path] != stampOf(file.path)) return false;
            return !e.watching.watch.isPending();
        });
    });
}

TEST(Watch, AModelIsReadAgainWithItsMarks)
{
    const TemporaryFolder folder;
    const std::string model = folder.file("a model.mx3");
    writeCubeFile(model, 6);
    const RunningEditor editor({model});
    ASSERT_TRUE(editor.waitForTitle(model));
    editor.sendCommand(IDM_FILE_WATCH);
    EXPECT_TRUE(editor.isItemChecked(IDM_FILE_WATCH));
    editor.call([](Editor& e) {
        e.document.model.attributes[1].flags |= picked;
        e.document.model.attributes[5].flags |= picked;
        e.view.modelRotation[1] = 1234;
    });
    writeCubeFile(model, 5);
    EXPECT_TRUE(waitUntil([&] { return polygonsOf(editor) == 5; }));
    EXPECT_EQ(lineOf(editor), "a model.mx3 has been read again: another program has changed it");
    EXPECT_FALSE(editor.isChanged());
    EXPECT_EQ(editor.title(), "Facetor for NT - " + model);
    editor.call([](Editor& e) {
        EXPECT_TRUE(isPicked(e.document.model.attributes[1]));
        EXPECT_EQ(e.view.modelRotation[1], 1234);
    });
    savePicture(editor.pictureOf(editor.window()), "read-again");
    editor.sendCommand(IDM_EDIT_STEP_BACK);
    EXPECT_EQ(polygonsOf(editor), 6u);
    EXPECT_TRUE(editor.isChanged());
    editor.sendCommand(IDM_FILE_SAVE);
    EXPECT_TRUE(isUpToDate(editor));
    EXPECT_EQ(polygonsOf(editor), 6u) << "what the editor writes itself is no change";

    // Half of a file is nothing to read; the folder may go and come back.
    const auto whole = readFile(model);
    ASSERT_EQ(writeFile(model, std::span(*whole).first(whole->size() / 2)), Message::none);
    EXPECT_TRUE(waitUntil([&] { return !lineOf(editor).empty(); }));
    EXPECT_EQ(lineOf(editor).find("a model.mx3 has changed and cannot be read. "), 0u);
    EXPECT_EQ(polygonsOf(editor), 6u);
    const auto away = folder.path().string() + " away";
    std::filesystem::rename(folder.path(), away);
    EXPECT_TRUE(waitUntil([&] {
        return editor.ask([&](Editor& e) { return !e.watching.looker.stamps()[model].exists; });
    }));
    std::filesystem::rename(away, folder.path());
    writeCubeFile(model, 4);
    EXPECT_TRUE(waitUntil([&] { return polygonsOf(editor) == 4; }));

    // What becomes of a file while another one is open is found when a step brings it back.
    const std::string other = folder.file("other.mx3");
    writeCubeFile(other, 2);
    editor.open(other);
    EXPECT_EQ(polygonsOf(editor), 2u);
    writeCubeFile(model, 3);
    editor.sendCommand(IDM_EDIT_STEP_BACK);
    EXPECT_TRUE(waitUntil([&] { return polygonsOf(editor) == 3; }));
    editor.sendCommand(IDM_FILE_WATCH);
    editor.call([](Editor& e) { EXPECT_TRUE(e.watching.watch.paths().empty()); });
}

TEST(Watch, WhatIsEditedIsAskedAboutOnceForEachChange)
{
    const TemporaryFolder folder;
    const std::string model = folder.file("model.mx3"), list = folder.file("list.mxt");
    writeCubeFile(model, 6);
    writeTexturesFile(list, red);
    const RunningEditor editor({model, list});
    ASSERT_TRUE(editor.waitForTitle(model));
    editor.sendCommand(IDM_FILE_WATCH);
    editor.sendCommand(IDM_INVERT_SURFACE);
    editor.setChanged();
    const ShownAlert dialog = editor.openDialog(IDM_OPTIONS_SCREEN);
    writeCubeFile(model, 5);
    writeTexturesFile(list, green);
    EXPECT_TRUE(waitUntil([&] {
        return editor.ask([&](Editor& e) {
            return e.watching.looker.stamps()[model] == stampOf(model) &&
                   e.watching.watch.isPending();
        });
    }));
    editor.closeDialog(dialog, IDCANCEL);
    const ShownAlert question = editor.waitForAlert();
    EXPECT_EQ(question.text,
              "Another program has changed model.mx3.\nRead it again without your unsaved changes? "
              "Step Backward brings them back.\n\n" +
                  model);
    savePicture(editor.pictureOf(question.window), "question");
    EXPECT_TRUE(editor.press(question, IDNO));
    EXPECT_TRUE(waitUntil([&] { return texelOf(editor, 0) == green; })) << "nothing is lost by it";
    EXPECT_TRUE(isUpToDate(editor));
    EXPECT_EQ(polygonsOf(editor), 6u);
    writeCubeFile(model, 4);
    EXPECT_TRUE(editor.press(editor.waitForAlert(), IDYES));
    EXPECT_TRUE(waitUntil([&] { return polygonsOf(editor) == 4; }));
    EXPECT_FALSE(editor.isChanged());
    editor.sendCommand(IDM_EDIT_STEP_BACK);
    EXPECT_EQ(polygonsOf(editor), 6u);
    editor.setChanged(false);
}

TEST(Watch, ASourceIsImportedAgainWithAllThatItNames)
{
    const TemporaryFolder folder;
    const std::string source = folder.file("t.obj"), material = folder.file("t.mtl");
    const std::string wall = "mtllib t.mtl\nv 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\nv 2 0 0\nv 2 1 0\n"
                             "o Wall\nusemtl a\nf 1 2 3 4\n";
    writeTextFile(source, wall);
    writeTextFile(material, "newmtl a\nKd 1 0 0\n");
    const RunningEditor editor;
    editor.sendCommand(IDM_FILE_WATCH);
    editor.postDrop({source});
    editor.closeDialog(editor.waitForAlert(), IDOK);
    ASSERT_TRUE(editor.waitForTitle("t"));
    EXPECT_EQ(editor.ask([](Editor& e) { return e.watching.watch.paths().size(); }), 2u);
    writeTextFile(source, wall + "f 2 5 6 3\n");
    EXPECT_TRUE(waitUntil([&] { return polygonsOf(editor) == 2; })) << "without a question";
    writeTextFile(source, "f 1 2 3\n");
    EXPECT_TRUE(
        waitUntil([&] { return lineOf(editor).find("cannot be read") != std::string::npos; }));
    EXPECT_EQ(lineOf(editor),
              "t.obj has changed and cannot be read. line 1: an index is out of range");
    EXPECT_EQ(polygonsOf(editor), 2u);
    editor.call([](Editor& e) {
        (void)change(e.document, Word::stepAttributes, [&] {
            e.document.model.attributes[0].flags |= meshMode;
            return EditOutcome{};
        });
    });
    writeTextFile(source, wall);
    EXPECT_TRUE(editor.press(editor.waitForAlert(), IDYES));
    EXPECT_TRUE(waitUntil([&] { return polygonsOf(editor) == 1; }));
    editor.call([](Editor& e) {
        EXPECT_TRUE(e.document.model.attributes[0].flags & meshMode);
        setModelChanged(e.document, false);
        setTexturesChanged(e.document, false);
    });
}

TEST(Watch, ATextureFollowsThePictureThatItCameFrom)
{
    const TemporaryFolder folder;
    const std::string picture = folder.file("a picture.png"), list = folder.file("list.mxt");
    writePicture(picture, 8, red);
    {
        const RunningEditor editor({}, Platform::nt, nullptr, {}, folder.file("kept"));
        editor.sendCommand(IDM_VIEW_TEXTURES);
        const auto command = [&](int number, const std::string& path = {}) {
            editor.call([&](Editor& e) {
                (void)e.runCommand(e, CommandWindow::textures, number,
                                   reinterpret_cast<LPARAM>(path.c_str()));
            });
        };
        command(IDM_TEXTURE_WATCH);
        command(IDM_FILE_OPEN_PATH, picture);
        EXPECT_EQ(texelOf(editor, 0), red);
        command(IDM_TEXTURE_INSERT); // which moves it
        writePicture(picture, 16, green);
        EXPECT_TRUE(waitUntil([&] { return texelOf(editor, 1) == green; }));
        writePicture(picture, 12, red);
        EXPECT_TRUE(waitUntil([&] { return lineOf(editor).ends_with("8. "); }));
        EXPECT_EQ(lineOf(editor), "a picture.png has changed and cannot be read. "
                                  "Width of Texture should be multiple of 8. ");
        savePicture(editor.pictureOf(editor.window()), "refused");
        EXPECT_EQ(texelOf(editor, 1), green);
        EXPECT_EQ(editor.findAlert().window, nullptr);
        editor.call([&](Editor& e) { e.document.textureFile = list; });
        command(IDM_TEXTURE_SAVE);
    }
    writePicture(picture, 8, red); // while nobody looks
    const RunningEditor editor({list}, Platform::nt, nullptr, {}, folder.file("kept"));
    editor.call([&](Editor& e) { // a name that leads out of the plug-ins' folder is none of them
        const PictureLinks links = std::exchange(e.watching.links, {});
        ASSERT_FALSE(links.empty());
        PictureLink stranger = links.front();
        stranger.plugIn = "..\\PlugIn\\" + stranger.plugIn;
        writeTextFile(e.watching.picturesPath, formatPictures({{{list, {stranger}}}}));
        recallPictures(e, list);
        EXPECT_TRUE(e.watching.links.empty());
        e.watching.links = links;
    });
    editor.call(
        [](Editor& e) { (void)e.runCommand(e, CommandWindow::textures, IDM_TEXTURE_WATCH, 0); });
    EXPECT_TRUE(waitUntil([&] { return texelOf(editor, 1) == red; }));
    editor.call([](Editor& e) {
        EXPECT_TRUE(areTexturesChanged(e.document));
        setTexturesChanged(e.document, false);
    });
    editor.sendCommand(IDM_FILE_WATCH);
    editor.call([&](Editor& e) { // Save keeps to the extension of lists, whatever the name was
        e.document.textureFile = folder.file("list.123");
        (void)e.runCommand(e, CommandWindow::textures, IDM_TEXTURE_SAVE, 0);
        EXPECT_EQ(e.watching.watch.files(WatchedPart::textures),
                  (std::vector<WatchedFile>{{list, stampOf(list)}}));
        EXPECT_TRUE(e.watching.slotsOfFile.any());
    });
}

TEST(Watch, AModelBringsItsTextureListWhereTheUserWantsThat)
{
    const TemporaryFolder folder;
    const std::string model = folder.file("ship.mx3"), list = folder.file("ship.mxt");
    writeCubeFile(model, 6);
    writeTexturesFile(list, red);
    for (const int answer : {IDNO, IDYES}) {
        SCOPED_TRACE(answer);
        const TemporaryFolder settings; // of one who has none yet
        const RunningEditor editor({}, Platform::nt, nullptr, settings.file("Facetor.ini"));
        editor.beginOpen(model);
        const ShownAlert question = editor.waitForAlert();
        savePicture(editor.pictureOf(question.window), "question");
        EXPECT_TRUE(editor.press(question, answer));
        ASSERT_TRUE(editor.waitForTitle(model));
        const auto isOpen = [&] {
            return editor.ask([&](Editor& e) { return e.document.textureFile == list; });
        };
        EXPECT_EQ(isOpen(), answer == IDYES);
        EXPECT_EQ(editor.isItemChecked(IDM_FILE_WITH_TEXTURES), answer == IDYES);
        editor.open(model); // asks no more
        EXPECT_EQ(isOpen(), answer == IDYES);
        editor.call([](Editor& e) { EXPECT_FALSE(areTexturesChanged(e.document)); });
    }
}

} // namespace

} // namespace facetor
