#include "app/settings.h"

#include "base/file.h"
#include "base/temporary_folder.h"
#include "commands/sample_folder.h"
#include "driver/running_editor.h"
#include "gui/model_files.h"
#include "resources/resource_ids.h"
#include "ui/window_data.h"
#include "windows/tool_box_window.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <commdlg.h>

#include <array>
#include <filesystem>
#include <utility>

namespace facetor {

namespace {

/// Settings that an earlier run could have written, with this path among the model files.
SettingsRecord exampleSettings(const std::string& path)
{
    SettingsRecord settings;
    settings.mainWindow = {120, 90, 620, 490};
    settings.toolBox = {700, 300, 735, 492};
    settings.hierarchy = {1, 2, 301, 402};
    settings.attributes = {5, 6, 305, 406};
    settings.textures = {7, 8, 307, 408};
    settings.background = 0x8000 | rgb555(4, 8, 12);
    settings.pickedPolygon = 0x8000 | rgb555(31, 0, 31);
    settings.transparent = 0x8000 | rgb555(1, 2, 3);
    settings.dragMethod = 1;
    settings.modelFiles = {path};
    settings.textureFiles = {"C:\\skin.mxt"};
    return settings;
}

void writeSettingsFile(const std::string& path, const SettingsRecord& settings)
{
    writeTextFile(path, formatSettings(settings));
}

std::optional<SettingsRecord> readSettingsFile(const std::string& path)
{
    const auto bytes = readFile(path);
    if (!bytes) return std::nullopt;
    return parseSettings({reinterpret_cast<const char*>(bytes->data()), bytes->size()});
}

WindowRectangle placeOf(HWND window)
{
    RECT r{};
    GetWindowRect(window, &r);
    return {r.left, r.top, r.right, r.bottom};
}

TEST(Settings, AreAppliedAtTheStartAndWrittenAgainAtTheEnd)
{
    const TemporaryFolder folder;
    const std::string path = folder.file("Facetor.ini");
    const SettingsRecord before = exampleSettings("C:\\first.mx3");
    writeSettingsFile(path, before);
    {
        RunningEditor editor({}, Platform::nt, {}, path);
        EXPECT_EQ(placeOf(editor.window()), before.mainWindow);
        const HWND box = editor.findWindow(toolBoxClass);
        EXPECT_EQ(placeOf(box).left, 700);
        EXPECT_EQ(placeOf(box).top, 300);
        editor.call([](Editor& e) {
            EXPECT_EQ(e.view.backgroundColour, 0x8000 | rgb555(4, 8, 12));
            EXPECT_EQ(e.engine.settings.pickedColour, 0x8000 | rgb555(31, 0, 31));
            EXPECT_EQ(e.view.dragDrawMode, DragDrawMode::flat);
            EXPECT_EQ(e.recentModels, std::vector<std::string>{"C:\\first.mx3"});
        });
        SetWindowPos(editor.window(), nullptr, 30, 40, 444, 333, SWP_NOZORDER);
        editor.post(WM_CLOSE);
        EXPECT_EQ(editor.waitForEnd(), 0);
    }
    SettingsRecord after = before;
    after.mainWindow = {30, 40, 474, 373};
    const auto written = readSettingsFile(path);
    ASSERT_TRUE(written);
    EXPECT_EQ(written->toolBox.left, 700);
    after.toolBox = written->toolBox; // its size is that of its buttons
    EXPECT_EQ(*written, after);
}

TEST(Settings, WithoutAnyTheWindowShowsTheWholeViewAndOpenBeginsWithTheSamples)
{
    const RunningEditor editor;
    const auto [bar, box] = editor.ask([](Editor& e) {
        return std::pair{placeOf(e.statusBar), placeOf(e.toolBox.window)};
    });
    const WindowRectangle place = placeOf(editor.window());
    RECT client{};
    GetClientRect(editor.window(), &client);
    EXPECT_EQ(client.right, 640);
    EXPECT_EQ(client.bottom, 489 + (bar.bottom - bar.top));
    EXPECT_GT(place.left, box.right) << "the tool box hides nothing";
    savePicture(editor.pictureOf(editor.window()), "first-start");

    std::array<char, MAX_PATH> program{};
    GetModuleFileNameA(nullptr, program.data(), static_cast<DWORD>(program.size()));
    const std::filesystem::path samples =
        std::filesystem::path(program.data()).parent_path() / "Samples";
    std::filesystem::create_directory(samples);
    const auto beginsInSamples = [&] {
        editor.post(WM_COMMAND, IDM_FILE_OPEN);
        const HWND dialog = editor.waitForFileDialog();
        std::array<char, MAX_PATH> folder{};
        SendMessageA(dialog, CDM_GETFOLDERPATH, folder.size(),
                     reinterpret_cast<LPARAM>(folder.data()));
        savePicture(editor.pictureOf(dialog), "first-open");
        EXPECT_TRUE(editor.cancelFileDialog());
        std::error_code error;
        return std::filesystem::equivalent(folder.data(), samples, error);
    };
    EXPECT_TRUE(beginsInSamples());
    editor.call([](Editor& e) { e.recentTextures = {"C:\\skin.mxt"}; });
    EXPECT_EQ(editor.ask([](Editor& e) {
        offerSamples(e, e.fileDialogs.openModel);
        return e.fileDialogs.openModel.folder;
    }),
              "");
    std::filesystem::remove(samples);
}

TEST(Settings, AreWrittenBeforeTheQuestionsOfClosing)
{
    const TemporaryFolder folder;
    const std::string path = folder.file("Facetor.ini");
    const RunningEditor editor({}, Platform::nt, {}, path);
    editor.setChanged();
    editor.post(WM_CLOSE);
    const ShownAlert shown = editor.waitForAlert();
    EXPECT_TRUE(readSettingsFile(path));
    EXPECT_TRUE(editor.press(shown, IDCANCEL));
    EXPECT_FALSE(editor.findWindow(toolBoxClass)) << "the tool box is hidden by then";
}

TEST(Settings, AMinimisedOrMaximisedWindowIsRememberedAtItsNormalPlace)
{
    for (const int how : {SW_MINIMIZE, SW_MAXIMIZE}) {
        SCOPED_TRACE(how);
        const TemporaryFolder folder;
        const std::string path = folder.file("Facetor.ini");
        RunningEditor editor({}, Platform::nt, {}, path);
        SetWindowPos(editor.window(), nullptr, 30, 40, 444, 333, SWP_NOZORDER);
        editor.call([&](Editor& e) { ShowWindow(e.mainWindow, how); });
        editor.post(WM_CLOSE);
        EXPECT_EQ(editor.waitForEnd(), 0);
        const auto written = readSettingsFile(path);
        ASSERT_TRUE(written);
        EXPECT_EQ(written->mainWindow, (WindowRectangle{30, 40, 474, 373}));
        EXPECT_EQ(written->mainZoomed, how == SW_MAXIMIZE);
    }
}

TEST(Settings, AFileBesideTheProgramMakesAPortableCopy)
{
    const std::string beside = programFolder(nullptr) + "\\Facetor.ini";
    ASSERT_FALSE(readFile(beside));
    EXPECT_NE(findSettingsPath(), beside);
    writeTextFile(beside, "");
    EXPECT_EQ(findSettingsPath(), beside);
    std::filesystem::remove(beside);
}

TEST(Settings, TheNextRunHasTheWindowsAndTheWholePathsOfTheLast)
{
    const TemporaryFolder folder;
    const std::string path = folder.file("Facetor.ini"), model = folder.file("a model.mx3");
    writeCubeFile(model, 5);
    {
        RunningEditor editor({model}, Platform::nt, {}, path);
        ASSERT_TRUE(editor.waitForTitle(model));
        editor.sendCommand(IDM_VIEW_HIERARCHY);
        editor.sendCommand(IDM_VIEW_TEXTURES);
        editor.post(WM_CLOSE);
        EXPECT_EQ(editor.waitForEnd(), 0);
    }
    const RunningEditor editor({}, Platform::nt, {}, path);
    EXPECT_TRUE(editor.isItemChecked(IDM_VIEW_HIERARCHY) &&
                editor.isItemChecked(IDM_VIEW_TEXTURES));
    EXPECT_FALSE(editor.isItemChecked(IDM_VIEW_ATTRIBUTES));
    editor.sendCommand(IDM_RECENT_MODEL_1);
    EXPECT_TRUE(editor.waitForTitle(model));
}

TEST(Settings, BrokenOnesAreIgnoredAsAWhole)
{
    const TemporaryFolder folder;
    const std::string path = folder.file("Facetor.ini");
    std::string text = formatSettings(exampleSettings("C:\\first.mx3"));
    text.insert(text.find("MainRect"), "; moved by hand\r\n");
    writeTextFile(path, text);
    const RunningEditor editor({}, Platform::nt, {}, path);
    EXPECT_EQ(placeOf(editor.findWindow(toolBoxClass)).left, 64);
    EXPECT_TRUE(editor.ask([](Editor& e) { return e.recentModels.empty(); }));
    EXPECT_EQ(editor.ask([](Editor& e) { return e.view.dragDrawMode; }), DragDrawMode::wire);
}

} // namespace

} // namespace facetor
