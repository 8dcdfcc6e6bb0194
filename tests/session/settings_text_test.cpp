#include "session/settings_text.h"

#include "base/file.h"
#include "session/file_names.h"
#include "session/recent_files.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace facetor {

namespace {

SettingsRecord example()
{
    SettingsRecord settings;
    settings.mainWindow = {-8, 20, 1024, 768};
    settings.toolBox = {64, 64, 132, 178};
    settings.hierarchy = {1, 2, 3, 4};
    settings.attributes = {9999, -999, 0, 7};
    settings.textures = {10, 20, 30, 40};
    settings.background = static_cast<Rgb555>(0x8000 | rgb555(0, 0, 16));
    settings.pickedPolygon = static_cast<Rgb555>(0x8000 | rgb555(31, 1, 0));
    settings.transparent = 0x8000;
    settings.dragMethod = 2;
    settings.modelFiles = {"C:\\a.mx3", "C:\\b.mx3"};
    settings.textureFiles = {"Z:\\t.mxt"};
    return settings;
}

constexpr const char* exampleText = "[MAIN]\r\n"
                                    "MainRect =   -8,  20,1024, 768\r\n"
                                    "ToolRect =   64,  64, 132, 178\r\n"
                                    "HierRect =    1,   2,   3,   4\r\n"
                                    "AttrRect = 9999,-999,   0,   7\r\n"
                                    "TextRect =   10,  20,  30,  40\r\n"
                                    "MainZoom = FALSE\r\n"
                                    "\r\n"
                                    "[COLOR]\r\n"
                                    "BackGround\t=  0, 0,16\r\n"
                                    "PickedPolygon\t= 31, 1, 0\r\n"
                                    "Transparent\t=  0, 0, 0\r\n"
                                    "\r\n"
                                    "[DRAG]\r\n"
                                    "Method = byFULL\r\n"
                                    "\r\n"
                                    "[MX3FILES]\r\n"
                                    "Files =  2\r\n"
                                    "Index:1 = C:\\a.mx3\r\n"
                                    "Index:2 = C:\\b.mx3\r\n"
                                    "\r\n"
                                    "[MXTFILES]\r\n"
                                    "Files =  1\r\n"
                                    "Index:1 = Z:\\t.mxt\r\n"
                                    "\r\n";

std::string replaced(std::string_view from, std::string_view to)
{
    std::string text = exampleText;
    const std::size_t at = text.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    return text.replace(at, from.size(), to);
}

} // namespace

TEST(Settings, AreWrittenInTheirExactFormAndReadBack)
{
    EXPECT_EQ(formatSettings(example()), exampleText);
    EXPECT_EQ(parseSettings(exampleText), example());
    SettingsRecord none;
    none.background = none.pickedPolygon = none.transparent = 0x8000; // the reader sets bit 15
    EXPECT_EQ(parseSettings(formatSettings(none)), none);
}

TEST(Settings, AreReadAllOrNotAtAll)
{
    struct Case {
        const char* reason;
        std::string text;
        bool read;
    };
    const std::string text = exampleText;
    const std::size_t colour = text.find("[COLOR]");
    const Case cases[] = {
        {"sections in another order", text.substr(colour) + text.substr(0, colour), true},
        {"lines between sections", "hello\r\n" + text, true},
        {"a comment inside a section", replaced("[MAIN]\r\n", "[MAIN]\r\n; windows\r\n"), false},
        {"a key in another case", replaced("ToolRect", "toolrect"), false},
        {"a header with a blank", replaced("[DRAG]", "[DRAG] "), false},
        {"line feeds alone", replaced("[COLOR]\r\n", "[COLOR]\n"), false},
        {"keys in another order", replaced("HierRect", "TextRect"), false},
        {"no value", replaced("MainZoom = FALSE", "MainZoom FALSE"), false},
        {"a section missing", text.substr(0, text.find("[MXTFILES]")), false},
        {"fewer files than announced", replaced("Files =  1", "Files =  3"), false},
        {"an unknown drag method", replaced("byFULL", "byHAND"), true},
        {"a path beyond the longest line", replaced("C:\\a.mx3", std::string(300, 'x')), true},
        {"an empty file", "", false},
        {"no text at all", std::string(5000, '\xFF'), false},
        {"zeros", std::string(300, '\0'), false},
    };
    for (const Case& c : cases) EXPECT_EQ(parseSettings(c.text).has_value(), c.read) << c.reason;
    for (std::size_t size = 0; size < text.size(); ++size)
        (void)parseSettings(std::string(text, 0, size)); // every cut file is survived
}

TEST(Settings, KeepTheLimitsOfTheirFormat)
{
    // Four characters a number: what follows a longer one is lost.
    auto settings = parseSettings(replaced("  -8,  20,1024, 768", "-1200,  20,1024, 768"));
    ASSERT_TRUE(settings);
    EXPECT_EQ(settings->mainWindow, (WindowRectangle{-120, 0, 0, 0}));
    // A path ends at its first blank.
    settings = parseSettings(replaced("C:\\a.mx3", "C:\\My Models\\a.mx3"));
    ASSERT_TRUE(settings);
    EXPECT_EQ(settings->modelFiles[0], "C:\\My");
    // Colours are taken modulo 32.
    settings = parseSettings(replaced("31, 1, 0", "33,-1,99"));
    ASSERT_TRUE(settings);
    EXPECT_EQ(settings->pickedPolygon, 0x8000 | rgb555(1, 31, 3));
    // More files than the list holds are read and dropped.
    settings =
        parseSettings(replaced("Files =  1\r\n", "Files =  6\r\nIndex:1 = a\r\nIndex:1 = b\r\n"
                                                 "Index:1 = c\r\n=d\r\nIndex:1 = e\r\n"));
    ASSERT_TRUE(settings);
    EXPECT_EQ(settings->textureFiles, (std::vector<std::string>{"a", "b", "c", "d"}));
}

TEST(Settings, OfImportsAreThereOnceTheyDifferAndHaveToBeWholeThen)
{
    SettingsRecord settings = example();
    settings.import = {0.01f, UpAxis::z, Triangles::keep, {128, 100, Dither::diffuse}};
    const std::string section = "[IMPORT]\r\nScale = 0.01\r\nUp = Z\r\nTriangles = KEEP\r\n"
                                "Texture = 128,100\r\nDither = DIFFUSE\r\n\r\n";
    EXPECT_EQ(formatSettings(settings), exampleText + section);
    EXPECT_EQ(parseSettings(section + exampleText), settings);
    for (const auto& [from, to] : {std::pair{"0.01", "nan"},
                                   {"0.01", "-1"},
                                   {"= Z", "= X"},
                                   {"128,", "12,"},
                                   {"DIFFUSE", "DIFF"},
                                   {"Triangles", "Quads"}}) {
        std::string broken = section;
        broken.replace(broken.find(from), std::string(from).size(), to);
        EXPECT_EQ(parseSettings(exampleText + broken), example()) << to;
    }
}

TEST(RecentFiles, TheNewestComesFirstAndAKnownOneKeepsItsPlace)
{
    RecentFiles files;
    for (const char* path : {"a", "b", "c", "B", "d"}) addRecentFile(files, path);
    EXPECT_EQ(files, (RecentFiles{"d", "c", "b", "a"}));
    addRecentFile(files, "e");
    EXPECT_EQ(files, (RecentFiles{"e", "d", "c", "b"}));
    EXPECT_EQ(recentFileItem(2, "C:\\My Models\\a&b.mx3"), "&2 C:\\My Models\\a&b.mx3");
}

} // namespace facetor
