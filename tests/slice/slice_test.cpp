#include "slice/slice.h"

#include "texture/numbered_texture.h"

#include <gtest/gtest.h>

namespace facetor {

namespace {

constexpr Rgb555 transparentColour = 1 + 20 * 4 + 14; // a texel of the picture

class Slice : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_EQ(list.create(), Message::none);
        putNumbered(list, 0, 20, 20, 1);
        settings.width = settings.height = 20;
    }

    /// The texels that a polygon with these corners gets, without opaque bits.
    std::vector<int> warped(const std::array<ScreenPoint, 4>& corner)
    {
        std::vector<Rgb555> texels(static_cast<std::size_t>(settings.width * settings.height),
                                   0xAAAA);
        warpSlice(texels, settings, {corner, 0x4321}, {list.slot(0), place}, transparentColour);
        std::vector<int> numbers;
        for (const Rgb555 texel : texels) numbers.push_back(texel & 0x7FFF);
        return numbers;
    }
    int at(const std::vector<int>& texels, int x, int y) const
    {
        return texels[static_cast<std::size_t>(y * settings.width + x)];
    }

    TextureList list;
    SliceSettings settings;
    InclusiveRectangle place{100, 50, 120, 70}; // a view pixel is a texel
};

TEST_F(Slice, APolygonOverThePictureGetsThePictureAsItsCornersLie)
{
    // Destination columns 0-18 lie under source columns 0-18; the last grid line is at 19 and 20.
    const auto plain = warped({{{100, 50}, {120, 50}, {120, 70}, {100, 70}}});
    const auto turned = warped({{{100, 70}, {100, 50}, {120, 50}, {120, 70}}});
    const auto half = warped({{{100, 50}, {110, 50}, {110, 70}, {100, 70}}});
    const auto part = warped({{{100, 50}, {115, 50}, {115, 70}, {100, 70}}}); // steps of 1.5
    for (int y = 0; y < 18; ++y)
        for (int x = 0; x < 18; ++x) {
            EXPECT_EQ(at(part, x / 2 * 2, y), 1 + 20 * y + x / 2 * 3 / 2) << x << ", " << y;
            EXPECT_EQ(at(plain, x, y), 1 + 20 * y + x) << x << ", " << y;
            EXPECT_EQ(at(half, x, y), 1 + 20 * y + x / 2) << x << ", " << y;
        }
    EXPECT_EQ(at(turned, 1, 16), 1 + 16 + 20 * 19) << "to the right in the picture, from below";
    EXPECT_EQ(at(turned, 16, 0), 1 + 20 * 4) << "corner 1 is at the top left of the picture";
}

TEST_F(Slice, BesideThePictureTheOffsetModeDecides)
{
    const std::array<ScreenPoint, 4> shifted{{{110, 40}, {130, 40}, {130, 60}, {110, 60}}};
    struct Case {
        SliceOffset offset;
        int above, right; ///< at (4, 4) and (14, 14)
    };
    for (const auto& [offset, above, right] :
         {Case{SliceOffset::transparent, 0, 0}, Case{SliceOffset::repeatEdge, 1 + 14, 1 + 80 + 19},
          Case{SliceOffset::wrapAround, 1 + 20 * 14 + 14, 1 + 20 * 4 + 4}}) {
        settings.offset = offset;
        settings.materialColour = false;
        auto texels = warped(shifted);
        EXPECT_EQ(at(texels, 4, 4), above);
        EXPECT_EQ(at(texels, 14, 14), right);
        EXPECT_EQ(at(texels, 4, 14), transparentColour);
        settings.materialColour = true;
        texels = warped(shifted);
        EXPECT_EQ(at(texels, 4, 4), above == 0 ? 0x4321 : above) << "the polygon's own colour";
        EXPECT_EQ(at(texels, 4, 14), 0x4321);
    }
    settings.materialColour = false;
    const auto farAway = warped({{{160, 50}, {180, 50}, {180, 70}, {160, 70}}});
    EXPECT_EQ(at(farAway, 4, 4), 0) << "it is wrapped around once";
}

TEST_F(Slice, TexturesOfEverySizeAreFilledAndNoPositionOverflows)
{
    constexpr std::int32_t far = 1 << 28;
    settings.offset = SliceOffset::repeatEdge;
    place = {0, 0, 1, 1};
    for (const auto& [width, height] : {std::pair{8, 1}, {8, 256}, {256, 3}, {256, 256}}) {
        settings.width = width;
        settings.height = height;
        for (const auto& corner :
             {std::array<ScreenPoint, 4>{{{0, 0}, {9, 0}, {9, 9}, {0, 9}}},
              std::array<ScreenPoint, 4>{{{5, 5}, {5, 5}, {5, 5}, {5, 5}}},
              std::array<ScreenPoint, 4>{{{-far, far}, {far, -far}, {-far, -far}, {far, far}}}}) {
            const auto texels = warped(corner);
            EXPECT_EQ(std::ranges::count(texels, 0x2AAA), 0) << width << " x " << height;
        }
    }
}

TEST_F(Slice, PickedPolygonsGetTheNewSlotsAndThoseBeyondTheListStayAsTheyAre)
{
    Model model;
    ASSERT_EQ(createModelStore(model), Message::none);
    MatrixStack stack;
    ASSERT_TRUE(initialiseStack(stack));
    translate(stack, 0, 0, 700);
    EngineSettings engine;
    engine.focalLength = 700 - 50; // the cube's front, at z 650, is shown in its own size
    for (const std::size_t i : {0u, 2u, 4u}) model.attributes[i].flags |= picked | flipVertical;
    place = {320 - 50, 240 - 50, 320 + 50, 240 + 50};
    settings.width = 40;
    struct Case {
        SliceAppendix appendix;
        std::uint32_t current, count, first;
    };
    for (const auto& [appendix, current, count, first] :
         {Case{SliceAppendix::next, 0, 3, 1}, Case{SliceAppendix::last, 0, 3, 4},
          Case{SliceAppendix::chosen, 0, 3, 9}, Case{SliceAppendix::next, 4094, 1, 4095},
          Case{SliceAppendix::next, 4095, 0, 4096}}) {
        SCOPED_TRACE(first);
        settings.appendix = appendix;
        settings.chosenSlot = 9;
        list.current = current;
        for (std::size_t i = 0; i < 6; ++i) model.attributes[i].texture = 7;
        ASSERT_EQ(sliceTextures(list, model, stack, engine, settings, place, transparentColour),
                  Message::none);
        std::uint32_t given = 0;
        for (const std::size_t i : {0u, 2u, 4u}) {
            const bool has = given < count;
            EXPECT_EQ(model.attributes[i].texture, has ? first + given : 7u);
            given += has;
            EXPECT_EQ(model.attributes[i].flags & (textureMap | flipVertical),
                      has || first > 4094 ? std::uint32_t{textureMap} : 0u);
            if (has) {
                EXPECT_EQ(list.slot(model.attributes[i].texture).width, 40);
            }
        }
        EXPECT_EQ(model.attributes[1].texture, 7);
    }
    EXPECT_EQ(stack.current().element[14], 700.0f);
    // The front, corners (-50, -50), (50, -50) and so on, covers the picture exactly.
    const TextureSlot& front = list.slot(1);
    for (int x = 0; x < 36; ++x) EXPECT_EQ(front.pixels[x] & 0x7FFF, 1 + x / 2) << x;
}

} // namespace

} // namespace facetor
