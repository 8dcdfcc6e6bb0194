#include "session/session_text.h"

#include "session/settings_text.h"

#include <gtest/gtest.h>

namespace facetor {

namespace {

TEST(SessionText, BringsBackEverythingAndPassesOverWhatIsWrong)
{
    SessionRecord session;
    session.modelFiles = {"C:\\my models\\a = b.mx3", "C:\\x\xE9.mx3"};
    session.textureFiles = {"/tmp/a list.mxt"};
    session.lastTextureList = "C:\\last one.mxt";
    session.hierarchyShown = session.texturesShown = true;
    session.keepsRecovery = session.watchesPictures = false;
    session.listWithModel = ListWithModel::ask;
    session.drawOrderShown = true;
    session.budget = {-20, 10, 280, 400};
    for (std::size_t i = 0; i < rememberedImports + 1; ++i) {
        const std::string path = "C:\\o,n e" + std::to_string(i) + ".obj";
        rememberSource(session.imports, path,
                       {0.5f, UpAxis::z, Triangles::keep, {64, 32, Dither::diffuse}});
        rememberFiles(session.imports, path, {path + ".mtl", path + " a.png"});
        rememberModel(session.imports, path + ".mx3", path);
    }
    const std::string text = formatSession(session);
    const SessionRecord read = parseSession("Strange = line\r\nKeepVersions = PERHAPS\r\nImported "
                                            "= 1,2,3,x\r\nDrawOrderPlace = 1,2,3\r\n" +
                                            text + "Imported = 0,0,0,64,64,0,zero.obj\r\nModel");
    EXPECT_EQ(formatSession(read), text);
    EXPECT_EQ(read.modelFiles, session.modelFiles);
    EXPECT_EQ(read.budget, session.budget);
    EXPECT_EQ(read.drawOrder, WindowRectangle{});
    EXPECT_TRUE(read.keepsVersions && !read.keepsRecovery && read.hierarchyShown);
    const std::string last = "C:\\o,n e32.obj";
    EXPECT_EQ(importedFrom(read.imports, last + ".mx3"), last);
    EXPECT_EQ(optionsOf(read.imports, last, {}), session.imports.sources.back().options);
    EXPECT_EQ(filesOf(read.imports, last), session.imports.sources.back().files);
    EXPECT_EQ(importedFrom(read.imports, "C:\\o,n e0.obj.mx3"), "") << "the oldest";
}

TEST(SessionText, PlacesAreCompletedWhereTheyAreTheSame)
{
    SettingsRecord settings;
    SessionRecord session;
    session.mainWindow = {-1200, 20, -400, 620};
    session.toolBox = {12000, 0, 12064, 200};
    const auto cut = [](const WindowRectangle& place) {
        SettingsRecord record;
        record.mainWindow = place;
        return parseSettings(formatSettings(record)).value_or(SettingsRecord{}).mainWindow;
    };
    settings.mainWindow = cut(session.mainWindow);
    settings.toolBox = {5, 6, 70, 200}; // moved by another program
    settings.hierarchy = {1, 2, 3, 4};
    ASSERT_NE(settings.mainWindow, session.mainWindow);
    completePlaces(settings, parseSession(formatSession(session)));
    EXPECT_EQ(settings.mainWindow, session.mainWindow);
    EXPECT_EQ(settings.toolBox.left, 5);
    EXPECT_EQ(settings.hierarchy.right, 3);
}

TEST(SessionText, TheSettingsSayWhichFilesAreRecent)
{
    const std::vector<std::string> whole{"C:\\my a.mx3", "C:\\my b.mx3", "C:\\plain.mx3",
                                         "C:\\" + std::string(300, 'x')};
    struct Case {
        std::vector<std::string> settings, expected;
    };
    const Case cases[] = {
        {{"C:\\my", "C:\\my", "C:\\plain.mx3"}, {whole[0], whole[1], whole[2]}},
        {{"C:\\other.mx3", "C:\\my"}, {"C:\\other.mx3", whole[0]}},
        {{whole[3].substr(0, 245)}, {whole[3]}}, // of a line of 255 with "Index:1 = "
        {{}, {}},
    };
    for (const Case& current : cases) {
        std::vector<std::string> files = current.settings;
        completePaths(files, whole);
        EXPECT_EQ(files, current.expected);
    }
}

} // namespace

} // namespace facetor
