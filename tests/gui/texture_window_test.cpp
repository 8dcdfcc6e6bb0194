#include "texture/texture_window.h"

#include "base/bytes.h"
#include "base/file.h"
#include "base/temporary_folder.h"
#include "gui/command_line_tool.h"
#include "gui/held_key.h"
#include "gui/menu_outline.h"
#include "gui/model_files.h"
#include "gui/running_editor.h"
#include "resources/resource_ids.h"
#include "texture/bitmap_conversion.h"
#include "texture/texture_file.h"
#include "ui/handles_win.h"
#include "ui/window_data_win.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <commctrl.h>
#include <shlobj.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <functional>
#include <memory>
#include <vector>

namespace facetor {

namespace {

/// Puts textures of 8 x 8 texels into the first slots, one for each letter, which its texels' blue
/// tells; "." is an empty slot. The rest of the list is empty.
void fillList(Editor& editor, const std::string& letters)
{
    TextureList& list = editor.document.textures;
    list.clearAll();
    for (std::uint32_t slot = 0; slot < letters.size(); ++slot) {
        if (letters[slot] == '.') continue;
        PageArray<Rgb555> texels;
        ASSERT_TRUE(texels.allocate(64));
        std::ranges::fill(texels, static_cast<Rgb555>(opaqueBit | (letters[slot] - 'a' + 1)));
        list.set(slot, 8, 8, std::move(texels));
    }
}

/// The same of what the list holds.
std::string lettersOf(const TextureList& list)
{
    std::string letters;
    for (std::uint32_t slot = 0; slot < list.usedCount(); ++slot)
        letters += list.isEmpty(slot)
                       ? '.'
                       : static_cast<char>('a' - 1 + (list.slot(slot).pixels[0] & 31));
    return letters;
}

/// A packed bitmap of one colour, white, whose header says what it is told to.
Bytes whiteBitmap(std::uint32_t width, std::uint32_t height, std::uint16_t depth,
                  std::uint32_t compression)
{
    ByteWriter out;
    for (const std::uint32_t field : {40u, width, height}) out.u32(field);
    out.u16(1);
    out.u16(depth);
    out.u32(compression);
    out.zeros(20);
    for (int i = 0; i < 8 * 8 * 3; ++i) out.u8(255);
    return out.release();
}

/// The editor with its texture list window open.
class TextureWindowTest : public testing::Test {
protected:
    TextureWindowTest() { editor.sendCommand(IDM_VIEW_TEXTURES); }

