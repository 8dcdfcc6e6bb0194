#include "exchange/obj_writer.h"

#include "exchange/keep_attributes.h"
#include "exchange/model_import.h"
#include "exchange/obj_reader.h"
#include "model/model_file.h"
#include "texture/texture_file.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace facetor {
namespace {

TEST(ObjWriter, WhatItWritesComesInAgain)
{
    Model ship, imported, kept;
    TextureList textures, cuts;
    for (Model* model : {&ship, &imported, &kept})
        ASSERT_EQ(createModelStore(*model), Message::none);
    for (TextureList* list : {&textures, &cuts}) ASSERT_EQ(list->create(), Message::none);
    ASSERT_EQ(readModelFile(ship, "samples/ship.mx3"), Message::none);
    ASSERT_EQ(readTextureFile(textures, "samples/ship.mxt"), Message::none);
    std::vector<ExportedFile> files;
    ASSERT_EQ(writeObj(files, ship, &textures, "a b"), Message::none);

    const AssetReader assets = [&](const std::string& name, std::string&) {
        const auto file = std::find_if(files.begin(), files.end(),
                                       [&](const ExportedFile& f) { return f.name == name; });
        return file == files.end() ? std::nullopt : std::optional<Bytes>(file->bytes);
    };
    const std::string_view text(reinterpret_cast<const char*>(files[0].bytes.data()),
                                files[0].bytes.size());
    Scene scene;
    Reason reason;
    ImportReport report;
    const ImportOptions options{1, UpAxis::y, Triangles::keep, {256, 256, Dither::diffuse}};
    ASSERT_EQ(readObj(scene, text, "x", assets, reason), Message::none) << reason.text;
    ASSERT_EQ(buildModel(imported, &cuts, scene, options, report, reason), Message::none);
    EXPECT_TRUE(scene.notes.empty());
    ASSERT_EQ(imported.totalPolygonCount, ship.totalPolygonCount);
    for (std::uint32_t p = 0; p < ship.totalPolygonCount; ++p) {
        const PolygonAttribute &was = ship.attributes[p], &is = imported.attributes[p];
        if ((was.flags & textureMap) == 0) {
            EXPECT_EQ(is.color & 0x7FFF, was.color & 0x7FFF);
        }
        EXPECT_EQ(is.flags & textureMap, was.flags & textureMap);
    }
    // Quads show whole pictures, which are the same to the last texel but for what is unseen.
    for (std::uint32_t slot = 0; slot < cuts.usedCount(); ++slot)
        EXPECT_TRUE(std::any_of(
            textures.slots().begin(), textures.slots().end(),
            [&](const TextureSlot& other) {
                const TextureSlot& cut = cuts.slot(slot);
                return cut.width == other.width && cut.height == other.height &&
                       std::equal(other.pixels, other.pixels + cut.width * cut.height, cut.pixels,
                                  [](Rgb555 a, Rgb555 b) {
                                      return (a & opaqueBit) == 0 ? (b & opaqueBit) == 0 : a == b;
                                  });
            }))
            << slot;
    KeptPolygons polygons;
    ASSERT_EQ(keepAttributes(kept, ship, imported, polygons, reason), Message::none);
    EXPECT_EQ(polygons.kept, ship.totalPolygonCount);
    for (std::uint32_t p = 0; p < ship.totalPolygonCount; ++p)
        EXPECT_EQ(kept.attributes[p].flags, ship.attributes[p].flags) << p;
}

} // namespace
} // namespace facetor
