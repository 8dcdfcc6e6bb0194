#include "texture/plug_in_commands_win.h"

#include "base/file.h"
#include "base/temporary_folder.h"
#include "gui/running_editor.h"
#include "images/bmp_codec.h"
#include "resources/resource_ids.h"
#include "texture/bitmap_conversion.h"
#include "texture/texture_commands_win.h"
#include "ui/window_data_win.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <cstdlib>
#include <filesystem>

namespace facetor {

namespace {

std::filesystem::path plugInFolder()
{
    return programFolder(nullptr) + "\\PlugIn";
}

/// More libraries in the plug-in folder, until the end of the scope.
class AddedPlugIns {
public:
    AddedPlugIns() = default;
    ~AddedPlugIns()
    {
        for (const std::filesystem::path& file : files_) std::filesystem::remove(file);
    }
    AddedPlugIns(const AddedPlugIns&) = delete;
    AddedPlugIns& operator=(const AddedPlugIns&) = delete;

    void add(const std::string& name, const Bytes& contents)
    {
        files_.push_back(plugInFolder() / name);
        ASSERT_EQ(writeFile(files_.back().string(), contents), Message::none);
    }
    void add(const std::string& name, const char* library)
    {
        add(name, readFile(library).value_or(Bytes{}));
    }

private:
    std::vector<std::filesystem::path> files_;
};

/// What the alerts of a start said: they come before there is a main window to ask.
std::vector<std::string> startAlerts;

/// Notes an alert's text once it is up, and answers it.
LRESULT CALLBACK answerAlerts(int code, WPARAM wParam, LPARAM lParam)
{
    const auto window = reinterpret_cast<HWND>(wParam);
    if (code == HCBT_ACTIVATE && GetDlgItem(window, 0xFFFF)) {
        startAlerts.push_back(windowText(GetDlgItem(window, 0xFFFF)));
        PostMessageA(window, WM_COMMAND, GetDlgItem(window, IDOK) ? IDOK : IDCANCEL, 0);
    }
    return CallNextHookEx(nullptr, code, wParam, lParam);
}

void noteAlerts()
{
    startAlerts.clear();
    SetWindowsHookExA(WH_CBT, answerAlerts, nullptr, GetCurrentThreadId());
}

TEST(PlugIns, WithoutAnyTheProgramDoesNotStart)
{
    const auto away = plugInFolder().replace_extension("away");
    std::filesystem::rename(plugInFolder(), away);
    for (const bool folderThere : {false, true}) {
        if (folderThere) std::filesystem::create_directory(plugInFolder());
        RunningEditor editor({}, Platform::nt, noteAlerts);
        EXPECT_EQ(editor.waitForEnd(), 0);
        EXPECT_EQ(editor.window(), nullptr);
        EXPECT_EQ(startAlerts, std::vector<std::string>{"Cannot find Plug-In module."});
    }
    std::filesystem::remove(plugInFolder());
    std::filesystem::rename(away, plugInFolder());
}

TEST(PlugIns, WhatIsNoneGetsItsAlertAndTheOthersServe)
{
    AddedPlugIns added;
    Bytes otherMachine = readFile(PNG_PLUG_IN).value_or(Bytes{});
    const auto header = std::to_integer<std::size_t>(otherMachine.at(0x3C)) |
                        std::to_integer<std::size_t>(otherMachine.at(0x3D)) << 8;
    otherMachine.at(header + 4) = otherMachine.at(header + 5) = std::byte{0x01};
    added.add("1 text.dll", Bytes(100, std::byte{'x'}));
    added.add("2 machine.dll", otherMachine);
    added.add("3 colours.dll", COLOUR_MODULE);
    added.add("4 spelling.dll", STRANGE_SPELLING);
    added.add("5 depths.dll", STRANGE_NO_DEPTHS);
    added.add("6 export.dll", STRANGE_NO_EXPORT);
    added.add("7 effect.dll", STRANGE_EFFECT);
    added.add("8 a name of 32 characters 12.dll", PNG_PLUG_IN);
    added.add("9 a name of 31 characters 1.dll", STRANGE_ODD);
    const RunningEditor editor({}, Platform::nt, noteAlerts);
    const std::string missing = "Cannot find Plug-In module.";
    const auto bad = [](const std::string& name) {
        return "This Plug-In contains a bad information.(" + name + ")";
    };
    EXPECT_EQ(startAlerts, (std::vector<std::string>{missing, missing, bad("3 colours.dll"),
                                                     bad("4 spelling.dll"), bad("5 depths.dll"),
                                                     bad("6 export.dll"),
                                                     bad("8 a name of 32 characters 12.dll")}));
    editor.call([](Editor& e) {
        const std::string odd = "9 a name of 31 characters 1.dll";
        EXPECT_EQ(
            e.plugIns.import.files,
            (std::vector<std::string>{odd, "Bmp.dll", "JpegGifTiff.dll", "Png.dll", "Tga.dll"}));
        EXPECT_EQ(e.plugIns.export_.files,
                  (std::vector<std::string>{odd, "Bmp.dll", "Png.dll", "Tga.dll"}));
        constexpr char filters[] = "Odd images(*.odd)\0*.odd\0Bitmap(*.bmp)\0*.bmp\0"
                                   "JPEG, GIF, TIFF(*.jpg;*.gif;*.tif)\0*.jpg;*.gif;*.tif\0";
        const std::string_view expected{filters, sizeof filters - 1};
        EXPECT_EQ(std::string_view(e.plugIns.import.filter.data(), expected.size()), expected);
    });
}

std::string picture(const std::string& name)
{
    return std::filesystem::absolute("tests/images/pictures/" + name).string();
}

/// Starts a command of the texture list window.
void begin(const RunningEditor& editor, int command, const std::string& path = {})
{
    editor.begin(
        [=](Editor& e) { runTextureCommand(e, command, reinterpret_cast<LPARAM>(path.c_str())); });
}

using Texels = std::vector<Rgb555>;

Texels texelsOf(const Editor& editor, std::uint32_t slot)
{
    const TextureSlot& texture = editor.document.textures.slot(slot);
    return {texture.pixels, texture.pixels + std::size_t{texture.width} * texture.height};
}

/// How far a texture is from what another program reads in the picture, in steps of a component;
/// where that program sees nothing, black and transparent has to be.
int distance(const Texels& texels, const std::string& name)
{
    const Bytes pixels = readFile(picture(name + ".rgba")).value_or(Bytes{});
    EXPECT_EQ(pixels.size(), texels.size() * 8);
    int farthest = 0;
    for (std::size_t i = 0; i < texels.size() && i * 8 + 7 < pixels.size(); ++i) {
        const auto byte = [&](std::size_t j) {
            return std::to_integer<int>(pixels[i * 8 + j * 2]);
        };
        if (byte(3) < 128) {
            if (name == "bmp32.bmp") continue; // there it is no alpha
            EXPECT_EQ(texels[i], 0) << i;
            continue;
        }
        const int components[] = {redOf(texels[i]), greenOf(texels[i]), blueOf(texels[i])};
        for (std::size_t j = 0; j < 3; ++j)
            farthest = std::max(farthest, std::abs(components[j] - (byte(j) >> 3)));
    }
    return farthest;
}

TEST(Import, PutsEveryKindOfPictureIntoTheCurrentSlot)
{
    const struct {
        int filter;
        const char* name;
        int distance; ///< 1 where near-black is kept apart from black, and for what JPEG loses
    } rows[] = {
        {1, "bmp4.bmp", 0},     {1, "bmp8.bmp", 0},    {1, "bmp555.bmp", 0},
        {1, "bmp24.bmp", 0},    {1, "bmp32.bmp", 0},   {2, "rgb.jpg", 1},
        {2, "grey.jpg", 1},     {2, "holes.gif", 1},   {2, "full.gif", 0},
        {2, "rgb.tif", 0},      {2, "lzw.tif", 0},     {2, "cut.tif", 1},
        {3, "rgb.png", 1},      {3, "rgba64.png", 1},  {3, "palette-cut.png", 1},
        {4, "rgba-rle.tga", 1}, {4, "palette.tga", 0},
    };
    const RunningEditor editor;
    std::uint32_t slot = 0;
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        editor.call([&](Editor& e) {
            e.document.textures.current = slot;
            e.document.texturesChanged = false;
            e.undo.kind = tag("test");
        });
        begin(editor, IDM_TEXTURE_IMPORT);
        ASSERT_TRUE(editor.fillFileDialog(picture(row.name), row.filter));
        ASSERT_TRUE(waitUntil(
            [&] { return editor.ask([&](Editor& e) { return e.document.texturesChanged; }); }));
        editor.call([&](Editor& e) {
            EXPECT_LE(distance(texelsOf(e, slot), row.name), row.distance);
            EXPECT_EQ(e.undo.kind, 0u);
        });
        ++slot;
    }
    begin(editor, IDM_TEXTURE_IMPORT);
    savePicture(editor.pictureOf(editor.waitForFileDialog()), "import");
    EXPECT_TRUE(editor.cancelFileDialog());
}

TEST(Import, TakesSeveralFilesAndNeverFillsTheLastSlot)
{
    const auto before = std::filesystem::current_path();
    const RunningEditor editor;
    const auto importThree = [&](std::uint32_t slot, std::uint32_t usedCount) {
        editor.call([&](Editor& e) { e.document.textures.current = slot; });
        begin(editor, IDM_TEXTURE_IMPORT);
        ASSERT_TRUE(editor.fillFileDialog(R"("bmp4.bmp" "12x8.bmp" "bmp24.bmp")", 1));
        if (slot == 0) {
            EXPECT_TRUE(editor.press(editor.waitForAlert(), IDOK)) << "the second is bad";
        }
        EXPECT_TRUE(waitUntil([&] {
            return editor.ask([](Editor& e) { return e.document.textures.usedCount(); }) ==
                   usedCount;
        }));
    };
    std::filesystem::current_path("tests/images/pictures");
    importThree(0, 3);
    importThree(textureSlotCount - 2, textureSlotCount - 1);
    std::filesystem::current_path(before);
    editor.call([](Editor& e) {
        EXPECT_EQ(e.document.textures.slot(0).width, 16);
        EXPECT_TRUE(e.document.textures.isEmpty(1));
        e.document.texturesChanged = false;
    });
}

TEST(Import, RefusesWhatBecomesNoTextureAndLeavesTheListAsItWas)
{
    const TemporaryFolder folder;
    Bytes cut = readFile(picture("rgb.png")).value_or(Bytes{});
    cut.resize(cut.size() / 2);
    ASSERT_EQ(writeFile(folder.file("cut.png"), cut), Message::none);
    const auto odd = [&](const std::string& answers) {
        EXPECT_EQ(writeFile(folder.file(answers + ".odd"), {}), Message::none);
        return folder.file(answers + ".odd");
    };
    const char* const format = "Sorry, this file format is not supported.";
    const char* const narrow = "Width of Texture should be multiple of 8. ";
    const char* const wide = "Out of Width to edit!";
    const char* const high = "Out of Height to edit!";
    const char* const colours = "Sorry, this Color mode is not supported. ";
    const char* const open = "Cannot open File.";
    const std::pair<std::string, const char*> rows[] = {
        {picture("rgb.png.rgba"), format}, {folder.file("missing.bmp"), format},
        {folder.path().string(), format},  {picture("rle8.bmp"), format},
        {picture("bmp1.bmp"), colours},    {folder.file("cut.png"), open},
        {picture("12x8.bmp"), narrow},     {picture("12x8.jpg"), narrow},
        {picture("264x8.png"), wide},      {picture("264x8.jpg"), wide},
        {picture("8x300.tga"), high},      {odd("8,8,7,0"), colours},
        {odd("8,8,1,0"), colours},         {odd("8,8,-16,0"), colours},
        {odd("0,8,16,0"), wide},           {odd("-8,8,16,0"), wide},
        {odd("2147483640,8,16,0"), wide},  {odd("8,0,16,0"), high},
        {odd("8,-2147483648,16,0"), high}, {odd("256,256,32,1"), open},
    };
    AddedPlugIns added;
    added.add("Odd.dll", STRANGE_ODD);
    const RunningEditor editor;
    for (const auto& [path, text] : rows) {
        SCOPED_TRACE(path);
        begin(editor, IDM_FILE_OPEN_PATH, path);
        const ShownAlert shown = editor.waitForAlert();
        EXPECT_EQ(shown.text, text);
        EXPECT_TRUE(editor.press(shown, IDOK));
    }
    begin(editor, IDM_FILE_OPEN_PATH, odd("256,8,4,0"));
    EXPECT_TRUE(waitUntil([&] {
        return editor.ask([](Editor& e) { return e.document.texturesChanged; });
    })) << "what a stranger delivers is taken";
    editor.call([](Editor& e) {
        EXPECT_EQ(e.document.textures.usedCount(), 1u);
        EXPECT_EQ(e.document.textures.slot(0).width, 256);
        e.document.texturesChanged = false;
    });
}

/// Fills slots with 8 x 8 texels of their own.
void fillSlots(Editor& editor, std::uint32_t count)
{
    for (std::uint32_t slot = 0; slot < count; ++slot) {
        PageArray<Rgb555> pixels;
        ASSERT_TRUE(pixels.allocate(64));
        for (std::size_t i = 0; i < 64; ++i)
            pixels[i] =
                i % 5 == 0 ? Rgb555{0} : static_cast<Rgb555>(opaqueBit | (slot * 97 + i * 331));
        editor.document.textures.set(slot, 8, 8, std::move(pixels));
    }
}

TEST(Export, WritesTheChosenSlotsUnderTheirNumbers)
{
    const TemporaryFolder folder;
    AddedPlugIns added;
    added.add("Odd.dll", STRANGE_ODD);
    const RunningEditor editor;
    begin(editor, IDM_TEXTURE_EXPORT);
    const ShownAlert empty = editor.waitForAlert();
    EXPECT_EQ(empty.text, "Texture data is empty. Nothing to edit. ");
    EXPECT_TRUE(editor.press(empty, IDOK));

    const auto fieldsEnabled = [](const ShownAlert& dialog) {
        return IsWindowEnabled(GetDlgItem(dialog.window, IDC_EXPORT_FROM)) &&
               IsWindowEnabled(GetDlgItem(dialog.window, IDC_EXPORT_TO));
    };
    const auto openDialog = [&] {
        begin(editor, IDM_TEXTURE_EXPORT);
        return editor.waitForAlert();
    };
    const auto choose = [&](const ShownAlert& dialog, int range, const char* from, const char* to) {
        SendDlgItemMessageA(dialog.window, range, BM_CLICK, 0, 0);
        SetDlgItemTextA(dialog.window, IDC_EXPORT_FROM, from);
        SetDlgItemTextA(dialog.window, IDC_EXPORT_TO, to);
    };
    editor.call([](Editor& e) { fillSlots(e, 20); });
    const ShownAlert first = openDialog();
    EXPECT_EQ(IsDlgButtonChecked(first.window, IDC_EXPORT_ALL), unsigned{BST_CHECKED});
    EXPECT_FALSE(fieldsEnabled(first));
    choose(first, IDC_EXPORT_EXTENT, "0", "0");
    EXPECT_TRUE(fieldsEnabled(first));
    savePicture(editor.pictureOf(first.window), "export");
    const std::pair<std::pair<const char*, const char*>, const char*> wrong[] = {
        {{"7", "5"}, "Data Error(\"From\">\"to\")"},
        {{"5", "4097"}, "Out of Polygons to edit!"},
        {{"5", "99999999999"}, "Data Error(to)"},
        {{"", "5"}, "Data Error(From)"},
    };
    for (const auto& [extent, text] : wrong) {
        choose(first, IDC_EXPORT_EXTENT, extent.first, extent.second);
        PostMessageA(first.window, WM_COMMAND, IDOK, 0);
        ShownAlert shown;
        EXPECT_TRUE(waitUntil([&] {
            shown = editor.findAlert();
            return shown.window != first.window && !shown.buttons.empty();
        }));
        EXPECT_EQ(shown.text, text);
        EXPECT_TRUE(editor.press(shown, IDOK));
        EXPECT_TRUE(waitUntil([&] { return IsWindowEnabled(first.window) != FALSE; }));
    }
    choose(first, IDC_EXPORT_EXTENT, "5", "7");
    EXPECT_TRUE(editor.press(first, IDOK));
    savePicture(editor.pictureOf(editor.waitForFileDialog()), "export-file");
    ASSERT_TRUE(editor.fillFileDialog(folder.file("pic.bmp"), 1));
    EXPECT_TRUE(waitUntil([&] { return folder.entryCount() == 3; }));
    const auto exported = [&](const char* name) {
        const Bytes file = readFile(folder.file(name)).value_or(Bytes{});
        Bytes buffer(64 * 2);
        Texels texels(64);
        if (bmpCodec.decode(file, buffer)) convertImageBuffer(buffer, 8, 16, 0, texels);
        return texels;
    };
    editor.call([&](Editor& e) {
        EXPECT_EQ(exported("pic05.bmp"), texelsOf(e, 5));
        EXPECT_EQ(exported("pic07.bmp"), texelsOf(e, 7));
        fillSlots(e, 120);
        e.document.textures.current = 119;
    });

    const ShownAlert second = openDialog();
    EXPECT_EQ(IsDlgButtonChecked(second.window, IDC_EXPORT_EXTENT), unsigned{BST_CHECKED});
    EXPECT_EQ(GetDlgItemInt(second.window, IDC_EXPORT_TO, nullptr, FALSE), 7u);
    choose(second, IDC_EXPORT_CURRENT, "8", "9"); // which does not count
    EXPECT_TRUE(editor.press(second, IDOK));
    ASSERT_TRUE(editor.fillFileDialog(folder.file("pic"), 1));
    EXPECT_TRUE(waitUntil([&] { return folder.entryCount() == 4; }));
    editor.call([&](Editor& e) { EXPECT_EQ(exported("pic119.bmp"), texelsOf(e, 119)); });

    std::filesystem::create_directory(folder.path() / "no119.png");
    const struct {
        const char* name;
        int filter;
        const char* text;
    } refused[] = {{"no.png", 3, "Cannot create File."},
                   {"no.odd", 2, "Sorry, this Color mode is not supported. "}};
    for (const auto& row : refused) {
        EXPECT_TRUE(editor.press(openDialog(), IDOK));
        ASSERT_TRUE(editor.fillFileDialog(folder.file(row.name), row.filter));
        const ShownAlert shown = editor.waitForAlert();
        EXPECT_EQ(shown.text, row.text);
        EXPECT_TRUE(editor.press(shown, IDOK));
    }
    EXPECT_EQ(folder.entryCount(), 5u);
}

} // namespace

} // namespace facetor
