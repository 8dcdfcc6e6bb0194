#include "app/commands.h"
#include "commands/plug_in_commands.h"

#include "base/file.h"
#include "base/temporary_folder.h"
#include "commands/texture_commands.h"
#include "driver/running_editor.h"
#include "gui/scarce_memory.h"
#include "image/bitmap_conversion.h"
#include "image/bmp_codec.h"
#include "image/png_codec.h"
#include "image/tga_codec.h"
#include "plug_ins/plug_ins.h"
#include "resources/resource_ids.h"
#include "texture/numbered_texture.h"
#include "ui/module.h"
#include "ui/window_data.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <algorithm>
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

/// The block in which a library holds its strings 0 to 15: each with its length before it.
Bytes stringBlock(const std::vector<std::string>& texts)
{
    ByteWriter out;
    for (std::size_t i = 0; i < 16; ++i) {
        const std::string text = i < texts.size() ? texts[i] : "";
        out.u16(static_cast<std::uint16_t>(text.size()));
        for (const char character : text) out.u16(static_cast<std::uint8_t>(character));
    }
    return out.release();
}

/// The stranger's plug-in with other strings; an empty one is missing.
Bytes strangerSaying(const std::string& capability, const std::string& extension = "odd",
                     const std::string& description = "Odd images",
                     const std::string& depths = "8 160")
{
    Bytes library = readFile(STRANGE_PLUG_IN).value_or(Bytes{});
    const Bytes present =
        stringBlock({"", "READ WRITE", "odd", "Odd images", "8 160", std::string(64, '.')});
    const Bytes wanted = stringBlock({"", capability, extension, description, depths});
    const auto found = std::ranges::search(library, present);
    EXPECT_FALSE(found.empty());
    EXPECT_LE(wanted.size(), found.size());
    if (!found.empty()) std::ranges::copy(wanted, found.begin());
    return library;
}

/// A library without one of its exports, which has another name of the same place in the order.
Bytes without(const std::string& name, Bytes library = strangerSaying("READ WRITE"))
{
    const auto bytes = std::as_bytes(std::span(name));
    for (auto found = std::ranges::search(library, bytes); !found.empty();
         found = std::ranges::search(std::ranges::subrange(found.end(), library.end()), bytes))
        *std::prev(found.end()) = std::byte{'~'};
    return library;
}

constexpr char missing[] = "Cannot find Plug-In module.";
constexpr char outOfMemory[] = "Cannot allocate enough memory to do this function.";

TEST(PlugIns, WithoutAnyForImagesTheProgramDoesNotStart)
{
    const auto away = plugInFolder().replace_extension("away");
    std::filesystem::rename(plugInFolder(), away);
    std::vector<std::string> expected{missing};
    for (const std::string_view content : {"no folder", "no file", "no plug-in"}) {
        SCOPED_TRACE(content);
        AddedPlugIns added;
        if (content != "no folder") std::filesystem::create_directory(plugInFolder());
        if (content == "no plug-in") {
            added.add("colours.dll", COLOUR_MODULE);
            added.add("effect.dll", strangerSaying("EFFECT"));
            added.add("text.dll", Bytes(100, std::byte{'x'}));
            expected = {"This Plug-In contains a bad information.(colours.dll)", missing, missing};
        }
        RunningEditor editor({}, Platform::nt, noteAlerts);
        EXPECT_EQ(editor.waitForEnd(), 0);
        EXPECT_EQ(editor.window(), nullptr);
        EXPECT_EQ(startAlerts, expected);
        std::filesystem::remove_all(plugInFolder());
    }
    std::filesystem::rename(away, plugInFolder());
    PlugIns nowhere;
    EXPECT_EQ(scanPlugInFolder(nowhere, [](Message, const std::string&) {}), Message::noPlugIn);
}

