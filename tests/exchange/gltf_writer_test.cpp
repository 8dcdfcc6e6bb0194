#include "exchange/gltf_writer.h"

#include "exchange/gltf_reader.h"
#include "exchange/model_import.h"
#include "model/model_file.h"
#include "texture/texture_file.h"

#include <gtest/gtest.h>

#include <cstring>

namespace facetor {
namespace {

/// What comes of a glb, with limits that another program's models would not pass unchanged.
struct GlbImport {
    Model model;
    TextureList textures;
    ImportReport report;
    Reason reason;
    Message message;
    bool isOwn;

    explicit GlbImport(const Bytes& file)
    {
        Scene scene;
        EXPECT_EQ(createModelStore(model), Message::none);
        EXPECT_EQ(textures.create(), Message::none);
        message = readGltf(scene, file, nullptr, reason);
        isOwn = scene.own.has_value();
        const ImportOptions options{1, UpAxis::y, Triangles::keep, {8, 1, Dither::diffuse}};
        if (message == Message::none)
            message = buildModel(model, &textures, scene, options, report, reason);
        EXPECT_TRUE(isSafeToDraw(model));
    }
};

/// With the first place of a text in its bytes exchanged for another of the same length.
Bytes changed(Bytes file, std::string_view from, std::string_view to)
{
    std::string text(reinterpret_cast<const char*>(file.data()), file.size());
    std::memcpy(file.data() + text.find(from), to.data(), to.size());
    return file;
}

TEST(GltfWriter, TheModelAndTheListComeBackAsTheyWere)
{
    for (const char* name : {"samples/ship", "samples/prop", "samples/max"}) {
        SCOPED_TRACE(name);
        Model model;
        TextureList textures;
        Bytes file;
        ASSERT_EQ(createModelStore(model), Message::none);
        ASSERT_EQ(textures.create(), Message::none);
        ASSERT_EQ(readModelFile(model, name + std::string(".mx3")), Message::none);
        ASSERT_EQ(readTextureFile(textures, name + std::string(".mxt")), Message::none);
        model.objects[0].rotation = {16384, -1, 100000};
        ASSERT_EQ(writeGlb(file, model, &textures), Message::none);
        const GlbImport again(file);
        EXPECT_EQ(again.message, Message::none) << again.reason.text;
        EXPECT_TRUE(again.isOwn);
        EXPECT_EQ(again.model.objects[0].rotation, model.objects[0].rotation);
        EXPECT_EQ(writeModel(again.model), writeModel(model));
        EXPECT_EQ(writeTextures(again.textures), writeTextures(textures));
        EXPECT_EQ(again.report.polygons, model.totalPolygonCount);
    }
}

TEST(GltfWriter, AFileThatWasChangedIsAnotherProgramsOrRefused)
{
    Model cube;
    Bytes file;
    ASSERT_EQ(createModelStore(cube), Message::none);
    ASSERT_EQ(writeGlb(file, cube, nullptr), Message::none);
    const GlbImport moved(changed(file, "\"Model00\"", "\"Model11\""));
    EXPECT_FALSE(moved.isOwn);
    EXPECT_EQ(moved.report.triangles, 12u) << "the faces that everybody sees";
    EXPECT_EQ(moved.report.notes.size(), 1u);
    EXPECT_EQ(moved.model.names[0], "Model11");

    for (const auto& [from, to] : {std::pair("\"model\":", "\"m0del\":"),
                                   {"[[0,", "[[\"\","},
                                   {"[[0,0,0]]", "[[0,0]]  "},
                                   {"\"rotations\"", "\"rotation \""}}) {
        const GlbImport damaged(
            changed(file, from, std::string_view(to).substr(0, std::strlen(from))));
        EXPECT_EQ(damaged.message, Message::formatNotSupported) << to;
        EXPECT_FALSE(damaged.reason.text.empty());
    }
    for (std::size_t size = 0; size < file.size(); size += 7)
        EXPECT_NE(GlbImport(Bytes(file.begin(), file.begin() + static_cast<std::ptrdiff_t>(size)))
                      .message,
                  Message::none);
    cube.objectCount = cube.totalVertexCount = cube.totalPolygonCount = 0;
    ASSERT_EQ(writeGlb(file, cube, nullptr), Message::none);
    EXPECT_EQ(GlbImport(file).message, Message::none) << "a file of its own needs no face";
}

} // namespace
} // namespace facetor
