#include "samples.h"

#include "base/file.h"
#include "model/model_file.h"
#include "texture/texture_file.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

namespace facetor {
namespace {

class Samples : public testing::TestWithParam<samples::Sample> {
protected:
    void SetUp() override
    {
        ASSERT_EQ(createModelStore(model), Message::none);
        ASSERT_EQ(textures.create(), Message::none);
        ASSERT_EQ(GetParam().make(model, textures), Message::none);
    }

    Model model;
    TextureList textures;
};

TEST_P(Samples, AreTheFilesInTheSamplesFolderByteForByte)
{
    // After a change to the generator: facetor-samples samples
    const std::string path = "samples/" + GetParam().name;
    const auto modelFile = readFile(path + ".mx3"), textureFile = readFile(path + ".mxt");
    ASSERT_TRUE(modelFile && textureFile);
    EXPECT_TRUE(*modelFile == writeModel(model));
    EXPECT_TRUE(*textureFile == writeTextures(textures));
}

INSTANTIATE_TEST_SUITE_P(All, Samples, testing::ValuesIn(samples::allSamples),
                         [](const auto& sample) { return sample.param.name; });

TEST(SampleLighthouse, IsTheFilesInTheSamplesFolderByteForByte)
{
    for (const ExportedFile& file : samples::makeLighthouse())
        EXPECT_TRUE(readFile("samples/" + file.name) == file.bytes) << file.name;
}

TEST(SampleMax, FillsEveryPoolToTheLastElement)
{
    Model model;
    TextureList textures;
    ASSERT_EQ(createModelStore(model), Message::none);
    ASSERT_EQ(textures.create(), Message::none);
    ASSERT_EQ(samples::makeMax(model, textures), Message::none);
    EXPECT_EQ(model.objectCount, objectCapacity);
    EXPECT_EQ(model.totalVertexCount, vertexCapacity);
    EXPECT_EQ(model.totalPolygonCount, polygonCapacity);
}

} // namespace
} // namespace facetor