TEST(PlugIns, WhatIsNoneGetsItsAlertAndTheOthersServe)
{
    Bytes otherMachine = readFile(PNG_PLUG_IN).value_or(Bytes{});
    const auto header = std::to_integer<std::size_t>(otherMachine.at(0x3C)) |
                        std::to_integer<std::size_t>(otherMachine.at(0x3D)) << 8;
    otherMachine.at(header + 4) = otherMachine.at(header + 5) = std::byte{0x01};
    const Bytes png = readFile(PNG_PLUG_IN).value_or(Bytes{}),
                colours = readFile(COLOUR_MODULE).value_or(Bytes{});
    const struct {
        const char* name;
        Bytes library;
        std::string_view outcome; ///< "none", "bad", or the lists that it gets into
    } rows[] = {
        // In the order of the names.
        {"0 machine.dll", otherMachine, "none"},
        {"0 text.dll", Bytes(100, std::byte{'x'}), "none"},
        {"1 colours.dll", colours, "bad"},
        {"1 effect.dll", strangerSaying("EFFECT"), ""},
        {"1 long.dll", strangerSaying("READ WRITE AND MORE"), "bad"},
        {"1 spelling.dll", strangerSaying("Read"), "bad"},
        {"2 begin.dll", without("scvBeginCatalogSave"), "bad"},
        {"2 bits.dll", without("scvGetFileImageBits"), "bad"},
        {"2 check.dll", without("scvCheckFileFormat"), "bad"},
        {"2 depth.dll", without("scvGetFileImageDepth"), "bad"},
        {"2 end.dll", without("scvEndCatalogSave"), "bad"},
        {"2 put.dll", without("scvPutFileImageBits"), "bad"},
        {"2 size.dll", without("scvGetFileImageSize"), "bad"},
        {"3 capability.dll", strangerSaying(""), "bad"},
        {"3 depths.dll", strangerSaying("READ WRITE", "odd", "Odd images", ""), "bad"},
        {"3 description.dll", strangerSaying("READ WRITE", "odd", ""), "bad"},
        {"3 extension.dll", strangerSaying("READ WRITE", ""), "bad"},
        {"4 a name of 31 characters 1.dll", strangerSaying("READ WRITE"), "import, export"},
        {"4 a name of 32 characters 12.dll", png, "bad"},
        {"5 read.dll", without("scvPutFileImageBits", strangerSaying("READ", std::string(20, 'e'))),
         "import"},
        {"6 write.dll",
         without("scvCheckFileFormat", strangerSaying("WRITE", "e", std::string(40, 'd'))),
         "export"},
        {"Bmp.dll", {}, "import, export"},
        {"Gif.dll", {}, "import"},
        {"Jpeg.dll", {}, "import"},
        {"Png.dll", {}, "import, export"},
        {"Tga.dll", {}, "import, export"},
        {"Tiff.dll", {}, "import"},
        {"Various.dll", {}, "import"},
        {"VariousFitted.dll", {}, "import"},
        {"VariousFittedDiffused.dll", {}, "import"},
        {"VariousFittedPattern.dll", {}, "import"},
    };
    AddedPlugIns added;
    std::vector<std::string> alerts, import, export_;
    for (const auto& [name, library, outcome] : rows) {
        if (!library.empty()) added.add(name, library);
        if (outcome == "none") alerts.push_back(missing);
        if (outcome == "bad")
            alerts.push_back("This Plug-In contains a bad information.(" + std::string(name) + ")");
        if (outcome.starts_with("import")) import.push_back(name);
        if (outcome.ends_with("export")) export_.push_back(name);
    }
    const RunningEditor editor({}, Platform::nt, noteAlerts);
    EXPECT_EQ(startAlerts, alerts);
    editor.call([&](Editor& e) {
        EXPECT_EQ(e.plugIns.import.files, import);
        EXPECT_EQ(e.plugIns.export_.files, export_);
        constexpr char read[] = "Odd images(*.odd)\0*.odd\0"
                                "Odd images(*.eeeeeeeeeeeeeee)\0*.eeeeeeeeeeeeeee\0"
                                "Bitmap(*.bmp)\0*.bmp\0"
                                "GIF(*.gif)\0*.gif\0"
                                "JPEG(*.jpg;*.jpeg)\0*.jpg;*.jpeg\0";
        constexpr char write[] = "Odd images(*.odd)\0*.odd\0"
                                 "ddddddddddddddddddddddddddddddd(*.e)\0*.e\0Bitmap(*.bmp)\0";
        const auto starts = [](const PlugInList& list, std::string_view expected) {
            EXPECT_EQ(std::string_view(list.filter.data(), expected.size()), expected);
        };
        starts(e.plugIns.import, {read, sizeof read - 1});
        starts(e.plugIns.export_, {write, sizeof write - 1});
    });
}

