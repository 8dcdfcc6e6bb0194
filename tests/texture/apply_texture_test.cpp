#include "texture/apply_texture.h"

#include <gtest/gtest.h>

namespace facetor {

namespace {

TEST(ApplyTexture, ReplacesFlipsAndTextureOfWhatIsPickedAndNothingElse)
{
    constexpr std::uint32_t kept = 0x0900FF74; // every flag that no case changes
    const struct {
        TextureApplication application;
        std::uint32_t flags, texture;
    } cases[] = {{{}, kept | picked | textureMap, 4095},
                 {{.flipVertical = true}, kept | picked | textureMap | flipVertical, 4095},
                 {{.after = PickedAfter::clear}, kept | textureMap, 4095},
                 {{.flipVertical = true, .flipsOnly = true}, kept | picked | flipVertical, 7}};
    Model model;
    ASSERT_EQ(createModelStore(model), Message::none);
    for (const auto& [application, flags, texture] : cases) {
        model.attributes[4] = {1, 2, 7, 3, kept | picked | flipHorizontal | textureMap, 4};
        model.attributes[3] = {1, 2, 7, 3, kept | flipHorizontal, 3};
        applyTextureToPicked(model, 4095, application);
        EXPECT_EQ(model.attributes[4].flags, flags);
        EXPECT_EQ(model.attributes[4].texture, texture);
        EXPECT_EQ(model.attributes[3].flags, kept | flipHorizontal);
        EXPECT_EQ(model.attributes[3].texture, 7);
    }
}

} // namespace

} // namespace facetor
