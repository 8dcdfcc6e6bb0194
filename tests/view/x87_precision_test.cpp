// The editor sets the x87 to single precision when it starts. Nothing that the core computes or
// spells may depend on it: what the editor saves and shows is what every other build gives.
#include "base/text.h"
#include "model/model_file.h"
#include "view/view.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#if defined(__i386__) || defined(__x86_64__)

namespace facetor {

namespace {

constexpr std::uint16_t precisionMask = 0x0300; // of the x87's control word; 0 means single

std::uint16_t controlWord()
{
    std::uint16_t word = 0;
    asm volatile("fnstcw %0" : "=m"(word));
    return word;
}

/// Sets the x87 to single precision until the end of the scope.
class SinglePrecision {
public:
    SinglePrecision() : before_(controlWord())
    {
        load(static_cast<std::uint16_t>(before_ & ~precisionMask));
    }
    ~SinglePrecision() { load(before_); }
    SinglePrecision(const SinglePrecision&) = delete;
    SinglePrecision& operator=(const SinglePrecision&) = delete;

private:
    static void load(std::uint16_t word) { asm volatile("fldcw %0" : : "m"(word)); }

    std::uint16_t before_;
};

std::vector<std::string> spelledNumbers()
{
    std::vector<std::string> texts;
    float value = 1.17549435e-38f;
    for (int i = 0; i < 2000 && value < 3e38f; ++i, value *= 1.0933f) {
        texts.push_back(formatShortest(value));
        texts.push_back(formatShortest(-value));
    }
    return texts;
}

struct Products {
    Bytes file;
    std::vector<Rgb555> pixels;
};

/// A model with angles that have no exact degrees, as a file, read back, turned and drawn.
Products drawAndSave()
{
    Products products;
    auto model = std::make_unique<Model>();
    EXPECT_EQ(createModelStore(*model), Message::none);
    model->objects[0].rotation = {1234, -20011, 31007};
    model->objects[0].scaling = {1.1f, 0.3f, 0.7f};
    products.file = writeModel(*model);
    EXPECT_EQ(readModel(*model, products.file), Message::none);
    const auto engine = std::make_unique<Engine>();
    EXPECT_EQ(startEngine(*engine), Message::none);
    View view;
    startView(view, *engine);
    constexpr ClientSize client{640, 480};
    fitModel(view, *engine, *model, client);
    applyFixedView(view, *engine, FixedView::left);
    EXPECT_TRUE(paintFrame(view, *engine, *model, client));
    const FrameSurface& surface = engine->surface;
    products.pixels.assign(surface.pixels(), surface.pixels() + surface.pixelCount());
    return products;
}

TEST(X87Precision, ChangesNoSpelledNumber)
{
    const std::vector<std::string> expected = spelledNumbers();
    ASSERT_GT(expected.size(), 1000u);
    const SinglePrecision single;
    ASSERT_EQ(controlWord() & precisionMask, 0);
    EXPECT_EQ(spelledNumbers(), expected);
}

TEST(X87Precision, ChangesNoSavedByteAndNoPixel)
{
    const Products expected = drawAndSave();
    ASSERT_NE(*std::ranges::max_element(expected.pixels),
              *std::ranges::min_element(expected.pixels))
        << "the model must be in the picture";
    const SinglePrecision single;
    const Products products = drawAndSave();
    EXPECT_EQ(products.file, expected.file);
    EXPECT_EQ(products.pixels, expected.pixels);
}

} // namespace

} // namespace facetor

#endif
