#include "base/file.h"
#include "base/temporary_folder.h"
#include "commands/send_target.h"
#include "driver/running_editor.h"
#include "gui/model_files.h"
#include "output/target_image.h"
#include "resources/resource_ids.h"
#include "ui/handles.h"
#include "ui/window_data.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

namespace facetor {

namespace {

/// A monitor as a process of its own, with a window of this title, until the end of the scope.
class RunningMonitor {
public:
    /// The stand-in.
    RunningMonitor(const std::string& title, const std::string& answer, const std::string& report)
        : RunningMonitor(title, "\"" + programFolder(nullptr) + "\\stand_in_monitor.exe\" \"" +
                                    title + "\" " + answer + " \"" + report + "\"")
    {
    }
    RunningMonitor(const std::string& title, std::string line)
    {
        STARTUPINFOA start{};
        start.cb = sizeof start;
        EXPECT_TRUE(CreateProcessA(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr,
                                   nullptr, &start, &process_));
        EXPECT_TRUE(waitUntil([&] { return FindWindowA(nullptr, title.c_str()) != nullptr; }));
    }
    ~RunningMonitor()
    {
        TerminateProcess(process_.hProcess, 0);
        WaitForSingleObject(process_.hProcess, longestWait);
        CloseHandle(process_.hThread);
        CloseHandle(process_.hProcess);
    }
    RunningMonitor(const RunningMonitor&) = delete;
    RunningMonitor& operator=(const RunningMonitor&) = delete;

private:
    PROCESS_INFORMATION process_{};
};

constexpr char monitorTitle[] = "TQ Monitor for NT";

std::string contentsOf(const std::string& path)
{
    const auto bytes = readFile(path);
    if (!bytes) return {};
    return {reinterpret_cast<const char*>(bytes->data()), bytes->size()};
}

class SendTarget : public testing::Test {
protected:
    /// Sends one image and returns the alert's text; empty when there was none.
    std::string send(const RunningEditor& editor, int command, int button = IDOK) const
    {
        editor.call([&](Editor& e) { e.targetFolders = folders; });
        editor.post(WM_COMMAND, static_cast<WPARAM>(command));
        editor.begin(
            [this](Editor&) { done = true; }); // handled after the command, or within its alert
        ShownAlert shown;
        EXPECT_TRUE(waitUntil([&] {
            shown = editor.findAlert();
            return shown.window || done;
        }));
        shown = editor.findAlert();
        if (shown.window && !editor.press(shown, button)) ADD_FAILURE() << shown.text;
        done = false;
        return shown.text;
    }