    HWND window() const
    {
        return editor.ask([](Editor& e) { return e.textureWindow.window; });
    }
    LRESULT run(int command, const char* path = nullptr) const
    {
        return SendMessageA(window(), WM_COMMAND, static_cast<WPARAM>(command),
                            reinterpret_cast<LPARAM>(path));
    }
    /// Starts a command that brings an alert or a dialog up.
    void start(int command) const
    {
        PostMessageA(window(), WM_COMMAND, static_cast<WPARAM>(command), 0);
    }
    /// Presses a button of the alert that is to come and returns its text.
    std::string answer(int button) const
    {
        const ShownAlert shown = editor.waitForAlert();
        EXPECT_EQ(shown.caption, "Alert");
        savePicture(editor.pictureOf(shown.window), "texture-alert");
        EXPECT_TRUE(editor.press(shown, button));
        EXPECT_TRUE(waitUntil([&] { return IsWindowEnabled(editor.window()) != FALSE; }));
        editor.call([](Editor&) {}); // the command has come to its end or to its next question
        return shown.text;
    }
    void set(const std::string& letters, std::uint32_t current, bool changed) const
    {
        editor.call([&](Editor& e) {
            fillList(e, letters);
            e.document.textures.current = current;
            e.document.texturesChanged = changed;
            undoClear(e.undo);
            for (std::uint16_t i = 0; i < 6; ++i) e.document.model.attributes[i].texture = i;
        });
    }
    std::string letters() const
    {
        return editor.ask([](Editor& e) { return lettersOf(e.document.textures); });
    }
    bool changed() const
    {
        return editor.ask([](Editor& e) { return e.document.texturesChanged; });
    }
    std::string file() const
    {
        return editor.ask([](Editor& e) { return e.document.textureFile; });
    }
    bool isOffered(int command) const
    {
        return (GetMenuState(GetMenu(window()), static_cast<UINT>(command), MF_BYCOMMAND) &
                MF_GRAYED) == 0;
    }
    bool isButtonOffered(int command) const
    {
        return editor.ask([&](Editor& e) {
            return SendMessageA(e.textureWindow.toolBar, TB_ISBUTTONENABLED,
                                static_cast<WPARAM>(command), 0) != 0;
        });
    }
    std::int32_t topSlot() const
    {
        return editor.ask([](Editor& e) { return e.textureWindow.topSlot; });
    }
    void click(UINT message, int x, int y) const
    {
        SendMessageA(window(), message, 0, MAKELPARAM(x, y));
    }
    /// Runs `action` with keys held. Again, when the display has let go of them meanwhile, as it
    /// does when it learns late that the focus has moved.
    void withKeys(const std::vector<WORD>& keys, const std::function<void()>& action) const
    {
        EXPECT_TRUE(waitUntil([&] {
            std::vector<std::unique_ptr<HeldKey>> held;
            for (const WORD key : keys) held.push_back(std::make_unique<HeldKey>(editor, key));
            action();
            return editor.ask([&](Editor&) {
                return std::ranges::all_of(keys, [](WORD key) { return isKeyDown(key); });
            });
        }));
    }
    void putOnClipboard(const Bytes& bytes) const
    {
        editor.call([&](Editor& e) {
            const HGLOBAL block = GlobalAlloc(GHND, bytes.size());
            std::memcpy(LockedGlobal(block).bytes().data(), bytes.data(), bytes.size());
            const OpenedClipboard clipboard(e.mainWindow);
            EmptyClipboard();
            EXPECT_TRUE(SetClipboardData(CF_DIB, block));
        });
    }