std::string picture(const std::string& name)
{
    return std::filesystem::absolute("tests/images/pictures/" + name).string();
}

/// Starts a command of the texture list window.
void begin(const RunningEditor& editor, int command, const std::string& path = {})
{
    editor.begin([=](Editor& e) {
        (void)runCommand(e, CommandWindow::textures, command,
                         reinterpret_cast<LPARAM>(path.c_str()));
    });
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
        {1, "bmp1.bmp", 0},        {1, "bmp4.bmp", 0},     {1, "bmp8.bmp", 0},
        {1, "bmp555.bmp", 0},      {1, "bmp24.bmp", 0},    {1, "bmp32.bmp", 0},
        {3, "rgb.jpg", 1},         {3, "grey.jpg", 1},     {2, "holes.gif", 1},
        {2, "full.gif", 0},        {6, "rgb.tif", 0},      {6, "lzw.tif", 0},
        {6, "cut.tif", 1},         {4, "rgb.png", 1},      {4, "rgba64.png", 1},
        {4, "palette-cut.png", 1}, {5, "rgba-rle.tga", 1}, {5, "palette.tga", 0},
        {7, "bmp24.bmp", 0},       {7, "rgb.tif", 0},      {7, "palette.tga", 0},
        {8, "rgba64.png", 1},      {9, "rgb.tif", 1},      {10, "holes.gif", 1},
    };
    const RunningEditor editor;
    std::uint32_t slot = 0;
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        editor.call([&](Editor& e) {
            e.document.textures.current = slot;
            setTexturesChanged(e.document, false);
            e.document.undo.kind = tag("test");
        });
        begin(editor, IDM_TEXTURE_IMPORT);
        ASSERT_TRUE(editor.fillFileDialog(picture(row.name), row.filter));
        ASSERT_TRUE(waitUntil(
            [&] { return editor.ask([&](Editor& e) { return areTexturesChanged(e.document); }); }));
        editor.call([&](Editor& e) {
            EXPECT_LE(distance(texelsOf(e, slot), row.name), row.distance);
            EXPECT_EQ(e.document.undo.kind, 0u);
        });
        ++slot;
    }
    begin(editor, IDM_TEXTURE_IMPORT);
    savePicture(editor.pictureOf(editor.waitForFileDialog()), "import");
    EXPECT_TRUE(editor.cancelFileDialog());

    // With another transparent colour, black is as opaque as any.
    editor.call([&](Editor& e) {
        const Texels before = texelsOf(e, 4); // of bmp24.bmp
        e.transparentColour = before[100] & 0x7FFF;
        EXPECT_TRUE(importTexturePath(e, picture("bmp24.bmp")) == CommandOutcome::done);
        const Texels after = texelsOf(e, e.document.textures.current);
        for (std::size_t i = 0; i < after.size(); ++i)
            EXPECT_EQ(after[i],
                      before[i] == before[100] ? before[i] & 0x7FFF : before[i] | opaqueBit);
        setTexturesChanged(e.document, false);
    });
}

