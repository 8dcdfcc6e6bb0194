#include "output/target_reader.h"

#include "model/model_file.h"
#include "output/received_image.h"
#include "output/target_image.h"
#include "texture/texture_file.h"

#include <gtest/gtest.h>

namespace facetor {
namespace {

TEST(TargetReader, AModelComesBackAsFarAsItsImageHoldsIt)
{
    for (const char* name : {"samples/ship", "samples/prop", "samples/max"}) {
        SCOPED_TRACE(name);
        Model model, again;
        Reason reason;
        ASSERT_EQ(createModelStore(model), Message::none);
        ASSERT_EQ(createModelStore(again), Message::none);
        ASSERT_EQ(readModelFile(model, name + std::string(".mx3")), Message::none);
        Mesh& last = model.meshes[model.objectCount - 1]; // with vertices that no address leads to
        model.totalPolygonCount -= std::exchange(last.polygonCount, 0u);
        const Bytes image = formatModelImage(model, 0.5f); // sixteenths stay exact
        ASSERT_EQ(readModelImage(again, image, reason), Message::none) << reason.text;
        EXPECT_TRUE(formatModelImage(again, 0.5f) == image);
        EXPECT_EQ(again.names[1], "Model01");
        EXPECT_EQ(again.vertices[7].x, model.vertices[7].x);
    }
}

TEST(TargetReader, ADamagedImageIsRefusedAndTheModelStays)
{
    Model model;
    TextureList list;
    Reason reason;
    ASSERT_EQ(createModelStore(model), Message::none);
    ASSERT_EQ(list.create(), Message::none);
    model.attributes[2].flags |= gouraudShading;
    model.attributes[3].flags = polygonFace | gouraudShading; // from a table
    const Bytes whole = formatModelImage(model, 1);
    for (std::size_t size = 0; size < whole.size(); ++size) {
        const Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
        EXPECT_EQ(readModelImage(model, cut, reason), Message::formatNotSupported) << size;
    }
    EXPECT_EQ(model.names[0], "Model00");
    for (std::size_t i = 0; i < whole.size(); ++i)
        for (const std::byte value : {std::byte{0}, std::byte{0x7F}, std::byte{0xFF}}) {
            Bytes changed = whole;
            changed[i] = value;
            (void)readModelImage(model, changed, reason); // most values are as good as any other
            ASSERT_TRUE(isSafeToDraw(model)) << i;
            (void)readTextureImage(list, changed, reason);
        }
    EXPECT_EQ(readTextureImage(list, whole, reason), Message::formatNotSupported);
    EXPECT_EQ(reason.text, "it holds no textures");
}

TEST(TargetReader, WhatAMonitorReceivesIsNamedOrRefusedWithTheReason)
{
    ReceivedScene scene;
    ASSERT_EQ(createReceivedScene(scene), Message::none);
    TextureList list;
    ASSERT_EQ(list.create(), Message::none);
    ASSERT_EQ(readTextureFile(list, "samples/ship.mxt"), Message::none);
    const Bytes model = formatModelImage(scene.model, 1), settings = formatSceneImage({});
    Bytes textures, strange(8), all = model, wrongSize = settings;
    ASSERT_EQ(formatTextureImage(textures, list), Message::none);
    all.insert(all.end(), textures.begin(), textures.end());
    wrongSize[4] = std::byte{8};
    wrongSize.erase(wrongSize.begin() + 8, wrongSize.begin() + 12);
    const struct {
        Bytes image;
        const char *contents, *reason;
    } cases[] = {
        {model, "model", ""},
        {textures, "textures", ""},
        {settings, "scene", ""},
        {all, "model, textures", ""},
        {{}, "", "it holds no block"},
        {{model.begin(), model.begin() + 20}, "", "block 1 is cut"},
        {strange, "", "nothing of the target lies at 0x00000000"},
        {wrongSize, "", "light direction: 8 bytes in place of 12"},
        {{model.begin(), model.begin() + 8 + 48}, "model", "it holds no model"},
    };
    for (const auto& c : cases) {
        const ReceivedImage received = receiveImage(scene, c.image);
        EXPECT_EQ(received.contents, c.contents);
        EXPECT_EQ(received.reason, c.reason);
    }
    EXPECT_EQ(scene.textures.usedCount(), list.usedCount());
}

} // namespace
} // namespace facetor
