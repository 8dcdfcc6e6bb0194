#include "windows/texture_window.h"

#include "base/bytes.h"
#include "base/file.h"
#include "base/temporary_folder.h"
#include "driver/held_key.h"
#include "driver/running_editor.h"
#include "driver/window_outline.h"
#include "gui/command_line_tool.h"
#include "gui/model_files.h"
#include "gui/scarce_memory.h"
#include "image/bitmap_conversion.h"
#include "resources/resource_ids.h"
#include "texture/numbered_texture.h"
#include "texture/texture_file.h"
#include "ui/handles.h"
#include "ui/window_data.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <commctrl.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <functional>
#include <memory>

namespace facetor {

namespace {

/// Makes the list one texture of 8 x 8 texels for each letter, which its texels' blue tells; "." is
/// an empty slot. Behind the letters, " changed" is the list's flag. Slot 1 is the current one, and
/// the polygons have the first textures in turn.
void setState(Editor& editor, const std::string& state)
{
    TextureList& list = editor.document.textures;
    const std::string letters = state.substr(0, state.find(' '));
    list.clearAll();
    list.current = 1;
    for (std::uint32_t slot = 0; slot < letters.size(); ++slot) {
        if (letters[slot] == '.') continue;
        Texels texels;
        ASSERT_TRUE(texels.allocate(64));
        std::ranges::fill(texels, static_cast<Rgb555>(opaqueBit | (letters[slot] - 'a' + 1)));
        list.set(slot, 8, 8, std::move(texels));
    }
    for (std::uint16_t i = 0; i < 6; ++i) editor.document.model.attributes[i].texture = i;
    setTexturesChanged(editor.document, state.ends_with(" changed"));
    undoClear(editor.document.undo);
}

/// The same of what the editor holds, with " undo" for an edit that can be undone.
std::string stateOf(const Editor& editor)
{
    const TextureList& list = editor.document.textures;
    std::string state;
    for (std::uint32_t slot = 0; slot < list.usedCount(); ++slot)
        state += list.isEmpty(slot) ? '.'
                                    : static_cast<char>('a' - 1 + (list.slot(slot).pixels[0] & 31));
    return state + (editor.document.undo.isEmpty() ? "" : " undo") +
           (areTexturesChanged(editor.document) ? " changed" : "");
}

/// A command, what it asks, and what is there afterwards.
struct Step {
    int command;
    std::string state{};
    std::string alert{}; ///< the text of the alert that comes up; none when empty
    int button = IDOK;
    std::string path{}; ///< for the file dialog that comes up then; "cancel" cancels it
    int filter = 1;
};

class TextureWindowTest : public testing::Test {
protected:
    TextureWindowTest() { toggle(); }

    void toggle()
    {
        editor.sendCommand(IDM_VIEW_TEXTURES);
        window = editor.ask([](Editor& e) { return e.textureWindow.window; });
    }
    void set(const std::string& state) const
    {
        editor.call([&](Editor& e) { setState(e, state); });
    }
    void run(int command) const
    {
        SendMessageA(window, WM_COMMAND, static_cast<WPARAM>(command), 0);
    }
    void take(const Step& step) const
    {
        SCOPED_TRACE(testing::Message() << step.command << " " << step.alert << step.path);
        // A message that is sent overtakes posted ones: what asks nothing has to be over first.
        if (step.alert.empty() && step.path.empty())
            run(step.command);
        else
            PostMessageA(window, WM_COMMAND, static_cast<WPARAM>(step.command), 0);
        finish(step);
    }
    void finish(const Step& step) const
    {
        if (!step.alert.empty()) {
            const ShownAlert shown = editor.waitForAlert();
            EXPECT_EQ(shown.text, step.alert);
            EXPECT_EQ(shown.icon, step.command == IDM_TEXTURE_INFORMATION ? ""
                                  : shown.buttons.size() == 3             ? "question"
                                                                          : "exclamation");
            savePicture(editor.pictureOf(shown.window),
                        "texture-alert-" + std::to_string(step.command));
            EXPECT_TRUE(editor.press(shown, step.button));
        }
        if (!step.path.empty()) {
            EXPECT_TRUE(step.path == "cancel" ? editor.cancelFileDialog()
                                              : editor.fillFileDialog(step.path, step.filter));
        }
        const auto state = [&] { return editor.ask(stateOf); };
        waitUntil([&] { return IsWindowEnabled(editor.window()) && state() == step.state; });
        editor.call([](Editor&) {}); // the command has come to its end
        EXPECT_EQ(state(), step.state);
        EXPECT_EQ(editor.ask([](Editor&) { return GetActiveWindow(); }), window);
    }
    bool isOffered(int command) const
    {
        const UINT state = GetMenuState(GetMenu(window), static_cast<UINT>(command), MF_BYCOMMAND);
        return (state & MF_GRAYED) == 0;
    }
    /// Runs `action` with keys held. Again, when the display has let go of them meanwhile, as it
    /// does when it learns late that the focus has moved.
    void withKeys(const std::vector<WORD>& keys, const std::function<void()>& action) const
    {
        EXPECT_TRUE(waitUntil([&] {
            std::vector<std::unique_ptr<HeldKey>> held;
            for (const WORD key : keys) held.push_back(std::make_unique<HeldKey>(editor, key));
            action();
            return editor.ask([&](Editor&) { return std::ranges::all_of(keys, isKeyDown); });
        }));
    }

