#include "exchange/gltf_reader.h"

#include "exchange/model_import.h"

#include <gtest/gtest.h>

namespace facetor {
namespace {

/// A square of two triangles, its positions in a data URI, with one place of the text exchanged.
std::string square(const std::string& from = {}, const std::string& to = {})
{
    std::string text = R"({"asset":{"version":"2.0"},"nodes":[
        {"name":"a","children":[1],"translation":[1,2,3]},
        {"name":"b","mesh":0,"rotation":[0,0,0.70710678,0.70710678],"scale":[1,2,1]}],
        "meshes":[{"primitives":[{"attributes":{"POSITION":0},"mode":6,"material":0}]}],
        "materials":[{"doubleSided":true,"alphaMode":"BLEND",
            "pbrMetallicRoughness":{"baseColorFactor":[1,0.2140411,0,0.5]}}],
        "accessors":[{"bufferView":0,"componentType":5120,"count":4,"type":"VEC3"}],
        "bufferViews":[{"buffer":0,"byteLength":16,"byteStride":4}],
        "buffers":[{"byteLength":16,"uri":"data:;base64,AAAAAAEAAAABAQAAAAEAAA=="}]})";
    if (!from.empty()) text.replace(text.find(from), from.size(), to);
    return text;
}

TEST(GltfReader, MakesNodesWithTheirTreeAndLooks)
{
    Scene scene;
    Reason reason;
    Model model;
    ImportReport report;
    const std::string text = square();
    ASSERT_EQ(createModelStore(model), Message::none);
    ASSERT_EQ(readGltf(scene, std::as_bytes(std::span(text)), nullptr, reason), Message::none)
        << reason.text;
    ASSERT_EQ(buildModel(model, nullptr, scene, {}, report, reason), Message::none);
    EXPECT_TRUE(isSafeToDraw(model));
    EXPECT_EQ(report.quads, 1u);
    ASSERT_EQ(model.objectCount, 2u);
    EXPECT_EQ(model.objects[0].child, 1u);
    EXPECT_EQ(model.objects[0].translation.y, -2);
    EXPECT_EQ(model.objects[1].rotation, (std::array<Angle, 3>{0, 0, -16384}));
    EXPECT_NEAR(model.objects[1].scaling.y, 2, 1e-6);
    EXPECT_EQ(model.attributes[0].color, 0x8000 | rgb555(31, 15, 0)); // 0.2140411 is half in sRGB
    EXPECT_EQ(model.attributes[0].plane, dualPlaneBit);
    EXPECT_NE(model.attributes[0].flags & translucentMode, 0u);
}

TEST(GltfReader, NamesWhatIsBroken)
{
    static const std::array<const char*, 3> rows[] = {
        {"\"count\":4", "\"count\":5", "accessor 0 overruns its bufferView"},
        {"\"count\":4", "\"count\":18446744073709551615", "accessor 0 overruns its bufferView"},
        {"\"byteLength\":16,\"byteStride\"", "\"byteLength\":17,\"byteStride\"",
         "bufferView 0 overruns its buffer"},
        {"\"byteLength\":16,\"uri\"", "\"byteLength\":99,\"uri\"",
         "buffer 0 is shorter than it says"},
        {"AAEAAA==", "A*EAAA==", "buffer 0: base64 is damaged"},
        {"\"children\":[1]", "\"children\":[1,1]", "node 1 has two parents"},
        {"\"material\":0", "\"material\":7",
         "mesh 0 primitive 0 names a material that does not exist"},
        {"\"mode\":6", "\"mode\":6,\"indices\":1", "accessor 1 does not exist"},
        {"\"mesh\":0,", "", "it has no face"},
        {"\"nodes\"", "nodes", "it is no JSON"},
    };
    for (const auto& [from, to, why] : rows) {
        Scene scene;
        Reason reason;
        const std::string text = square(from, to);
        EXPECT_EQ(readGltf(scene, std::as_bytes(std::span(text)), nullptr, reason),
                  Message::formatNotSupported);
        EXPECT_EQ(reason.text, why);
    }
}

} // namespace
} // namespace facetor
