#include "exchange/gltf_reader.h"

#include "exchange/model_import.h"
#include "exchange/model_points.h"
#include "session/import_text.h"

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
    EXPECT_EQ(scene.materials[0].alphaCutoff, 0.5);
    const std::string dense = square("0.5]", "0.8]");
    Scene other;
    ASSERT_EQ(readGltf(other, std::as_bytes(std::span(dense)), nullptr, reason), Message::none);
    EXPECT_EQ(other.materials[0].alphaCutoff, 0.625); // times 0.8 is one half
}

TEST(GltfReader, RotationsLeadWhereTheirQuaternionsDo)
{
    // The images of the x and the y axis.
    static const struct {
        const char* quaternion;
        Real3 x, y;
    } rows[] = {
        {"[0.5,0.5,0.5,0.5]", {0, 1, 0}, {0, 0, 1}},
        {"[0.5,0.5,-0.5,0.5]", {0, 0, -1}, {1, 0, 0}}, // about y by a quarter, and more
        {"[-0.5,-0.5,-0.5,0.5]", {0, 0, 1}, {1, 0, 0}},
        {"[0,1e-9,0,1]", {1, 0, 0}, {0, 1, 0}},
        {"[0.5609855,0.4304593,0.4304593,0.5609855]", {0.2588190, 0.9659258, 0}, {0, 0, 1}},
    };
    for (const auto& [quaternion, x, y] : rows) {
        SCOPED_TRACE(quaternion);
        Scene scene;
        Reason reason;
        Model model;
        ImportReport report;
        std::string text = square("[0,0,0.70710678,0.70710678]", quaternion);
        text.replace(text.find("[1,2,1]"), 7, "[1,1,1]");
        ASSERT_EQ(createModelStore(model), Message::none);
        ASSERT_EQ(readGltf(scene, std::as_bytes(std::span(text)), nullptr, reason), Message::none);
        ASSERT_EQ(buildModel(model, nullptr, scene, {}, report, reason), Message::none);
        const Matrix placed = placementsOf(model)[1];
        for (const auto& [from, to] : {std::pair(Vector3{1, 0, 0}, x), {Vector3{0, -1, 0}, y}}) {
            const Vector3 image = rotateVector(from, placed);
            EXPECT_NEAR(image.x, to[0], 2e-4);
            EXPECT_NEAR(image.y, -to[1], 2e-4);
            EXPECT_NEAR(image.z, -to[2], 2e-4);
        }
    }
}

TEST(GltfReader, PutsSparseElementsIntoTheirPlaces)
{
    Scene scene;
    Reason reason;
    // The first element, whose index stands at offset 12, becomes that at offset 4.
    const std::string text =
        square("\"count\":4,", "\"count\":4,\"sparse\":{\"count\":1,\"indices\":{\"bufferView\":0,"
                               "\"byteOffset\":12,\"componentType\":5121},\"values\":"
                               "{\"bufferView\":0,\"byteOffset\":4}},");
    ASSERT_EQ(readGltf(scene, std::as_bytes(std::span(text)), nullptr, reason), Message::none)
        << reason.text;
    EXPECT_EQ(scene.positions[0], (Real3{1, 0, 0}));
    EXPECT_EQ(scene.positions[1], (Real3{1, 0, 0}));
    EXPECT_EQ(scene.positions[2], (Real3{1, 1, 0}));
}

TEST(GltfReader, NamesWhatIsBroken)
{
    static const std::array<const char*, 3> rows[] = {
        {"\"count\":4", "\"count\":5", "accessor 0 overruns its bufferView"},
        {"\"count\":4", "\"count\":18446744073709551615", "accessor 0 has no count that can be"},
        {"\"count\":4,", "\"count\":4,\"sparse\":{\"count\":5},",
         "accessor 0 has no sparse count that can be"},
        {"\"count\":4,",
         "\"count\":4,\"sparse\":{\"count\":1,\"indices\":{\"bufferView\":0,\"byteOffset\":8,"
         "\"componentType\":5123},\"values\":{\"bufferView\":0}},",
         "accessor 0 has a sparse index out of range"},
        {"\"byteLength\":16,\"byteStride\"", "\"byteLength\":17,\"byteStride\"",
         "bufferView 0 overruns its buffer"},
        {"\"byteLength\":16,\"uri\"", "\"byteLength\":99,\"uri\"",
         "buffer 0 is shorter than it says"},
        {"AAEAAA==", "A*EAAA==", "buffer 0: base64 is damaged"},
        {"\"children\":[1]", "\"children\":[1,1]", "node 1 has two parents"},
        {"\"children\":[1]", "\"children\":[1,7]", "node 7 does not exist"},
        {"\"baseColorFactor\"", "\"baseColorTexture\":{\"index\":5},\"x\"",
         "texture 5 does not exist"},
        {"\"material\":0", "\"material\":7",
         "mesh 0 primitive 0 names a material that does not exist"},
        {"\"mode\":6", "\"mode\":6,\"indices\":1", "accessor 1 does not exist"},
        {"\"count\":4", "\"count\":2000003", "2000001 faces; at most 4096 polygons fit"},
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
        const TextOf numbers = [](Word word) { return std::to_string(static_cast<int>(word)); };
        EXPECT_NE(importNoteText(why, numbers), why) << "it has a Japanese form";
    }
}

} // namespace
} // namespace facetor