    const TemporaryFolder folder;
    RunningEditor editor;
    HWND window = nullptr;
};

TEST_F(TextureWindowTest, TheRightButtonShowsAMenu)
{
    PostMessageA(window, WM_RBUTTONDOWN, 0, MAKELPARAM(60, 60));
    EXPECT_TRUE(waitUntil([&] { return editor.findWindow("#32768") != nullptr; }));
    PostMessageA(window, WM_CANCELMODE, 0, 0);
    EXPECT_TRUE(waitUntil([&] { return !editor.findWindow("#32768"); }));
}

TEST_F(TextureWindowTest, EveryEditIsUndoneAndWhatCannotBeDoneIsSaid)
{
    const std::string empty = "Texture data is empty. Nothing to edit. ";
    const std::string all =
        "WARNING : You cannot Undo after do this function.\n Save changes before doing?";
    struct Row {
        const char* before;
        Step step;
    };
    const Row rows[] = {
        {"abc", {IDM_TEXTURE_EMPTY_CLIPBOARD, "abc"}},
        {"abc", {IDM_TEXTURE_PASTE, "abc changed", "Clipboard data is empty. Nothing to edit. "}},
        {"abc", {IDM_TEXTURE_COPY, "abc changed"}},
        {"xyz", {IDM_TEXTURE_PASTE, "xbz undo changed"}},
        {"abc", {IDM_TEXTURE_CUT, "a.c undo changed"}},
        {"abc", {IDM_TEXTURE_DELETE, "a.c undo changed"}},
        {"abc", {IDM_TEXTURE_INSERT, "a.bc undo changed"}},
        {"abc", {IDM_TEXTURE_BACKSPACE, "ac undo changed"}},
        {"", {IDM_TEXTURE_INSERT, " changed", empty}},
        {"", {IDM_TEXTURE_BACKSPACE, " changed", empty}},
        {"abc", {IDM_TEXTURE_INFORMATION, "abc", "ID\t= 1\nWidth\t= 8\nHeight\t= 8"}},
        {"abc changed", {IDM_TEXTURE_DELETE_ALL, "abc changed", all, IDCANCEL}},
        {"abc changed", {IDM_TEXTURE_DELETE_ALL, "abc changed", all, IDYES, "cancel"}},
        {"abc changed", {IDM_TEXTURE_DELETE_ALL, "", all, IDYES, folder.file("all.mxt")}},
        {"abc changed", {IDM_TEXTURE_DELETE_ALL, "", all, IDNO}},
    };
    for (const auto& [before, step] : rows) {
        set(before);
        take(step);
        const bool undo = step.state.find("undo") != std::string::npos;
        EXPECT_EQ(isOffered(IDM_TEXTURE_UNDO), undo);
        if (undo) take({IDM_TEXTURE_UNDO, std::string(before) + " changed"}); // and no redo
    }
    EXPECT_TRUE(isTextureFile(folder.file("all.mxt")));
}

TEST_F(TextureWindowTest, ListsAreSavedAndOpenedUnderTheirNames)
{
    const std::string one = folder.file("one.mxt"), typed = folder.file("one.123"),
                      question = "Save changes of texture before opening new file?";
    writeTextFile(folder.file("broken.mxt"), "MXTX and nothing else");
    set("ab changed");
    take({IDM_TEXTURE_SAVE, "ab", {}, 0, typed}); // without a name it is asked for
    EXPECT_EQ(windowText(window), typed);
    set("abc changed");
    take({IDM_TEXTURE_SAVE, "abc"});
    set("..d");
    take({IDM_TEXTURE_DELETE, "..d undo changed"});
    take({IDM_TEXTURE_OPEN, "abc", question, IDNO, one}); // and nothing to undo
    EXPECT_EQ(windowText(window), "Texture List");
    take({IDM_TEXTURE_OPEN, "abc", {}, 0, typed, 2});                  // the source is only written
    take({IDM_TEXTURE_OPEN, "abc", {}, 0, folder.file("broken.mxt")}); // without a word
    EXPECT_EQ(editor.ask([](Editor& e) { return e.document.textureFile; }), one);
    const std::string menu = menuOutline(GetMenu(window));
    for (const std::string& item : {"40121 \"&2 " + one + '"', "40122 \"&3 " + typed + '"'})
        EXPECT_NE(menu.find(item), std::string::npos) << menu;
    set("..d changed");
    take({IDM_RECENT_TEXTURES_3, "..d changed", question, IDCANCEL});
    take({IDM_RECENT_TEXTURES_3, "abd", question, IDNO});
    take({IDM_RECENT_TEXTURES_4, "abd"}); // beeps
    std::filesystem::remove(typed);
    std::filesystem::remove(one);
    std::filesystem::create_directories(one + "/in the way");
    set("ab changed");
    take({IDM_TEXTURE_SAVE, "ab changed", "Cannot create File."});
    set(" changed");
    take({IDM_TEXTURE_SAVE, " changed", "Texture data is empty. Nothing to edit. "});
    writeTexturesFile(folder.file("good.mxt"), 3);
    writeTextFile(folder.file("text.txt"), "neither textures nor a picture");
    set("ab");
    editor.postDrop({folder.file("good.mxt"), folder.file("text.txt")}, window);
    finish({IDM_FILE_OPEN_PATH, "cb"});
    editor.postDrop({folder.file("text.txt")}, window);
    finish({IDM_FILE_OPEN_PATH, "cb", "Sorry, this file format is not supported."});
}

TEST_F(TextureWindowTest, TheClipboardIsSharedWithOtherPrograms)
{
    set("abc");
    run(IDM_TEXTURE_COPY);
    editor.call([](Editor& e) {
        Bytes expected(packedTextureSize(e.document.textures.slot(1)));
        packTexture(e.document.textures.slot(1), expected);
        const OpenedClipboard clipboard(e.mainWindow);
        const LockedGlobal block(GetClipboardData(CF_DIB));
        ASSERT_GE(block.bytes().size(), expected.size());
        EXPECT_TRUE(std::ranges::equal(block.bytes().first(expected.size()), expected));
    });
    struct Row {
        std::uint32_t width, height, depth, compression;
        const char* alert;
    };
    const char* const refused = "Sorry, this type of Clipboard data is not supported.";
    for (const Row& row :
         {Row{12, 2, 24, 0, "Data Error(Width of Texture should be multiple of 8. )"},
          Row{8, 8, 24, 1, refused}, Row{65528, 65535, 32, 0, refused}, Row{8, 8, 24, 0, ""}}) {
        editor.call([&](Editor& e) { // as another program does, while this one is not active
            EnableMenuItem(GetMenu(window), IDM_TEXTURE_PASTE, MF_GRAYED);
            const HGLOBAL memory = GlobalAlloc(GHND, 40 + 8 * 8 * 3);
            const std::uint32_t header[] = {40, row.width, row.height, row.depth << 16 | 1,
                                            row.compression};
            std::memcpy(LockedGlobal(memory).bytes().data(), header, sizeof header);
            const OpenedClipboard clipboard(e.mainWindow);
            EmptyClipboard();
            EXPECT_TRUE(SetClipboardData(CF_DIB, memory));
        });
        set("abc");
        editor.send(WM_ACTIVATEAPP, TRUE);
        EXPECT_TRUE(isOffered(IDM_TEXTURE_PASTE));
        take({IDM_TEXTURE_PASTE, *row.alert ? "abc changed" : "a`c undo changed", row.alert});
    }
}

TEST_F(TextureWindowTest, ScarceMemoryIsSaidAndKeepsNobodyFromDeleting)
{
    const std::string none = "Cannot allocate enough memory to do this function.";
    set("a");
    editor.call([](Editor& e) { putNumbered(e.document.textures, 1, 1024, 512, 2); });
    run(IDM_TEXTURE_COPY);
    writeTextFile(folder.file("huge.mxt"), "MXTX" + std::string(1024 * 512 * 2, '.'));
    const ScarceMemory scarce(1024 * 512 * 2);
    take({IDM_TEXTURE_OPEN, "ab changed", "Save changes of texture before opening new file?", IDNO,
          folder.file("huge.mxt")});
    take({IDM_TEXTURE_PASTE, "ab changed", none});
    PostMessageA(window, WM_COMMAND, IDM_TEXTURE_SAVE_AS, 0);
    EXPECT_TRUE(editor.fillFileDialog(folder.file("large.mxt"), 1));
    finish({IDM_TEXTURE_SAVE_AS, "ab changed", none});
    EXPECT_EQ(folder.entryCount(), 1u);
    take({IDM_TEXTURE_DELETE, "a undo changed"}); // which shares its pixels, and needs none
}

TEST_F(TextureWindowTest, AClickPicksAndKeysSayWhatBecomesOfPolygons)
{
    struct Row {
        std::vector<WORD> keys;
        std::uint32_t flags; ///< of a picked polygon after a double click
        std::uint16_t texture;
    };
    const int top = editor.ask([](Editor& e) { return gridArea(e.textureWindow).top; });
    const auto click = [&](UINT message, int x, int y) {
        SendMessageA(window, message, 0, MAKELPARAM(x, y));
    };
    editor.sendCommand(IDM_VIEW_ATTRIBUTES);
    bool byKey = false;
    for (const Row& row :
         {Row{{}, picked | textureMap, 8}, Row{{'H'}, picked | textureMap | flipHorizontal, 8},
          Row{{'V'}, picked | textureMap | flipVertical, 8},
          Row{{'H', VK_CONTROL}, textureMap | flipHorizontal, 8}, Row{{VK_SHIFT}, picked, 2}}) {
        withKeys(row.keys, [&] {
            editor.call(
                [](Editor& e) { e.document.model.attributes[2] = {0, 0, 2, 0, picked, 2}; });
            click(WM_LBUTTONDOWN, 0, top);
            click(WM_LBUTTONDOWN, 9 * 52 - 1, top + 67);
            click(WM_LBUTTONDOWN, 10, top - 1); // beside the grid
            if (byKey)
                SendMessageA(window, WM_KEYDOWN, VK_RETURN, 0);
            else
                click(WM_LBUTTONDBLCLK, 0, top);
            byKey = !byKey;
        });
        editor.call([&](Editor& e) {
            EXPECT_EQ(GetDlgItemInt(e.attributePages.pages[0], IDC_ATTRIBUTE_TEXTURE, nullptr, 0),
                      8u);
            EXPECT_EQ(e.document.model.attributes[2].flags, row.flags);
            EXPECT_EQ(e.document.model.attributes[2].texture, row.texture);
            EXPECT_TRUE(isModelChanged(e.document) && isOffered(IDM_TEXTURE_UNDO));
        });
        editor.sendCommand(IDM_EDIT_UNDO);
        EXPECT_EQ(editor.ask([](Editor& e) { return e.document.model.attributes[2].texture; }), 2);
    }
    // With Shift held, polygons keep their pictures when slots move.
    for (const auto& [command, number] :
         {std::pair{IDM_TEXTURE_INSERT, 4}, {IDM_TEXTURE_BACKSPACE, 2}}) {
        withKeys({VK_SHIFT}, [&] {
            set("abcd");
            editor.call([](Editor& e) { setModelChanged(e.document, false); });
            run(command);
        });
        EXPECT_EQ(editor.ask([](Editor& e) { return e.document.model.attributes[3].texture; }),
                  number);
        EXPECT_TRUE(editor.ask([](Editor& e) { return isModelChanged(e.document); }));
    }
}

TEST_F(TextureWindowTest, ScrollsAndKeepsPlaceAndSlotWhileItIsClosed)
{
    SetWindowPos(window, nullptr, 150, 120, 214, 300, SWP_NOZORDER);
    for (const auto& [command, slot] : {std::pair{IDM_TEXTURE_LINE_UP, 0},
                                        {IDM_TEXTURE_PAGE_DOWN, 4},
                                        {IDM_TEXTURE_LINE_DOWN, 5},
                                        {IDM_TEXTURE_PAGE_UP, 1},
                                        {IDM_TEXTURE_LINE_UP, 0},
                                        {IDM_TEXTURE_LINE_DOWN, 1}}) {
        run(command);
        EXPECT_EQ(editor.ask([](Editor& e) { return e.textureWindow.topSlot; }), slot);
        EXPECT_EQ(isOffered(IDM_TEXTURE_LINE_UP) && isOffered(IDM_TEXTURE_PAGE_UP), slot > 0);
    }
    for (const int turned : {-60, -60, -240, 120})
        SendMessageA(window, WM_MOUSEWHEEL, MAKEWPARAM(0, turned), 0);
    set("abcdefghijklmnopqrs");
    const std::pair<WPARAM, std::array<int, 2>> keys[] = {
        // the current texture and the slot in the first cell then
        {VK_END, {18, 9}}, {VK_NEXT, {18, 13}}, {VK_HOME, {0, 0}}, {VK_RIGHT, {1, 0}},
        {VK_DOWN, {5, 0}}, {VK_NEXT, {5, 4}},   {VK_LEFT, {4, 4}}, {VK_UP, {0, 0}},
    };
    for (const auto& [key, slots] : keys) {
        SendMessageA(window, WM_KEYDOWN, key, 0);
        EXPECT_EQ(editor.ask([](Editor& e) -> std::array<int, 2> {
            return {static_cast<int>(e.document.textures.current), e.textureWindow.topSlot};
        }),
                  slots)
            << key;
    }
    for (int i = 0; i < 9; ++i) run(IDM_TEXTURE_LINE_DOWN);
    RECT before{}, after{};
    GetWindowRect(window, &before);
    toggle();
    EXPECT_FALSE(window);
    toggle();
    GetWindowRect(window, &after);
    EXPECT_TRUE(EqualRect(&before, &after));
    EXPECT_EQ(editor.ask([](Editor& e) { return e.textureWindow.topSlot; }), 9);
    run(IDM_TEXTURE_CLOSE);
    EXPECT_FALSE(IsWindow(window));
}

TEST_F(TextureWindowTest, KeysReachItOnlyWhileItIsOpenAndTheListIsSavedInAnyCase)
{
    constexpr int commands[] = {40026, 40027, 40035, 40036, 40037,
                                40038, 40039, 40040, 40041, 40095};
    set("abc");
    editor.sendCommand(IDM_TEXTURE_DELETE);
    EXPECT_EQ(editor.ask(stateOf), "a.c undo changed");
    set("abc changed");
    toggle();
    for (const int command : commands) editor.sendCommand(command);
    EXPECT_EQ(editor.ask(stateOf), "abc changed");
    editor.post(WM_CLOSE);
    EXPECT_TRUE(editor.press(editor.waitForAlert(), IDYES));
    EXPECT_TRUE(editor.fillFileDialog(folder.file("kept.mxt"), 1));
    EXPECT_EQ(editor.waitForEnd(), 0);
    EXPECT_TRUE(isTextureFile(folder.file("kept.mxt")));
}

TEST(TextureWindow, ShowsASampleExportsItAndOutlivesARestart)
{
    const TemporaryFolder folder, other; // the file's name is in the source
    const std::string sample = "samples/ship.mxt", source = folder.file("ship.txr");
    RECT places[2]{};
    for (RECT& place : places) {
        RunningEditor editor({sample}, Platform::nt, {}, folder.file("Facetor.ini"));
        const HWND window = editor.findWindow(textureWindowClass); // opened with its list
        ASSERT_TRUE(window);
        if (&place == places) SetWindowPos(window, nullptr, 40, 60, 480, 400, SWP_NOZORDER);
        GetWindowRect(window, &place);
        EXPECT_NE(menuOutline(GetMenu(window)).find("ship.mxt\""), std::string::npos);
        const WindowPicture shown = editor.pictureOf(window);
        savePicture(shown, "textures");
        EXPECT_TRUE(waitUntil([&] { return captureWindow(window) != shown; }))
            << "the frame around the current texture runs on";
        PostMessageA(window, WM_COMMAND, IDM_TEXTURE_SAVE_AS, 0);
        ASSERT_TRUE(editor.fillFileDialog(&place == places ? source : folder.file("again.txr"), 2));
        EXPECT_TRUE(waitUntil([&] { return readFile(source).has_value(); }));
        editor.post(WM_CLOSE);
        EXPECT_EQ(editor.waitForEnd(), 0);
    }
    EXPECT_TRUE(EqualRect(&places[0], &places[1]));
    ASSERT_EQ(runCommandLineTool("-q convert " + sample + " \"" + other.file("ship.txr") + "\""),
              0);
    EXPECT_TRUE(readFile(source) == readFile(other.file("ship.txr")));
}

} // namespace

} // namespace facetor
