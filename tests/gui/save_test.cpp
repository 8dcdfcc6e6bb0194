#include "base/file.h"
#include "base/temporary_folder.h"
#include "driver/running_editor.h"
#include "gui/command_line_tool.h"
#include "gui/model_files.h"
#include "gui/scarce_memory.h"
#include "model/model_file.h"
#include "resources/resource_ids.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <filesystem>

namespace facetor {

namespace {

constexpr char programTitle[] = "Facetor for NT - ";

std::string text(const std::string& path)
{
    const auto bytes = readFile(path);
    if (!bytes) return {};
    return {reinterpret_cast<const char*>(bytes->data()), bytes->size()};
}

/// The items of the File menu that stand between Save as and Exit.
std::vector<std::string> recentItems(const RunningEditor& editor)
{
    const HMENU menu = GetSubMenu(GetMenu(editor.window()), 0);
    std::vector<std::string> items;
    for (int i = 5; GetMenuItemID(menu, i) != IDM_FILE_EXIT; ++i) {
        std::string item(300, '\0');
        item.resize(
            static_cast<std::size_t>(GetMenuStringA(menu, static_cast<UINT>(i), item.data(),
                                                    static_cast<int>(item.size()), MF_BYPOSITION)));
        items.push_back(item);
    }
    return items;
}

TEST(Save, AnUntitledModelIsAskedForItsName)
{
    const TemporaryFolder folder;
    const std::string path = folder.file("new.mx3");
    const RunningEditor editor;
    editor.setChanged();
    editor.post(WM_COMMAND, IDM_FILE_SAVE);
    ASSERT_TRUE(editor.cancelFileDialog());
    EXPECT_EQ(editor.title(), std::string(programTitle) + "Untitled");
    EXPECT_TRUE(editor.isChanged());
    editor.post(WM_COMMAND, IDM_FILE_SAVE);
    savePicture(editor.pictureOf(editor.waitForFileDialog()), "save-as");
    ASSERT_TRUE(editor.fillFileDialog(path));
    ASSERT_TRUE(editor.waitForTitle(path));
    EXPECT_TRUE(probeModelFile(path));
    EXPECT_FALSE(editor.isChanged());
    EXPECT_EQ(recentItems(editor), (std::vector<std::string>{"&1 " + path, ""}));
    // From now on it is saved without a question.
    std::filesystem::remove(path);
    editor.setChanged();
    editor.sendCommand(IDM_FILE_SAVE);
    EXPECT_TRUE(probeModelFile(path));
    EXPECT_FALSE(editor.isChanged());
}

TEST(Save, TheExtensionIsRewritten)
{
    const TemporaryFolder folder;
    writeCubeFile(folder.file("a.old"), 4);
    const RunningEditor editor({folder.file("a.old")});
    ASSERT_TRUE(editor.waitForTitle(folder.file("a.old")));
    editor.sendCommand(IDM_FILE_SAVE);
    EXPECT_TRUE(probeModelFile(folder.file("a.mx3")));
    EXPECT_EQ(editor.title(), programTitle + folder.file("a.old"));
    EXPECT_EQ(folder.entryCount(), 2u);
}

TEST(Save, SaveAsWritesTheChosenFormAndNamesTheModelAfterIt)
{
    struct Case {
        const char* name;
        int filter;
        bool isModel;
        const char* title;
        std::size_t recents;
    };
    const TemporaryFolder folder;
    const RunningEditor editor;
    std::size_t shown = 0;
    for (const Case& current :
         {Case{"x.123", 1, true, "x.mx3", 2}, Case{"y.mdl", 2, false, "y.mx3", 2},
          Case{"z.mx3", 1, true, "z.mx3", 3}}) {
        SCOPED_TRACE(current.name);
        editor.setChanged();
        editor.post(WM_COMMAND, IDM_FILE_SAVE_AS);
        ASSERT_TRUE(editor.fillFileDialog(folder.file(current.name), current.filter));
        ASSERT_TRUE(editor.waitForTitle(folder.file(current.title)));
        EXPECT_EQ(probeModelFile(folder.file(current.name)), current.isModel);
        EXPECT_EQ(text(folder.file(current.name)).find("POLYGON") != std::string::npos,
                  !current.isModel);
        EXPECT_EQ(folder.entryCount(), ++shown);
        EXPECT_FALSE(editor.isChanged());
        EXPECT_EQ(recentItems(editor).size(), current.recents);
    }
}

TEST(Save, TheSourceOfASampleIsTheOneThatTheCommandLineToolWrites)
{
    const TemporaryFolder folder, other;
    const RunningEditor editor({"samples/ship.mx3"});
    editor.post(WM_COMMAND, IDM_FILE_SAVE_AS);
    ASSERT_TRUE(editor.fillFileDialog(folder.file("ship.mdl"), 2));
    ASSERT_TRUE(editor.waitForTitle(folder.file("ship.mx3")));
    ASSERT_EQ(runCommandLineTool("-q convert samples/ship.mx3 \"" + other.file("ship.mdl") + "\""),
              0);
    const std::string saved = text(folder.file("ship.mdl"));
    EXPECT_GT(saved.size(), 100000u);
    EXPECT_TRUE(saved == text(other.file("ship.mdl")));
    const std::string model = '"' + folder.file("ship.mx3") + '"';
    ASSERT_TRUE(std::filesystem::copy_file("samples/ship.mx3", folder.file("ship.mx3")));
    EXPECT_EQ(runCommandLineTool("-q convert " + model + " " + model), 0) << "onto its input";
}

TEST(Save, AFileThatCannotBeWrittenIsReportedAndTheModelStaysChanged)
{
    const TemporaryFolder folder;
    writeCubeFile(folder.file("a.mx3"), 4);
    const RunningEditor editor({folder.file("a.mx3")});
    ASSERT_TRUE(editor.waitForTitle(folder.file("a.mx3")));
    std::filesystem::remove(folder.file("a.mx3"));
    std::filesystem::create_directories(folder.file("a.mx3") + "/in the way");
    editor.setChanged();
    editor.post(WM_COMMAND, IDM_FILE_SAVE);
    const ShownAlert shown = editor.waitForAlert();
    EXPECT_EQ(shown.text, "Cannot create File.");
    EXPECT_TRUE(editor.press(shown, IDOK));
    EXPECT_TRUE(editor.isChanged());
    editor.setChanged(false);
    editor.open("samples/ship.mx3");
    for (const int filter : {1, 2}) {
        editor.post(WM_COMMAND, IDM_FILE_SAVE_AS);
        const HWND dialog = editor.waitForFileDialog();
        ASSERT_TRUE(dialog);
        const ScarceMemory scarce(2048);
        EXPECT_TRUE(editor.fillFileDialog(folder.file("b"), filter));
        editor.dismiss("Cannot allocate enough memory to do this function.");
    }
    EXPECT_EQ(folder.entryCount(), 1u);
}

TEST(Save, OpenAsksForTheFile)
{
    const TemporaryFolder folder;
    const std::string path = folder.file("five.mx3");
    writeCubeFile(path, 5);
    const RunningEditor editor;
    editor.post(WM_COMMAND, IDM_FILE_OPEN);
    const HWND dialog = editor.waitForFileDialog();
    ASSERT_TRUE(dialog);
    EXPECT_FALSE(IsWindowEnabled(editor.ask([](Editor& e) { return e.toolBox.window; })));
    savePicture(editor.pictureOf(dialog), "open");
    ASSERT_TRUE(editor.fillFileDialog(path));
    ASSERT_TRUE(editor.waitForTitle(path));
    EXPECT_EQ(editor.statusText(1), "Polygons = 5");
    EXPECT_TRUE(IsWindowEnabled(editor.ask([](Editor& e) { return e.toolBox.window; })));
    editor.post(WM_COMMAND, IDM_FILE_OPEN);
    ASSERT_TRUE(editor.cancelFileDialog());
    EXPECT_EQ(editor.title(), programTitle + path);
}

TEST(Save, RecentFilesAreOpenedFromTheMenu)
{
    const TemporaryFolder folder;
    std::vector<std::string> paths;
    const RunningEditor editor;
    EXPECT_TRUE(recentItems(editor).empty());
    for (std::uint32_t count = 1; count <= 5; ++count) {
        paths.push_back(folder.file(std::to_string(count) + ".mx3"));
        writeCubeFile(paths.back(), count);
        editor.open(paths.back());
    }
    const std::vector<std::string> items{"&1 " + paths[4], "&2 " + paths[3], "&3 " + paths[2],
                                         "&4 " + paths[1], ""};
    EXPECT_EQ(recentItems(editor), items);
    for (const int number : {1, 2, 3, 4}) {
        editor.sendCommand(IDM_RECENT_MODEL_1 + number - 1);
        EXPECT_EQ(editor.statusText(1), "Polygons = " + std::to_string(6 - number));
    }
    EXPECT_EQ(recentItems(editor), items) << "a file in the list keeps its place";
}

TEST(Save, OpeningEmptiesTheUndoSlotAndUndoMarksTheModelChanged)
{
    const TemporaryFolder folder;
    writeCubeFile(folder.file("a.mx3"), 4);
    const RunningEditor editor;
    editor.sendCommand(IDM_GOURAUD_TABLE);
    editor.setChanged(false);
    EXPECT_TRUE(editor.isItemEnabled(IDM_EDIT_UNDO));
    editor.open(folder.file("a.mx3"));
    EXPECT_FALSE(editor.isItemEnabled(IDM_EDIT_UNDO));
    EXPECT_FALSE(editor.isChanged());
    editor.sendCommand(IDM_EDIT_UNDO);
    EXPECT_TRUE(editor.isChanged());
}

} // namespace

} // namespace facetor