TEST(Import, TakesSeveralFilesAndNeverFillsTheLastSlot)
{
    const auto before = std::filesystem::current_path();
    const RunningEditor editor;
    const auto importThree = [&](std::uint32_t slot, std::uint32_t usedCount, int filter = 1) {
        editor.call([&](Editor& e) { e.document.textures.current = slot; });
        const std::uint32_t count = importCount(slot, 3);
        begin(editor, IDM_TEXTURE_IMPORT);
        ASSERT_TRUE(editor.fillFileDialog(R"("bmp4.bmp" "12x8.bmp" "bmp24.bmp")", filter));
        if (count == 3 && filter != 8) {
            const ShownAlert list = editor.waitForAlert();
            savePicture(editor.pictureOf(list.window), "refused");
            EXPECT_EQ(windowText(GetDlgItem(list.window, IDC_REPORT_TEXT)),
                      "12x8.bmp: Width of Texture should be multiple of 8. \r\n");
            EXPECT_TRUE(editor.press(list, IDOK));
        }
        EXPECT_TRUE(waitUntil([&] {
            return editor.ask([](Editor& e) { return e.document.textures.usedCount(); }) ==
                   usedCount;
        }));
    };
    std::filesystem::current_path("tests/images/pictures");
    importThree(0, 3);
    importThree(10, 12, 7); // of every kind: what is refused takes no slot
    importThree(20, 23, 8);
    importThree(textureSlotCount - 2, textureSlotCount - 1);
    std::filesystem::current_path(before);
    editor.call([](Editor& e) {
        EXPECT_EQ(e.document.textures.slot(0).width, 16);
        EXPECT_TRUE(e.document.textures.isEmpty(1));
        setTexturesChanged(e.document, false);
    });
    // What was chosen counts, also when nothing comes of it.
    begin(editor, IDM_TEXTURE_IMPORT);
    ASSERT_TRUE(editor.fillFileDialog(picture("12x8.bmp"), 1));
    EXPECT_TRUE(editor.press(editor.waitForAlert(), IDOK));
    editor.call([](Editor& e) {
        EXPECT_TRUE(areTexturesChanged(e.document));
        setTexturesChanged(e.document, false);
    });
}

TEST(Import, RefusesWhatBecomesNoTextureAndLeavesTheListAsItWas)
{
    const TemporaryFolder folder;
    const auto cut = [&](const std::string& name) {
        Bytes file = readFile(picture(name)).value_or(Bytes{});
        file.resize(file.size() * 3 / 4);
        EXPECT_EQ(writeFile(folder.file("cut " + name), file), Message::none);
        return folder.file("cut " + name);
    };
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
    AddedPlugIns added;
    added.add("Odd.dll", STRANGE_PLUG_IN);
    added.add("Zero.dll", strangerSaying("READ"));
    {
        const RunningEditor editor;
        std::filesystem::remove(plugInFolder() / "Zero.dll"); // the last asked, before it is used
        begin(editor, IDM_FILE_OPEN_PATH, picture("rgb.png.rgba"));
        editor.dismiss(missing, "stop");
        begin(editor, IDM_TEXTURE_IMPORT);
        EXPECT_TRUE(editor.fillFileDialog(odd("8,8,4,0"), 12));
        editor.dismiss(missing, "stop");
        editor.call([](Editor& e) { setTexturesChanged(e.document, false); });
    }
    const RunningEditor editor;
    std::vector<std::pair<std::string, const char*>> rows = {
        {picture("rgb.png.rgba"), format}, {folder.file("missing.bmp"), format},
        {folder.path().string(), format},  {cut("rle8.bmp"), open},
        {cut("bmp24.bmp"), open},          {cut("rgb.png"), open},
        {cut("rgb-rle.tga"), open},        {cut("rgb.jpg"), format},
        {cut("full.gif"), format},         {cut("lzw.tif"), format},
        {odd("8,8,7,0"), colours},         {odd("8,8,1,0"), colours},
        {odd("8,8,-16,0"), colours},       {odd("0,8,16,0"), wide},
        {odd("-8,8,16,0"), wide},          {odd("2147483640,8,16,0"), wide},
        {odd("8,0,16,0"), high},           {odd("8,-2147483648,16,0"), high},
        {odd("256,256,32,1"), open},
    };
    for (const char* kind : {".bmp", ".png", ".tga", ".jpg"})
        for (const auto& [size, text] :
             {std::pair{"12x8", narrow}, {"264x8", wide}, {"8x300", high}})
            rows.emplace_back(picture(std::string(size) + kind), text);
    for (const auto& [path, text] : rows) {
        SCOPED_TRACE(path);
        begin(editor, IDM_FILE_OPEN_PATH, path);
        editor.dismiss(text, "exclamation");
    }
    {
        const ScarceMemory scarce(256 * 256);
        begin(editor, IDM_FILE_OPEN_PATH, odd("256,256,32,0"));
        editor.dismiss(outOfMemory);
    }
    begin(editor, IDM_FILE_OPEN_PATH, odd("256,8,4,0"));
    EXPECT_TRUE(waitUntil([&] {
        return editor.ask([](Editor& e) { return areTexturesChanged(e.document); });
    })) << "what a stranger delivers is taken";
    editor.call([](Editor& e) {
        EXPECT_EQ(e.document.textures.usedCount(), 1u);
        EXPECT_EQ(e.document.textures.slot(0).width, 256);
        setTexturesChanged(e.document, false);
    });
}

