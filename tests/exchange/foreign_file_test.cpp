#include "exchange/foreign_file.h"

#include "base/file.h"
#include "base/temporary_folder.h"
#include "exchange/export_files.h"
#include "session/import_memory.h"
#include "session/import_text.h"
#include "texture/numbered_texture.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace facetor {
namespace {

TEST(ForeignFile, IsReadWithWhatLiesBelowItAndCanBeStopped)
{
    const TemporaryFolder folder;
    ASSERT_EQ(writeFile(folder.file("a.b.obj"),
                        std::as_bytes(std::span("mtllib ../x.mtl\nv 0 0 0\nv 1 0 0\nv 0 1 0\n"
                                                "f 1 2 3\nl 1 2"))),
              Message::none);
    ImportedModel imported;
    Reason reason;
    EXPECT_EQ(importModelFile(imported, folder.file("a.b.obj"), {}, {}, reason), Message::none);
    EXPECT_EQ(imported.model.names[0], "a.b");
    const TextOf english = [](Word word) { return std::string(catalogueText(word)); };
    EXPECT_EQ(importStatus(imported.report, english),
              "1 polygons, 0 textures. Notes: 1, see File > Import Report");
    EXPECT_NE(
        importReportText(imported.report, "C:\\a.b.obj", english)
            .find("\r\nline 1: material file \"../x.mtl\": not beside or below the model\r\n"),
        std::string::npos);
    EXPECT_EQ(importModelFile(
                  imported, folder.file("a.b.obj"), {}, [](double) { return false; }, reason),
              Message::formatNotSupported);
    EXPECT_EQ(reason.text, "it was stopped");
    EXPECT_EQ(importModelFile(imported, folder.file("gone.glb"), {}, {}, reason),
              Message::cannotOpenFile);
}

/// An import onto a model, both the start-up cube, with empty texture lists.
struct ImportOnto : testing::Test {
    ImportedModel imported;
    Model result, old;
    TextureList textures;
    Reason reason;