    RunningEditor editor;
};

TEST_F(TextureWindowTest, HasItsClassStyleTitleMenuAndTips)
{
    EXPECT_EQ(GetClassLongPtrA(window(), GCL_STYLE), 11u);
    EXPECT_EQ(GetClassLongPtrA(window(), GCLP_HBRBACKGROUND), 5u);
    constexpr LONG_PTR given = WS_POPUP | WS_VISIBLE | WS_CAPTION | WS_SYSMENU | WS_THICKFRAME;
    EXPECT_EQ(GetWindowLongPtrA(window(), GWL_STYLE), given | WS_CLIPSIBLINGS);
    EXPECT_EQ(GetWindow(window(), GW_OWNER), editor.window());
    EXPECT_EQ(windowText(window()), "Texture List");
    EXPECT_EQ(editor.ask([](Editor& e) { return e.settings.textures.left; }), 100);
    run(IDM_TEXTURE_EMPTY_CLIPBOARD);
    EXPECT_EQ(menuOutline(GetMenu(window())),
              "&File {&Open...\tCtrl+Shift+O=40026, -, &Save\tCtrl+Shift+S=40027, "
              "Save &as...=40028, -, &Import...=40086, &Export...=40087, -, C&lose=40029}, "
              "&Edit {(&Undo\tCtrl+Z=40035), -, Cu&t\tCtrl+X=40036, &Copy\tCtrl+C=40037, "
              "(&Paste\tCtrl+V=40038), &Delete\tDel=40039, -, &Insert\tCtrl+Ins=40040, "
              "&Backspace\tCtrl+Back=40041, Delete &All...=40124, -, "
              "(&Empty Clipboard=40085), -, In&formation=40095}, "
              "&View {L&ine Down=40031, (Li&ne Up=40032), Page &Down=40033, "
              "(Page &Up=40034)}, "
              "&Tools {&Scale...=40077, F&lip...=40078, &Rotate...=40079, -, Sli&ce=40098, "
              "S&how Sliced=40099}");
    editor.call([](Editor& e) {
        NMTTDISPINFOA tip{};
        tip.hdr.code = TTN_GETDISPINFOA;
        tip.hdr.idFrom = IDM_TEXTURE_OPEN;
        SendMessageA(e.textureWindow.window, WM_NOTIFY, 0, reinterpret_cast<LPARAM>(&tip));
        EXPECT_STREQ(tip.lpszText, "Open(Ctrl+Shift+O)");
    });
    PostMessageA(window(), WM_RBUTTONDOWN, 0, MAKELPARAM(60, 60));
    HWND menu = nullptr;
    ASSERT_TRUE(waitUntil([&] { return (menu = editor.findWindow("#32768")) != nullptr; }));
    EXPECT_EQ(GetMenuItemID(reinterpret_cast<HMENU>(SendMessageA(menu, MN_GETHMENU, 0, 0)), 0),
              static_cast<UINT>(IDM_TEXTURE_UNDO));
    savePicture(editor.pictureOf(menu), "texture-menu");
    PostMessageA(window(), WM_CANCELMODE, 0, 0);
    EXPECT_TRUE(waitUntil([&] { return !editor.findWindow("#32768"); }));
}

TEST_F(TextureWindowTest, EveryEditChangesTheListAndIsUndone)
{
    struct Row {
        int command;
        bool shift;
        std::uint32_t current;
        const char *letters, *numbers; ///< the list and the polygons' texture numbers afterwards
    };
    const Row rows[] = {
        {IDM_TEXTURE_COPY, false, 1, "abc", "012345"},
        {IDM_TEXTURE_PASTE, false, 2, "abb", "012345"},
        {IDM_TEXTURE_CUT, false, 0, ".bc", "012345"},
        {IDM_TEXTURE_PASTE, false, 4, "abc.a", "012345"},
        {IDM_TEXTURE_DELETE, false, 1, "a.c", "012345"},
        {IDM_TEXTURE_INSERT, false, 1, "a.bc", "012345"},
        {IDM_TEXTURE_INSERT, true, 1, "a.bc", "023456"},
        {IDM_TEXTURE_BACKSPACE, false, 1, "ac", "012345"},
        {IDM_TEXTURE_BACKSPACE, true, 1, "ac", "011234"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.command);
        const auto numbers = [&] {
            return editor.ask([](Editor& e) {
                std::string text;
                for (int i = 0; i < 6; ++i)
                    text += std::to_string(
                        e.document.model.attributes[static_cast<std::size_t>(i)].texture);
                return text;
            });
        };
        withKeys(row.shift ? std::vector<WORD>{VK_SHIFT} : std::vector<WORD>{}, [&] {
            set("abc", row.current, false);
            run(row.command);
        });
        EXPECT_EQ(letters(), row.letters);
        EXPECT_EQ(numbers(), row.numbers);
        EXPECT_TRUE(changed());
        const bool edited = row.command != IDM_TEXTURE_COPY;
        EXPECT_EQ(isOffered(IDM_TEXTURE_UNDO), edited);
        EXPECT_EQ(isButtonOffered(IDM_TEXTURE_UNDO), edited);
        editor.call([](Editor& e) { e.document.texturesChanged = false; });
        run(IDM_TEXTURE_UNDO);
        EXPECT_EQ(letters(), "abc");
        EXPECT_EQ(numbers(), "012345");
        EXPECT_TRUE(changed());
        EXPECT_FALSE(isOffered(IDM_TEXTURE_UNDO)) << "it is not redone";
    }
}

TEST_F(TextureWindowTest, WhatCannotBeDoneIsSaid)
{
    struct Row {
        int command;
        const char* letters;
        Bytes clipboard; ///< none for an empty one
        const char* text;
    };
    const char notSupported[] = "Sorry, this type of Clipboard data is not supported.";
    const char listEmpty[] = "Texture data is empty. Nothing to edit. ";
    const Row rows[] = {
        {IDM_TEXTURE_PASTE, "abc", {}, "Clipboard data is empty. Nothing to edit. "},
        {IDM_TEXTURE_PASTE, "abc", whiteBitmap(12, 2, 24, 0),
         "Data Error(Width of Texture should be multiple of 8. )"},
        {IDM_TEXTURE_PASTE, "abc", whiteBitmap(8, 8, 24, 1), notSupported},
        {IDM_TEXTURE_PASTE, "abc", whiteBitmap(8, 8, 1, 0), notSupported},
        {IDM_TEXTURE_PASTE, "abc", whiteBitmap(65528, 65535, 32, 0), notSupported},
        {IDM_TEXTURE_PASTE, "abc", Bytes(7), notSupported},
        {IDM_TEXTURE_INSERT, "", {}, listEmpty},
        {IDM_TEXTURE_BACKSPACE, "", {}, listEmpty},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.text);
        set(row.letters, 1, false);
        run(IDM_TEXTURE_EMPTY_CLIPBOARD);
        if (!row.clipboard.empty()) putOnClipboard(row.clipboard);
        start(row.command);
        EXPECT_EQ(answer(IDOK), row.text);
        EXPECT_EQ(letters(), row.letters);
        EXPECT_TRUE(changed()) << "whatever came of it";
        EXPECT_FALSE(isOffered(IDM_TEXTURE_UNDO));
    }
    set("ab", 1, false);
    start(IDM_TEXTURE_INFORMATION);
    const ShownAlert shown = editor.waitForAlert();
    EXPECT_EQ(shown.caption, "Texutre Information");
    EXPECT_EQ(shown.text, "ID\t= 1\nWidth\t= 8\nHeight\t= 8");
    savePicture(editor.pictureOf(shown.window), "texture-information");
    editor.closeDialog(shown, IDOK);
    EXPECT_FALSE(changed());
}

TEST_F(TextureWindowTest, TheClipboardIsSharedWithOtherPrograms)
{
    set("abc", 2, false);
    run(IDM_TEXTURE_EMPTY_CLIPBOARD);
    EXPECT_FALSE(isOffered(IDM_TEXTURE_EMPTY_CLIPBOARD));
    EXPECT_FALSE(changed());
    run(IDM_TEXTURE_COPY);
    for (const int command : {IDM_TEXTURE_PASTE, IDM_TEXTURE_EMPTY_CLIPBOARD})
        EXPECT_TRUE(isOffered(command));
    EXPECT_TRUE(isButtonOffered(IDM_TEXTURE_PASTE));
    editor.call([](Editor& e) {
        Bytes expected(packedTextureSize(e.document.textures.slot(2)));
        packTexture(e.document.textures.slot(2), expected);
        const OpenedClipboard clipboard(e.mainWindow);
        const LockedGlobal block(GetClipboardData(CF_DIB));
        ASSERT_GE(block.bytes().size(), expected.size());
        EXPECT_TRUE(std::ranges::equal(block.bytes().first(expected.size()), expected));
    });
    run(IDM_TEXTURE_EMPTY_CLIPBOARD);
    putOnClipboard(whiteBitmap(8, 8, 24, 0)); // by another program, while this one is not active
    for (const HWND one : {editor.window(), window()}) {
        editor.call([](Editor& e) {
            EnableMenuItem(GetMenu(e.textureWindow.window), IDM_TEXTURE_PASTE, MF_GRAYED);
        });
        SendMessageA(one, WM_ACTIVATEAPP, TRUE, 0);
        EXPECT_TRUE(isOffered(IDM_TEXTURE_PASTE));
    }
    editor.call([](Editor& e) { e.transparentColour = 0x7FFF; });
    run(IDM_TEXTURE_PASTE);
    EXPECT_EQ(editor.ask([](Editor& e) { return e.document.textures.slot(2).pixels[63]; }), 0x7FFF);
}

TEST_F(TextureWindowTest, AClickPicksAndADoubleClickPutsOnPolygonsAsTheKeysSay)
{
    struct Row {
        std::vector<WORD> keys;
        std::uint32_t flags; ///< of a picked polygon afterwards
        std::uint16_t texture;
    };
    const Row rows[] = {{{}, picked | textureMap, 9},
                        {{'H'}, picked | textureMap | flipHorizontal, 9},
                        {{'V'}, picked | textureMap | flipVertical, 9},
                        {{'H', VK_CONTROL}, textureMap | flipHorizontal, 9},
                        {{VK_SHIFT}, picked, 2}};
    set("abc", 0, false);
    editor.sendCommand(IDM_VIEW_ATTRIBUTES);
    const int barHeight = editor.ask([](Editor& e) { return gridArea(e.textureWindow).top; });
    click(WM_LBUTTONDOWN, 10, barHeight - 1); // beside the grid
    EXPECT_EQ(editor.ask([](Editor& e) { return e.document.textures.current; }), 0u);
    for (const Row& row : rows) {
        withKeys(row.keys, [&] {
            editor.call([](Editor& e) {
                e.document.modelChanged = false;
                e.document.model.attributes[2] = {0, 0, 2, 0, picked, 2};
            });
            click(WM_LBUTTONDOWN, 0, barHeight);
            click(WM_LBUTTONDOWN, 9 * 52 - 1, barHeight + 67);
            editor.call([](Editor& e) { e.textureWindow.topSlot = 1; });
            click(WM_LBUTTONDOWN, 8 * 52, barHeight);
            click(WM_LBUTTONDBLCLK, 8 * 52, barHeight);
        });
        editor.call([&](Editor& e) {
            EXPECT_EQ(e.document.textures.current, 9u);
            EXPECT_EQ(
                GetDlgItemInt(e.attributePages.pages[0], IDC_ATTRIBUTE_TEXTURE, nullptr, FALSE),
                9u);
            EXPECT_EQ(e.document.model.attributes[2].flags, row.flags);
            EXPECT_EQ(e.document.model.attributes[2].texture, row.texture);
            EXPECT_TRUE(e.document.modelChanged);
        });
        editor.sendCommand(IDM_EDIT_UNDO);
        EXPECT_EQ(editor.ask([](Editor& e) { return e.document.model.attributes[2].texture; }), 2);
    }
    EXPECT_FALSE(changed());
}

TEST_F(TextureWindowTest, ScrollsAndKeepsPlaceAndSlotWhileItIsClosed)
{
    SetWindowPos(window(), nullptr, 150, 120, 214, 300, SWP_NOZORDER);
    RECT client{};
    GetClientRect(window(), &client);
    EXPECT_EQ(client.right, 208);
    EXPECT_EQ(
        (client.bottom - editor.ask([](Editor& e) { return gridArea(e.textureWindow).top; })) % 68,
        0);
    struct Row {
        int command;
        int top;
    };
    for (const Row& row : {Row{IDM_TEXTURE_LINE_UP, 0}, Row{IDM_TEXTURE_PAGE_DOWN, 4},
                           Row{IDM_TEXTURE_LINE_DOWN, 5}, Row{IDM_TEXTURE_PAGE_UP, 1},
                           Row{IDM_TEXTURE_LINE_UP, 0}, Row{IDM_TEXTURE_LINE_DOWN, 1}}) {
        run(row.command);
        EXPECT_EQ(topSlot(), row.top);
        for (const int up : {IDM_TEXTURE_LINE_UP, IDM_TEXTURE_PAGE_UP})
            EXPECT_EQ(isOffered(up), row.top > 0);
        EXPECT_EQ(isButtonOffered(IDM_TEXTURE_LINE_UP), row.top > 0);
    }
    for (const int turned : {-60, -60, -240, 120})
        SendMessageA(window(), WM_MOUSEWHEEL, MAKEWPARAM(0, turned), 0);
    EXPECT_EQ(topSlot(), 9);
    RECT before{}, after{};
    GetWindowRect(window(), &before);
    run(IDM_TEXTURE_CLOSE);
    EXPECT_FALSE(window());
    const auto isChecked = [&] {
        return (GetMenuState(GetMenu(editor.window()), IDM_VIEW_TEXTURES, MF_BYCOMMAND) &
                MF_CHECKED) != 0;
    };
    EXPECT_FALSE(isChecked());
    editor.sendCommand(IDM_VIEW_TEXTURES);
    EXPECT_TRUE(isChecked());
    GetWindowRect(window(), &after);
    EXPECT_TRUE(EqualRect(&before, &after));
    EXPECT_EQ(topSlot(), 9);
    EXPECT_TRUE(isOffered(IDM_TEXTURE_PAGE_UP));
    editor.sendCommand(IDM_VIEW_TEXTURES); // once more: closed
    EXPECT_FALSE(window());
}

TEST_F(TextureWindowTest, WhileItIsClosedKeysDoNothingAndTheListIsSavedAllTheSame)
{
    run(IDM_TEXTURE_EMPTY_CLIPBOARD);
    set("abc", 1, false);
    run(IDM_TEXTURE_CLOSE);
    for (const int command : {40026, 40027, 40035, 40036, 40037, 40038, 40039, 40040, 40041, 40095})
        editor.sendCommand(command);
    EXPECT_EQ(letters(), "abc");
    EXPECT_FALSE(changed());
    EXPECT_FALSE(IsClipboardFormatAvailable(CF_DIB));
    const TemporaryFolder folder;
    set("abc", 1, true);
    editor.post(WM_CLOSE);
    EXPECT_TRUE(editor.press(editor.waitForAlert(), IDYES));
    EXPECT_TRUE(editor.fillFileDialog(folder.file("kept.mxt"), 1));
    EXPECT_EQ(editor.waitForEnd(), 0);
    EXPECT_TRUE(isTextureFile(folder.file("kept.mxt")));
}

TEST_F(TextureWindowTest, TheMainWindowsKeysReachIt)
{
    set("abc", 1, false);
    editor.sendCommand(IDM_TEXTURE_COPY);
    editor.sendCommand(IDM_TEXTURE_CUT); // has a key, but no command there
    EXPECT_EQ(letters(), "abc");
    editor.sendCommand(IDM_TEXTURE_DELETE);
    EXPECT_EQ(letters(), "a.c");
    editor.sendCommand(IDM_TEXTURE_UNDO);
    editor.sendCommand(IDM_TEXTURE_INSERT);
    EXPECT_EQ(letters(), "a.bc");
    editor.sendCommand(IDM_TEXTURE_BACKSPACE);
    editor.sendCommand(IDM_TEXTURE_PASTE);
    EXPECT_EQ(letters(), "abc");
}

TEST_F(TextureWindowTest, ListsAreSavedAndOpenedUnderTheirNames)
{
    const TemporaryFolder folder;
    set("ab", 0, true);
    start(IDM_TEXTURE_SAVE); // without a name it is asked for
    ASSERT_TRUE(editor.fillFileDialog(folder.file("one.123"), 1));
    ASSERT_TRUE(waitUntil([&] { return file() == folder.file("one.123"); }));
    EXPECT_FALSE(changed());
    set("abc", 0, true);
    run(IDM_TEXTURE_SAVE);
    EXPECT_FALSE(changed());
    set("..d", 0, false);
    start(IDM_TEXTURE_OPEN);
    ASSERT_TRUE(editor.fillFileDialog(folder.file("one.mxt"), 1));
    ASSERT_TRUE(waitUntil([&] { return letters() == "abc"; })) << "the saved one is put over it";
    EXPECT_EQ(file(), folder.file("one.mxt"));
    start(IDM_TEXTURE_OPEN);
    ASSERT_TRUE(editor.fillFileDialog(folder.file("one.123"), 2));
    EXPECT_EQ(letters(), "abc") << "the source form is only written";
    start(IDM_TEXTURE_SAVE_AS);
    ASSERT_TRUE(editor.cancelFileDialog());
    start(IDM_TEXTURE_SAVE_AS);
    ASSERT_TRUE(editor.fillFileDialog(folder.file("two.txr"), 2));
    ASSERT_TRUE(waitUntil([&] { return file() == folder.file("two.txr"); }));
    const std::string items =
        "&1 " + folder.file("one.mxt") + "=40120, &2 " + folder.file("one.123") + "=40121, -, ";
    EXPECT_NE(menuOutline(GetMenu(window())).find(items + "C&lose"), std::string::npos);
    set("", 0, true);
    start(IDM_RECENT_TEXTURES_2);
    EXPECT_EQ(answer(IDNO), "Save changes of texture before opening new file?");
    EXPECT_EQ(letters(), "ab");
    EXPECT_FALSE(changed());
    run(IDM_RECENT_TEXTURES_4); // beeps
    EXPECT_EQ(letters(), "ab");
    std::filesystem::remove(folder.file("one.mxt"));
    std::filesystem::create_directories(folder.file("one.mxt/in the way"));
    set("ab", 0, true);
    start(IDM_TEXTURE_SAVE);
    EXPECT_EQ(answer(IDOK), "Cannot create File.");
    EXPECT_TRUE(changed());
    set("", 0, true);
    start(IDM_TEXTURE_SAVE);
    EXPECT_EQ(answer(IDOK), "Texture data is empty. Nothing to edit. ");
    EXPECT_EQ(menuOutline(GetMenu(window())).find("two.txr"), std::string::npos);
}

TEST_F(TextureWindowTest, DroppedFilesAreTextureListsOrRefused)
{
    const TemporaryFolder folder;
    writeTexturesFile(folder.file("good.mxt"), 3);
    writeTextFile(folder.file("broken.mxt"), "MXTX and nothing else");
    writeTextFile(folder.file("text.txt"), "no texture list");
    set("ab", 0, true);
    editor.call([](Editor& e) { e.undo.kind = tag("ATTR"); });
    editor.postDrop({folder.file("good.mxt"), folder.file("text.txt")}, window());
    EXPECT_EQ(answer(IDCANCEL), "Save changes of texture before opening new file?");
    EXPECT_EQ(letters(), "ab");
    set("ab", 0, false);
    editor.postDrop({folder.file("good.mxt"), folder.file("text.txt")}, window());
    ASSERT_TRUE(waitUntil([&] { return letters() == "cb"; }));
    EXPECT_FALSE(isOffered(IDM_TEXTURE_UNDO));
    set("ab", 0, false);
    run(IDM_FILE_OPEN_PATH, folder.file("broken.mxt").c_str()); // without a word
    EXPECT_EQ(letters(), "ab");
    EXPECT_EQ(file(), folder.file("good.mxt")) << "no save goes over it";
    editor.postDrop({folder.file("text.txt")}, window());
    EXPECT_EQ(answer(IDOK), "Sorry, this file format is not supported.");
}

TEST_F(TextureWindowTest, DeleteAllAsksAndKeepsWhatWasToBeSavedAndWasNot)
{
    const TemporaryFolder folder;
    struct Row {
        int button;
        bool save; ///< what becomes of the dialog of Save as
        const char* letters;
        bool changed;
    };
    for (const Row& row : {Row{IDCANCEL, false, "abc", true}, Row{IDYES, false, "abc", true},
                           Row{IDYES, true, "", false}, Row{IDNO, false, "", false}}) {
        set("abc", 1, true);
        run(IDM_TEXTURE_DELETE);
        set("abc", 1, true);
        start(IDM_TEXTURE_DELETE_ALL);
        const ShownAlert shown = editor.waitForAlert();
        EXPECT_EQ(shown.text,
                  "WARNING : You cannot Undo after do this function.\n Save changes before doing?");
        savePicture(editor.pictureOf(shown.window), "texture-delete-all");
        EXPECT_TRUE(editor.press(shown, row.button));
        if (row.button == IDYES) {
            EXPECT_TRUE(row.save ? editor.fillFileDialog(folder.file("all.mxt"), 1)
                                 : editor.cancelFileDialog());
        }
        ASSERT_TRUE(
            waitUntil([&] { return letters() == row.letters && changed() == row.changed; }));
        EXPECT_EQ(std::filesystem::exists(folder.file("all.mxt")), row.save);
        std::filesystem::remove(folder.file("all.mxt"));
    }
}

TEST(TextureWindow, OutlivesARestartWithItsPlaceAndItsRecentFiles)
{
    const TemporaryFolder folder;
    const std::string settings = folder.file("Facetor.ini"), path = folder.file("a.mxt");
    writeTexturesFile(path, 3);
    WindowRectangle place{};
    for (const bool first : {true, false}) {
        RunningEditor editor(first ? std::vector{path} : std::vector<std::string>{}, Platform::nt,
                             {}, settings);
        editor.sendCommand(IDM_VIEW_TEXTURES);
        const HWND window = editor.findWindow(textureWindowClass);
        ASSERT_TRUE(window);
        if (first) SetWindowPos(window, nullptr, 200, 180, 333, 222, SWP_NOZORDER);
        RECT r{};
        GetWindowRect(window, &r);
        if (first) place = {r.left, r.top, r.right, r.bottom};
        EXPECT_EQ(place, (WindowRectangle{r.left, r.top, r.right, r.bottom}));
        EXPECT_NE(menuOutline(GetMenu(window)).find("&1 " + path + "=40120"), std::string::npos);
        editor.post(WM_CLOSE);
        EXPECT_EQ(editor.waitForEnd(), 0);
    }
}

TEST(TextureWindow, ShowsASampleAndWritesTheSourceThatTheCommandLineToolWrites)
{
    const TemporaryFolder folder, other;
    const RunningEditor editor({"samples/ship.mx3", "samples/ship.mxt"});
    editor.sendCommand(IDM_VIEW_TEXTURES);
    const HWND window = editor.findWindow(textureWindowClass);
    ASSERT_TRUE(window);
    SetWindowPos(window, nullptr, 40, 60, 480, 400, SWP_NOZORDER);
    SendMessageA(window, WM_LBUTTONDOWN, 0, MAKELPARAM(60, 60));
    const Picture shown = editor.pictureOf(window);
    savePicture(shown, "textures");
    EXPECT_TRUE(waitUntil(
        [&] { return editor.ask([](Editor& e) { return e.textureWindow.marqueePhase; }) > 0; }));
    EXPECT_NE(captureWindow(window), shown) << "the frame around the current texture runs on";
    PostMessageA(window, WM_COMMAND, IDM_TEXTURE_SAVE_AS, 0);
    ASSERT_TRUE(editor.fillFileDialog(folder.file("ship.txr"), 2));
    ASSERT_TRUE(waitUntil([&] {
        return editor.ask([](Editor& e) { return e.document.textureFile; }).ends_with(".txr");
    }));
    ASSERT_EQ(runCommandLineTool("-q convert samples/ship.mxt \"" + other.file("ship.txr") + "\""),
              0);
    const auto saved = readFile(folder.file("ship.txr"));
    ASSERT_TRUE(saved);
    EXPECT_GT(saved->size(), 10000u);
    EXPECT_TRUE(*saved == readFile(other.file("ship.txr")));
}

} // namespace

} // namespace facetor
