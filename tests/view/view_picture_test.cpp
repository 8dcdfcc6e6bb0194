#include "view/view_picture.h"

#include <gtest/gtest.h>

namespace facetor {

TEST(ViewPicture, IsTheFrameAndItsBackgroundCanBeLeftOut)
{
    Model model;
    Engine engine;
    View view;
    ASSERT_EQ(createModelStore(model), Message::none);
    ASSERT_EQ(startEngine(engine), Message::none);
    startView(view, engine);
    fitModel(view, engine, model, {320, 200});
    model.attributes[0].flags |= meshMode; // every other pixel shows what lies behind
    view.backgroundColour = 0x1234;
    ViewPicture kept, cut;
    constexpr ClientSize client{320, 200};
    ASSERT_EQ(takePicture(kept, view, engine, model, client, nullptr, Background::kept),
              Message::none);
    ASSERT_EQ(takePicture(cut, view, engine, model, client, nullptr, Background::transparent),
              Message::none);
    EXPECT_TRUE(view.frameNeedsDrawing);
    paintFrame(view, engine, model, client);
    ASSERT_EQ(kept.texels.size(), 320u * 200);
    std::size_t transparent = 0;
    for (std::uint32_t i = 0; i < 320 * 200; ++i) {
        const Rgb555 shown = engine.surface.at(static_cast<std::int32_t>(i % 320),
                                               static_cast<std::int32_t>(i / 320));
        ASSERT_EQ(kept.texels[i], shown | opaqueBit) << i;
        ASSERT_EQ(cut.texels[i], shown == 0x1234 ? 0 : kept.texels[i]) << i;
        transparent += cut.texels[i] == 0;
    }
    EXPECT_GT(transparent, 40000u);
    EXPECT_LT(transparent, 60000u);
}

} // namespace facetor