/// A portable pixmap, as the template reads and writes it.
Bytes pixmap(int width, int height)
{
    std::string image = "P6 " + std::to_string(width) + " " + std::to_string(height) + " 255\n";
    for (int i = 0; i < width * height; ++i) image += {static_cast<char>(i * 8), '\x80', '\x10'};
    const auto bytes = std::as_bytes(std::span(image));
    return {bytes.begin(), bytes.end()};
}

TEST(Import, TheTemplateServesAsItIsBuilt)
{
    const TemporaryFolder folder;
    const std::string path = folder.file("picture.ppm");
    ASSERT_EQ(writeFile(path, pixmap(8, 2)), Message::none);
    AddedPlugIns added;
    added.add("Ppm.dll", PPM_PLUG_IN);
    const RunningEditor editor;
    editor.call([&](Editor& e) {
        const auto expectTexels = [&] {
            EXPECT_TRUE(importTexturePath(e, path) == CommandOutcome::done);
            for (int i = 0; const Rgb555 texel : texelsOf(e, 0))
                EXPECT_EQ(texel, opaqueBit | rgb555(i++, 16, 2));
        };
        expectTexels();
        const UniqueModule plugIn = loadModule(PPM_PLUG_IN);
        EXPECT_EQ(exportImage(plugIn, path, 8, 2, e.document.textures.pixels(0)), Message::none);
        expectTexels();
        setTexturesChanged(e.document, false);
    });
}

/// Windows has 1,088 thread-local indices for a process, and ends one that asks for more in vain.
TEST(Import, ManyImagesTakeNoMoreOfTheProcessThanOne)
{
    const RunningEditor editor;
    editor.call([](Editor& e) {
        const auto nextIndex = [&] {
            EXPECT_TRUE(importTexturePath(e, picture("rgb.tga")) == CommandOutcome::done);
            const DWORD index = TlsAlloc();
            TlsFree(index);
            return index;
        };
        const DWORD afterOne = nextIndex();
        EXPECT_EQ(nextIndex(), afterOne);
        setTexturesChanged(e.document, false);
    });
}

TEST(Import, AFileThatGrowsBetweenTwoCallsOverrunsNoBuffer)
{
    const TemporaryFolder folder;
    const std::string path = folder.file("picture");
    const auto read = [](const char* name) { return readFile(picture(name)).value_or(Bytes{}); };
    const struct {
        std::string library;
        Bytes small, large;
    } rows[] = {
        {PPM_PLUG_IN, pixmap(12, 8), pixmap(264, 8)},
        {(plugInFolder() / "Bmp.dll").string(), read("12x8.bmp"), read("264x8.bmp")},
        {(plugInFolder() / "Png.dll").string(), read("12x8.png"), read("264x8.png")},
        {(plugInFolder() / "Tga.dll").string(), read("12x8.tga"), read("264x8.tga")},
        {(plugInFolder() / "Jpeg.dll").string(), read("12x8.jpg"), read("264x8.jpg")},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.library);
        const UniqueModule module = loadModule(row.library);
        const auto check =
            exportOf<int(WINAPI*)(HMODULE, const char*)>(module, "scvCheckFileFormat");
        const auto size = exportOf<int(WINAPI*)(HMODULE, const char*, INT32*, INT32*)>(
            module, "scvGetFileImageSize");
        const auto bits =
            exportOf<int(WINAPI*)(HMODULE, const char*, void*)>(module, "scvGetFileImageBits");
        ASSERT_TRUE(check && size && bits);
        ASSERT_EQ(writeFile(path, row.small), Message::none);
        EXPECT_NE(check(module.get(), path.c_str()), 0);
        INT32 width = 0, height = 0;
        EXPECT_EQ(size(module.get(), path.c_str(), &width, &height), 0);
        EXPECT_EQ(width, 12);
        ASSERT_EQ(writeFile(path, row.large), Message::none);
        constexpr auto guard = std::byte{0xA5};
        Bytes buffer(264 * 8 * 4, guard);
        (void)bits(module.get(), path.c_str(), buffer.data());
        EXPECT_EQ(std::ranges::count(std::span(buffer).subspan(12 * 8 * 4), guard),
                  (264 - 12) * 8 * 4);
    }
}

