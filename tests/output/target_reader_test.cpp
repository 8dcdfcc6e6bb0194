#include "output/target_reader.h"

#include "model/model_file.h"
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

} // namespace
} // namespace facetor
