#include "app/main_window.h"
#include "base/file.h"
#include "base/temporary_folder.h"
#include "driver/running_editor.h"
#include "gui/model_files.h"
#include "resources/resource_ids.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <filesystem>

namespace facetor {

namespace {

constexpr char programTitle[] = "Facetor for NT - ";

TEST(Open, ACommandLineArgumentOfAnyScriptIsOpenedAndItsFullPathIsTheTitle)
{
    const TemporaryFolder folder;
    const auto before = std::filesystem::current_path();
    std::filesystem::current_path(folder.path());
    // "Modell é 模型.mx3"
    const std::string name = "Modell \xC3\xA9 \xE6\xA8\xA1\xE5\x9E\x8B.mx3";
    writeCubeFile(folder.file(name), 5);
    {
        const RunningEditor editor({name});
        EXPECT_TRUE(editor.waitForTitle(folder.file(name)));
        EXPECT_EQ(editor.statusText(1), "Polygons = 5");
        std::array<wchar_t, 300> wide{};
        GetWindowTextW(editor.window(), wide.data(), static_cast<int>(wide.size()));
        EXPECT_TRUE(std::wstring(wide.data()).ends_with(L"Modell \x00E9 \x6A21\x578B.mx3"));
    }
    std::filesystem::current_path(before);
}

TEST(Open, OnlyTheFirstOfThreeDroppedFilesIsOpened)
{
    const TemporaryFolder folder;
    std::vector<std::string> paths;
    for (std::uint32_t count = 2; count <= 4; ++count) {
        paths.push_back(folder.file(std::to_string(count) + ".mx3"));
        writeCubeFile(paths.back(), count);
    }
    const RunningEditor editor;
    editor.postDrop(paths);
    ASSERT_TRUE(editor.waitForTitle(paths[0]));
    const std::vector<int> seen = editor.commandsSeen();
    EXPECT_EQ(std::ranges::count(seen, IDM_FILE_OPEN_PATH), 1);
    EXPECT_EQ(editor.statusText(1), "Polygons = 2");
}

TEST(Open, ADropWithoutFilesOrWithAPathTooLongOpensNothing)
{
    const RunningEditor editor;
    editor.postDrop({});
    editor.postDrop({"C:\\" + std::string(254, 'x')}); // 257 bytes
    const ShownAlert tooLong = editor.waitForAlert();
    EXPECT_EQ(tooLong.text, "Cannot open File.");
    editor.postDrop({"C:\\" + std::string(254, 'x')});
    editor.post(WM_COMMAND, IDM_OPTIONS_LIGHT);
    std::atomic<bool> passed = false;
    editor.begin([&](Editor&) { passed = true; });
    EXPECT_TRUE(waitUntil([&] { return passed.load(); }));
    EXPECT_EQ(editor.findAlert().window, tooLong.window) << "nothing comes up over an alert";
    EXPECT_TRUE(editor.press(tooLong, IDOK));
    editor.postDrop({"C:\\" + std::string(253, 'x')}); // 256 bytes: looked for, and not there
    const ShownAlert missing = editor.waitForAlert();
    EXPECT_EQ(missing.text, "Sorry, this file format is not supported.");
    EXPECT_TRUE(editor.press(missing, IDOK));
    const std::vector<int> seen = editor.commandsSeen();
    EXPECT_EQ(std::ranges::count(seen, IDM_FILE_OPEN_PATH), 1);
}

TEST(Open, AFileThatIsNoModelLeavesEverythingAsItWas)
{
    const TemporaryFolder folder;
    writeCubeFile(folder.file("good.mx3"), 5);
    writeTextFile(folder.file("text.mx3"), "no model at all");
    writeTextFile(folder.file("empty.mx3"), "");
    const RunningEditor editor({folder.file("good.mx3")});
    ASSERT_TRUE(editor.waitForTitle(folder.file("good.mx3")));
    const WindowPicture before = editor.picture();
    for (const std::string& path :
         {folder.file("text.mx3"), folder.file("empty.mx3"), folder.file("missing.mx3"),
          folder.path().string(), std::string()}) {
        SCOPED_TRACE(path);
        editor.beginOpen(path);
        const ShownAlert shown = editor.waitForAlert();
        EXPECT_EQ(shown.caption, "Alert");
        EXPECT_EQ(shown.text, "Sorry, this file format is not supported.");
        EXPECT_TRUE(editor.press(shown, IDOK));
        EXPECT_EQ(editor.title(), programTitle + folder.file("good.mx3"));
        EXPECT_EQ(editor.statusText(1), "Polygons = 5");
        EXPECT_EQ(editor.picture(), before);
    }
}

TEST(Open, AModelThatBreaksOffInsideKeepsTitleAndChangedFlagAndCanBeDrawn)
{
    const TemporaryFolder folder;
    const std::string path = folder.file("cut.mx3");
    writeCubeFile(folder.file("whole.mx3"), 6);
    const auto whole = readFile(folder.file("whole.mx3"));
    ASSERT_TRUE(whole);
    ASSERT_EQ(writeFile(path, std::span(*whole).first(whole->size() / 2)), Message::none);
    const RunningEditor editor;
    editor.setChanged();
    editor.beginOpen(path);
    const ShownAlert question = editor.waitForAlert();
    EXPECT_TRUE(editor.press(question, IDNO));
    const ShownAlert shown = editor.waitForAlert();
    EXPECT_EQ(shown.text, "Sorry, this file format is not supported.");
    EXPECT_TRUE(editor.press(shown, IDOK));
    EXPECT_EQ(editor.title(), "Facetor for NT - Untitled");
    EXPECT_TRUE(editor.isChanged());
    for (int command = IDM_CAMERA_FORWARD; command <= IDM_CAMERA_BOTTOM; ++command) {
        editor.sendCommand(command);
        EXPECT_GT(editor.picture().width, 0);
    }
}

TEST(Open, TheOpenMessageCarriesAPathAndMayCarryNone)
{
    const TemporaryFolder folder;
    const std::string path = folder.file("sent.mx3");
    writeCubeFile(path, 1);
    const RunningEditor editor;
    editor.send(messageOpenPath, 0, 0);
    editor.sendCommand(IDM_FILE_OPEN_PATH, 0);
    EXPECT_EQ(editor.title(), "Facetor for NT - Untitled");
    editor.send(messageOpenPath, 0, reinterpret_cast<LPARAM>(path.c_str()));
    EXPECT_EQ(editor.title(), programTitle + path);
    EXPECT_EQ(editor.statusText(1), "Polygons = 1");
}

TEST(Open, AChangedModelIsAskedAboutFirst)
{
    struct Case {
        int button;
        bool opens;
        bool saves;
    };
    const TemporaryFolder folder;
    const std::string path = folder.file("next.mx3");
    writeCubeFile(path, 2);
    for (const Case& current :
         {Case{IDCANCEL, false, false}, {IDNO, true, false}, {IDYES, true, true}}) {
        SCOPED_TRACE(current.button);
        const RunningEditor editor;
        editor.setChanged();
        editor.beginOpen(path);
        const ShownAlert shown = editor.waitForAlert();
        EXPECT_EQ(shown.text, "Save changes of model before opening new file?");
        EXPECT_EQ(shown.buttons, (std::vector<int>{IDCANCEL, IDYES, IDNO}));
        EXPECT_TRUE(editor.press(shown, current.button));
        if (current.saves) {
            EXPECT_TRUE(editor.cancelFileDialog()) << "the model opens nevertheless";
        }
        EXPECT_TRUE(editor.waitForTitle(current.opens ? path : "Untitled"));
        EXPECT_EQ(editor.isChanged(), !current.opens) << "a successful open clears the flag";
        const std::vector<int> seen = editor.commandsSeen();
        EXPECT_EQ(std::ranges::count(seen, IDM_FILE_SAVE_AS), current.saves ? 1 : 0);
    }
}

TEST(Open, ATextureListGoesIntoTheListBesideTheModel)
{
    constexpr std::uint32_t red = 0xFF0000, green = 0x00FF00;
    const TemporaryFolder folder;
    writeTexturedCubeFile(folder.file("ship.mx3"));
    writeTexturesFile(folder.file("ship.mxt"), rgb555(31, 0, 0));
    writeTexturesFile(folder.file("other.mxt"), rgb555(0, 31, 0));
    const RunningEditor editor({folder.file("ship.mx3"), folder.file("ship.mxt")});
    const auto centre = [&] {
        const WindowPicture picture = editor.picture();
        return picture.at(std::min(picture.width, 640) / 2, std::min(picture.height, 489) / 2) &
               0xF8F8F8;
    };
    ASSERT_TRUE(waitUntil([&] { return centre() == (red & 0xF8F8F8); }));
    EXPECT_EQ(editor.title(), programTitle + folder.file("ship.mx3"));
    editor.postDrop({folder.file("other.mxt")});
    EXPECT_TRUE(waitUntil([&] { return centre() == (green & 0xF8F8F8); }));
    EXPECT_EQ(editor.title(), programTitle + folder.file("ship.mx3"));
}

} // namespace

} // namespace facetor
