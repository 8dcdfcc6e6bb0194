#include "texture/apply_texture.h"

#include <gtest/gtest.h>

namespace facetor {

namespace {

TEST(ApplyTexture, ReplacesFlipsAndTextureOfWhatIsPickedAndNothingElse)
{
    constexpr std::uint32_t others = 0x0900FF74; // every flag but the picked one
    constexpr std::uint32_t before = others | picked | flipHorizontal | textureMap;
    struct Case {
        TextureApplication application;
        std::uint32_t flags;
        std::uint16_t texture;
    };
    const Case cases[] = {
        {{}, others | picked | textureMap, 4095},
        {{.flipHorizontal = true}, others | picked | textureMap | flipHorizontal, 4095},
        {{.flipVertical = true}, others | picked | textureMap | flipVertical, 4095},
        {{.after = PickedAfter::clear}, others | textureMap, 4095},
        {{.flipVertical = true, .flipsOnly = true}, others | picked | flipVertical, 7},
        {{.flipsOnly = true, .after = PickedAfter::clear}, others, 7},
    };
    Model model;
    ASSERT_EQ(createModelStore(model), Message::none);
    for (const Case& current : cases) {
        for (std::uint32_t i = 0; i < 6; ++i)
            model.attributes[i] = {1, 2, 7, 3, i == 4 ? before : before & ~std::uint32_t{picked},
                                   i};
        applyTextureToPicked(model, 4095, current.application);
        EXPECT_EQ(model.attributes[4].flags, current.flags);
        EXPECT_EQ(model.attributes[4].texture, current.texture);
        EXPECT_EQ(model.attributes[3].flags, before & ~std::uint32_t{picked});
        EXPECT_EQ(model.attributes[3].texture, 7);
    }
}

} // namespace

} // namespace facetor