    ImportOnto()
    {
        for (Model* model : {&imported.model, &result, &old})
            EXPECT_EQ(createModelStore(*model), Message::none);
        for (TextureList* list : {&textures, &imported.textures})
            EXPECT_EQ(list->create(), Message::none);
    }
};

TEST_F(ImportOnto, NotesAreOfItsNewPolygons)
{
    old.meshes[0].polygonCount = 5; // of six
    const std::vector<std::uint32_t> kept{0, 1}, some{1, 5};
    imported.report.notes = {{0, "2 polygons a", kept}, {0, "2 polygons b", some}, {0, "c"}};
    ASSERT_EQ(importOnto(result, textures, old, imported, reason), Message::none);
    ASSERT_EQ(imported.report.notes.size(), 2u);
    EXPECT_EQ(imported.report.notes[0].text, "1 polygons b");
}

TEST_F(ImportOnto, APictureThatWasPaintedAnewIsSeenWhereNobodyHasChangedItsTexture)
{
    putNumbered(textures, 5, 8, 8);
    putNumbered(textures, 6, 8, 8, 1);
    ImportedSlots slots = importedSlots(textures);
    textures.pixels(6)[0] ^= 1; // by the user
    for (const int texture : {0, 1, 2})
        putNumbered(imported.textures, static_cast<std::uint32_t>(texture), 16, 8, texture);
    constexpr std::uint16_t before[] = {5, 5, 5, 6}, now[] = {0, 0, 2, 1}, after[] = {5, 5, 7, 6};
    for (std::uint32_t p = 0; p < 4; ++p)
        for (auto [model, texture] :
             {std::pair{&old, before[p]}, std::pair{&imported.model, now[p]}}) {
            model->attributes[p].flags |= textureMap;
            model->attributes[p].texture = texture;
        }
    ASSERT_EQ(importOnto(result, textures, old, imported, reason, &slots), Message::none);
    for (std::uint32_t p = 0; p < 4; ++p) EXPECT_EQ(result.attributes[p].texture, after[p]) << p;
    EXPECT_TRUE(sameTexture(textures.slot(5), imported.textures.slot(0)));
    EXPECT_TRUE(sameTexture(textures.slot(7), imported.textures.slot(2)));
    EXPECT_EQ(textures.slot(6).width, 8);
    EXPECT_EQ(slots.at(5), contentOf(textures.slot(5))) << "which is known from then on";
}

TEST(ImportText, WhatReadersSayIsKnownToTheCatalogueByItsForm)
{
    const TextOf marked = [](Word word) { return '<' + std::string(catalogueText(word)) + '>'; };
    for (const auto& [english, expected] :
         {std::pair{"line 7: material file \"a: b\": missing",
                    "<line 7: <material file \"a: b\": <missing>>>"},
          {"line 2: \"1e\" is no finite number", "<line 2: <\"1e\" is no finite number>>"},
          {"5000 faces; at most 4096 polygons fit", "<5000 faces; at most 4096 polygons fit>"},
          {"200 objects where 128 fit, 5000 polygons where 4096 fit",
           "<200 objects where 128 fit>, <5000 polygons where 4096 fit>"},
          {"5000 textures where 4096 fit", "<5000 textures where 4096 fit>"},
          {"picture \"image 0\": it has no data", "<picture \"image 0\": <it has no data>>"},
          {"buffer 0: missing", "<buffer 0: <missing>>"},
          {"what nobody says", "what nobody says"},
          {"", ""}})
        EXPECT_EQ(importNoteText(english, marked), expected);
    const TemporaryFolder folder;
    for (const char* text : {"v 0 0 0", "v 0 nan 0", "v 0 0", "v 0 0 1e99", "f 1 2 3", "f x",
                             "v 0 0 0\nf 1.5 1 1", "v 0 0 0\nf 1 1 1"}) {
        ASSERT_EQ(writeFile(folder.file("a.obj"), std::as_bytes(std::span(std::string_view(text)))),
                  Message::none);
        ImportedModel imported;
        Reason reason;
        EXPECT_NE(importModelFile(imported, folder.file("a.obj"), {}, {}, reason), Message::none);
        EXPECT_NE(importNoteText(reason.text, marked), reason.text) << text;
    }
}

TEST(ExportFiles, AreAllThereOrNone)
{
    const TemporaryFolder folder;
    const std::string below = folder.file("");
    const std::vector<ExportedFile> files{
        {"a.obj", Bytes(3)}, {"a.mtl", Bytes(4)}, {"a.textures/0000.png", Bytes(5)}};
    std::filesystem::create_directory(folder.path() / "a.mtl"); // where a file is to stand
    Reason reason;
    EXPECT_EQ(writeExport(below, files, reason), Message::cannotCreateFile);
    EXPECT_TRUE(reason.text.starts_with("a.mtl: ")) << reason.text;
    EXPECT_FALSE(std::filesystem::exists(folder.path() / "a.obj"));
    EXPECT_FALSE(std::filesystem::exists(folder.path() / "a.textures"));
    std::filesystem::remove(folder.path() / "a.mtl");
    EXPECT_TRUE(standingFiles(below, files).empty());
    EXPECT_EQ(writeExport(below, files, reason), Message::none);
    EXPECT_EQ(standingFiles(below, files),
              (std::vector<std::string>{"a.mtl", "a.textures/0000.png"}));
}

TEST(ImportMemory, KnowsWhatASavedModelCameFromAndHow)
{
    ImportMemory memory;
    rememberSource(memory, "C:\\a.obj", {2, UpAxis::z, Triangles::keep, {}});
    EXPECT_EQ(optionsOf(memory, "c:\\A.OBJ", {}).scale, 2);
    EXPECT_EQ(optionsOf(memory, "b.obj", {3, UpAxis::y, Triangles::rejoin, {}}).scale, 3);
    rememberModel(memory, "a.mx3", "C:\\a.obj");
    rememberModel(memory, "b.mx3", "");
    EXPECT_EQ(importedFrom(memory, "A.mx3") + importedFrom(memory, "b.mx3"), "C:\\a.obj");
    rememberModel(memory, "a.mx3", ""); // another model took its place
    EXPECT_EQ(importedFrom(memory, "a.mx3"), "");
}

} // namespace
} // namespace facetor