/// Fills slots with 8 x 8 texels of their own.
void fillSlots(Editor& editor, std::uint32_t count)
{
    for (std::uint32_t slot = 0; slot < count; ++slot) {
        facetor::Texels pixels;
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
    added.add("Odd.dll", STRANGE_PLUG_IN);
    added.add("Odder.dll", strangerSaying("WRITE", "odd", "Odder", std::string(40, '8') + " 16"));
    added.add("Zero.dll", strangerSaying("WRITE"));
    const RunningEditor editor;
    std::filesystem::remove(plugInFolder() / "Zero.dll");
    enum Filter { bmp = 1, odd, odder, png, tga, gone };
    begin(editor, IDM_TEXTURE_EXPORT);
    editor.dismiss("Texture data is empty. Nothing to edit. ");

    const auto fieldsEnabled = [](const ShownAlert& dialog) {
        return IsWindowEnabled(GetDlgItem(dialog.window, IDC_EXPORT_FROM)) &&
               IsWindowEnabled(GetDlgItem(dialog.window, IDC_EXPORT_TO));
    };
    const auto openDialog = [&] {
        begin(editor, IDM_TEXTURE_EXPORT);
        return editor.waitForAlert();
    };
    const auto exportAs = [&](const std::string& path, int filter) {
        EXPECT_TRUE(editor.press(openDialog(), IDOK));
        EXPECT_TRUE(editor.fillFileDialog(path, filter));
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
        EXPECT_EQ(editor.refusalOf(first), text);
    }
    choose(first, IDC_EXPORT_EXTENT, "5", "7");
    EXPECT_TRUE(editor.press(first, IDOK));
    savePicture(editor.pictureOf(editor.waitForFileDialog()), "export-file");
    ASSERT_TRUE(editor.fillFileDialog(folder.file("pic.bmp"), bmp));
    EXPECT_TRUE(waitUntil([&] { return folder.entryCount() == 3; }));
    const auto exported = [&](const std::string& path, const ImageCodec& codec = bmpCodec) {
        const Bytes file = readFile(path).value_or(Bytes{});
        const auto info = codec.info(file);
        Texels texels(64);
        Bytes buffer(info ? imageBufferSize(8, 8, info->depth) : 0);
        if (info && codec.decode(file, buffer))
            convertImageBuffer(buffer, 8, info->depth, 0, texels);
        return texels;
    };
    editor.call([&](Editor& e) {
        EXPECT_EQ(exported(folder.file("pic05.bmp")), texelsOf(e, 5));
        EXPECT_EQ(exported(folder.file("pic07.bmp")), texelsOf(e, 7));
        for (const std::uint32_t slot : {5u, 6u}) e.document.textures.pixels(slot)[0] = 1;
    });
    const Bytes older(3, std::byte{'o'});
    ASSERT_EQ(writeFile(folder.file("half05.odd"), older), Message::none);
    exportAs(folder.file("half.odd"), odder);
    for (int i = 0; i < 2; ++i) // the two that the plug-in leaves half written
        editor.dismiss("Cannot create File.");
    const auto isNamedWithin = [](const std::string& path) {
        const Bytes contents = readFile(path).value_or(Bytes{});
        return std::ranges::equal(contents, std::as_bytes(std::span(path)));
    };
    EXPECT_TRUE(waitUntil([&] { return isNamedWithin(folder.file("half07.odd")); }));
    EXPECT_EQ(folder.entryCount(), 5u) << "of those that failed, only the one of before";
    EXPECT_EQ(readFile(folder.file("half05.odd")), older);
    std::filesystem::remove(folder.file("half05.odd"));
    editor.call([&](Editor& e) {
        fillSlots(e, 120);
        e.document.textures.current = 119;
    });

    const ShownAlert second = openDialog();
    EXPECT_EQ(IsDlgButtonChecked(second.window, IDC_EXPORT_EXTENT), unsigned{BST_CHECKED});
    EXPECT_EQ(GetDlgItemInt(second.window, IDC_EXPORT_TO, nullptr, FALSE), 7u);
    choose(second, IDC_EXPORT_CURRENT, "8", "9"); // which does not count
    EXPECT_TRUE(editor.press(second, IDOK));
    ASSERT_TRUE(editor.fillFileDialog(folder.file("pic"), bmp));
    EXPECT_TRUE(waitUntil([&] { return folder.entryCount() == 5; }));
    editor.call(
        [&](Editor& e) { EXPECT_EQ(exported(folder.file("pic119.bmp")), texelsOf(e, 119)); });

    std::filesystem::create_directory(folder.path() / "no119.png");
    const struct {
        const char* name;
        Filter filter;
        const char *text, *icon;
    } refused[] = {{"no.png", png, "Cannot create File.", "exclamation"},
                   {"no.odd", odd, "Sorry, this Color mode is not supported. ", "stop"},
                   {"no.odd", gone, missing, "stop"}};
    for (const auto& row : refused) {
        exportAs(folder.file(row.name), row.filter);
        editor.dismiss(row.text, row.icon);
    }
    EXPECT_EQ(folder.entryCount(), 6u);
    {
        editor.call([](Editor& e) { putNumbered(e.document.textures, 119, 256, 256); });
        EXPECT_TRUE(editor.press(openDialog(), IDOK));
        const ScarceMemory scarce(256 * 256);
        EXPECT_TRUE(editor.fillFileDialog(folder.file("no.bmp"), bmp));
        editor.dismiss(outOfMemory);
    }
    editor.call([](Editor& e) { fillSlots(e, 120); });

    // The test script has another program read these, and compares what it reads.
    const char* const asked = std::getenv("FACETOR_EXPORTS");
    const auto exports = std::filesystem::path(asked ? asked : folder.path()).make_preferred();
    const struct {
        Filter filter;
        const char* name;
        const ImageCodec& codec;
    } formats[] = {
        {bmp, "seen.bmp", bmpCodec}, {png, "seen.png", pngCodec}, {tga, "seen.tga", tgaCodec}};
    for (const auto& format : formats) {
        const std::string path = (exports / format.name).string();
        exportAs(path, format.filter);
        editor.call([&](Editor& e) {
            EXPECT_EQ(exported(exportPath(path, 119, 120), format.codec), texelsOf(e, 119));
        });
    }
    Bytes rgba;
    for (const Rgb555 texel : editor.ask([](Editor& e) { return texelsOf(e, 119); })) {
        for (const int component : {redOf(texel), greenOf(texel), blueOf(texel)})
            rgba.push_back(static_cast<std::byte>((component * 255 + 15) / 31));
        rgba.push_back(static_cast<std::byte>(texel & opaqueBit ? 255 : 0));
    }
    EXPECT_EQ(writeFile((exports / "seen.rgba").string(), rgba), Message::none);
}

TEST(Export, ManyTexturesTellHowFarTheyAreAndAreStoppedByEsc)
{
    const TemporaryFolder folder;
    const RunningEditor editor;
    constexpr std::uint32_t count = textureSlotCount;
    editor.call([](Editor& e) { fillSlots(e, count); });
    begin(editor, IDM_TEXTURE_EXPORT);
    EXPECT_TRUE(editor.press(editor.waitForAlert(), IDOK));
    ASSERT_TRUE(editor.fillFileDialog(folder.file("many.bmp"), 1));
    const std::string title = loadCatalogueText(editor.window(), Word::exporting);
    const auto progress = [&] { return FindWindowA("#32770", title.c_str()); };
    ASSERT_TRUE(waitUntil([&] { return progress() != nullptr; }));
    editor.send(WM_CLOSE); // answered at once, and not obeyed
    savePicture(editor.pictureOf(progress()), "progress");
    PostMessageA(progress(), WM_KEYDOWN, VK_ESCAPE, 0);
    EXPECT_TRUE(waitUntil([&] { return IsWindowEnabled(editor.window()); }));
    const std::size_t written = folder.entryCount();
    EXPECT_GT(written, 0u);
    EXPECT_LT(written, count);
    EXPECT_EQ(editor.ask([&](Editor&) { return folder.entryCount(); }), written);
}

} // namespace

} // namespace facetor
