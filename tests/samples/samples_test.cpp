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

TEST_P(Samples, AreReadWithoutComplaintAndHaveNormalsEverywhere)
{
    std::string reason;
    Model other;
    ASSERT_EQ(createModelStore(other), Message::none);
    EXPECT_EQ(readModel(other, writeModel(model), &reason), Message::none) << reason;
    EXPECT_TRUE(isSafeToDraw(other));
    for (std::uint32_t i = 0; i < other.totalPolygonCount; ++i)
        ASSERT_TRUE(isFinite(other.polygons[i].normal)) << "polygon " << i;
    for (std::uint32_t i = 0; i < other.totalVertexCount; ++i)
        ASSERT_TRUE(isFinite(other.vertexNormals[i])) << "vertex " << i;
}

TEST_P(Samples, HaveSoundAttributesAndNamesThatSuitCSource)
{
    for (std::uint32_t i = 0; i < model.totalPolygonCount; ++i) {
        SCOPED_TRACE(i);
        const PolygonAttribute& attribute = model.attributes[i];
        const auto set = [&attribute](std::uint32_t flag) { return (attribute.flags & flag) != 0; };
        EXPECT_EQ(set(textureMap) + set(polygonFace) + set(polyLine), 1);
        EXPECT_LE(set(shadowMode) + set(halfMode) + set(translucentMode), 1);
        EXPECT_FALSE(set(picked));
        EXPECT_TRUE(!set(textureMap) || !textures.isEmpty(attribute.texture));
    }
    std::set<std::string> names;
    for (std::uint32_t i = 0; i < model.objectCount; ++i) {
        EXPECT_GT(model.meshes[i].polygonCount, 0u)
            << "C knows no empty tables: " << model.names[i];
        EXPECT_TRUE(names.insert(model.names[i]).second) << model.names[i] << " twice";
        EXPECT_TRUE(std::all_of(model.names[i].begin(), model.names[i].end(), [](char c) {
            return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9');
        })) << model.names[i];
    }
    for (const TextureSlot& slot : textures.slots()) EXPECT_EQ(slot.width % 8, 0);
}

INSTANTIATE_TEST_SUITE_P(All, Samples, testing::ValuesIn(samples::allSamples),
                         [](const auto& sample) { return sample.param.name; });

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

TEST(SampleShip, ShowsEveryWayOfDrawingAPolygon)
{
    Model model;
    TextureList textures;
    ASSERT_EQ(createModelStore(model), Message::none);
    ASSERT_EQ(textures.create(), Message::none);
    ASSERT_EQ(samples::makeShip(model, textures), Message::none);
    std::uint32_t flags = 0, deepest = 0;
    std::set<int> sorts, planes;
    bool lightGouraud = false, tableGouraud = false;
    for (std::uint32_t i = 0; i < model.totalPolygonCount; ++i) {
        const PolygonAttribute& attribute = model.attributes[i];
        flags |= attribute.flags;
        sorts.insert(attribute.sort);
        planes.insert(attribute.plane);
        lightGouraud |= isLightGouraud(attribute);
        tableGouraud |= isTableGouraud(attribute);
    }
    for (std::uint32_t i = 0; i < model.objectCount; ++i)
        deepest = std::max(deepest, model.objects[i].depth);
    EXPECT_EQ(flags, textureMap | polygonFace | polyLine | meshMode | shadowMode | halfMode |
                         translucentMode | gouraudShading | useLight | nearClip | flipHorizontal |
                         flipVertical);
    EXPECT_EQ(sorts, (std::set<int>{sortCentre, sortNearest, sortFarthest}));
    EXPECT_EQ(planes, (std::set<int>{0, 1}));
    EXPECT_TRUE(lightGouraud && tableGouraud);
    EXPECT_GE(deepest, 2u);
}

} // namespace
} // namespace facetor