    TemporaryFolder folder;
    std::array<std::string, 2> folders{folder.path().string(), ""};
    std::string report = folder.file("report.txt");
    mutable std::atomic<bool> done = false;
};

TEST_F(SendTarget, TheMonitorGetsThePathOfEachImage)
{
    const RunningEditor editor({"samples\\prop.mx3", "samples\\ship.mxt"});
    const RunningMonitor monitor(monitorTitle, "0", report);
    const std::pair<int, const char*> images[] = {{IDM_SEND_MODEL, "devMX3.sal"},
                                                  {IDM_SEND_TEXTURES, "devMXT.sal"},
                                                  {IDM_SEND_SCENE, "devMXS.sal"}};
    for (const auto& [command, name] : images) {
        SCOPED_TRACE(name);
        EXPECT_EQ(send(editor, command), "");
        const std::string path = folders[0] + "\\" + name, text = contentsOf(report);
        EXPECT_TRUE(text.starts_with("5451414c 1 " + path + "\n")) << text;
        const Bytes expected = editor.ask([command = command](Editor& e) {
            if (command == IDM_SEND_MODEL)
                return formatModelImage(e.document.model, e.view.viewScale);
            if (command == IDM_SEND_SCENE) return formatSceneImage({});
            Bytes image;
            EXPECT_EQ(formatTextureImage(image, e.document.textures), Message::none);
            return image;
        });
        EXPECT_EQ(readFile(path), expected);
        EXPECT_NE(text.find(command == IDM_SEND_MODEL      ? "\n60ae000 288\n60afff8 4\n60b0000 "
                            : command == IDM_SEND_TEXTURES ? "\n602b000 128\n25c10000 "
                                                           : "\n602f000 12\n602f00c 2\n"),
                  std::string::npos)
            << text;
    }
}

TEST_F(SendTarget, AMonitorThatIsMissingRefusesOrHangsIsNamedAndTheFileStays)
{
    {
        const RunningEditor consumer({}, Platform::consumer);
        EXPECT_EQ(send(consumer, IDM_SEND_SCENE), "Cannot find TQ Monitor for Win95.");
    }
    const std::string missing = "Cannot find TQ Monitor for NT.";
    const RunningEditor editor;
    EXPECT_EQ(send(editor, IDM_SEND_SCENE), missing);
    EXPECT_TRUE(std::filesystem::exists(folders[0] + "\\devMXS.sal"));
    {
        const RunningMonitor other("tq monitor FOR nt", "0", report);
        EXPECT_EQ(send(editor, IDM_SEND_SCENE), missing) << "the title is not quite that";
    }
    for (const char* answer : {"1", "-5", "hang"}) {
        const RunningMonitor monitor(monitorTitle, answer, report);
        EXPECT_EQ(send(editor, IDM_SEND_MODEL), missing) << answer;
        EXPECT_TRUE(std::filesystem::remove(report)) << "it was asked";
    }
}

TEST_F(SendTarget, OurOwnMonitorCopiesRunsRefusesAndIsSentWhatIsSaved)
{
    std::filesystem::copy_file("samples\\prop.mx3", folder.file("prop.mx3"));
    const RunningEditor editor({folder.file("prop.mx3")});
    const std::string copies = folder.file("copies"), log = folder.file("log.txt");
    ASSERT_TRUE(CreateDirectoryA(copies.c_str(), nullptr));
    const RunningMonitor monitor(monitorTitle, "\"" FACETOR_MONITOR "\" --hidden --folder \"" +
                                                   copies + "\" --log \"" + log +
                                                   "\" --command \"cmd /c exit 3\"");
    const auto lines = [&] { return std::ranges::count(contentsOf(log), '\n'); };
    EXPECT_EQ(send(editor, IDM_SEND_MODEL), "");
    EXPECT_TRUE(waitUntil([&] { return lines() == 1; }));
    EXPECT_NE(contentsOf(log).find("\tmodel\t"), std::string::npos) << contentsOf(log);
    EXPECT_NE(contentsOf(log).find("accepted, command ended with 3"), std::string::npos);
    const std::filesystem::directory_iterator copy(copies);
    EXPECT_EQ(readFile(copy->path().string()), readFile(folders[0] + "\\devMX3.sal"));

    std::string broken = folder.file("broken.sal");
    Bytes bytes = *readFile(folders[0] + "\\devMX3.sal");
    bytes.resize(bytes.size() - 1);
    ASSERT_EQ(writeFile(broken, bytes), Message::none);
    COPYDATASTRUCT data{0x5451414C, static_cast<DWORD>(broken.size() + 1), broken.data()};
    EXPECT_NE(SendMessageA(FindWindowA(nullptr, monitorTitle), WM_COPYDATA, 0,
                           reinterpret_cast<LPARAM>(&data)),
              0);
    EXPECT_TRUE(waitUntil([&] { return lines() == 2; }));
    EXPECT_NE(contentsOf(log).find("refused: "), std::string::npos);

    EXPECT_EQ(send(editor, IDM_SEND_ON_SAVE), "");
    EXPECT_EQ(send(editor, IDM_FILE_SAVE), "");
    EXPECT_TRUE(waitUntil([&] { return lines() == 3; }));
}

TEST_F(SendTarget, WhatCannotBeWrittenIsMessage17AndTheUsersFolderTakesTheWindowsFoldersPlace)
{
    const std::string failure = "Cannot allocate enough memory to do this function.";
    const RunningEditor editor;
    EXPECT_EQ(send(editor, IDM_SEND_TEXTURES), failure) << "no textures";
    folders = {folder.file("missing"), ""};
    EXPECT_EQ(send(editor, IDM_SEND_MODEL), failure);
    EXPECT_EQ(folder.entryCount(), 0u);
    folders[1] = folder.path().string();
    const RunningMonitor monitor(monitorTitle, "0", report);
    EXPECT_EQ(send(editor, IDM_SEND_MODEL), "");
    EXPECT_TRUE(contentsOf(report).starts_with("5451414c 1 " + folders[1] + "\\devMX3.sal\n"));
}

TEST_F(SendTarget, WhatWouldOverwriteTheTargetsMemoryIsAskedAbout)
{
    const RunningEditor editor({"samples\\max.mx3"}); // 3645 Gouraud polygons, 968 fit
    const RunningMonitor monitor(monitorTitle, "0", report);
    const auto fill = [&](std::uint32_t slot, std::uint16_t width, std::uint16_t height) {
        editor.call([&](Editor& e) {
            e.document.textures.clearAll();
            for (std::uint32_t i = slot; i < 8 || i == slot; ++i) {
                Texels texels;
                ASSERT_TRUE(texels.allocate(std::size_t{width} * height));
                e.document.textures.set(i, width, height, std::move(texels));
            }
        });
    };
    const struct {
        int command;
        std::string file, says;
        std::uint32_t slot; ///< from here to 7, or this one, textures of a size
        std::uint16_t width, height;
    } rows[] = {
        {IDM_SEND_MODEL, "\\devMX3.sal", "3645 Gouraud polygons", 0, 8, 8},
        {IDM_SEND_TEXTURES, "\\devMXT.sal", "2049 textures", 2048, 8, 8},
        {IDM_SEND_TEXTURES, "\\devMXT.sal", "524288 bytes of texels", 0, 256, 128},
        {IDM_SEND_TEXTURES, "\\devMXT.sal", "256 rows", 7, 8, 256},
    };
    for (const auto& [command, file, says, slot, width, height] : rows) {
        fill(slot, width, height);
        const std::string path = folders[0] + file;
        EXPECT_NE(send(editor, command, IDNO).find(says), std::string::npos);
        EXPECT_NE(send(editor, command, IDCANCEL), "");
        EXPECT_FALSE(std::filesystem::exists(path)) << says;
        EXPECT_NE(send(editor, command, IDYES), "");
        EXPECT_TRUE(waitUntil([&] { return contentsOf(report).find(path) != std::string::npos; }));
        std::filesystem::remove(path);
        std::filesystem::remove(report);
    }
    EXPECT_EQ(send(editor, IDM_SEND_SCENE), "") << "it has no limits";
}

} // namespace

} // namespace facetor
