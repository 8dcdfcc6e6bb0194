#include "output/target_image.h"

#include "base/file.h"
#include "base/temporary_folder.h"
#include "model/model_file.h"
#include "output/texture_source.h"
#include "texture/numbered_texture.h"
#include "texture/texture_file.h"

#include <gtest/gtest.h>

#include <cmath>
#include <map>

namespace facetor {

namespace {

/// The console's memory after an image was copied into it. Every byte is read exactly once, so that
/// nothing in a block goes unlooked at.
class ConsoleMemory {
public:
    explicit ConsoleMemory(const Bytes& image)
    {
        const auto byte = [&](std::size_t i) {
            return std::to_integer<std::uint32_t>(image.at(i));
        };
        const auto word = [&](std::size_t i) {
            return byte(i) | byte(i + 1) << 8 | byte(i + 2) << 16 | byte(i + 3) << 24;
        };
        for (std::size_t at = 0; at < image.size();) {
            const std::uint32_t address = word(at), size = word(at + 4);
            blocks.emplace_back(address, size);
            for (std::uint32_t i = 0; i < size; ++i) bytes_[address + i] = byte(at + 8 + i);
            at += 8 + size;
        }
    }

    std::uint32_t u8(std::uint32_t address)
    {
        const auto found = bytes_.find(address);
        if (found == bytes_.end()) {
            ADD_FAILURE() << "nothing, or read before, at " << std::hex << address;
            return 0;
        }
        const std::uint32_t value = found->second;
        bytes_.erase(found);
        return value;
    }
    std::uint32_t u16(std::uint32_t address) { return u8(address) << 8 | u8(address + 1); }
    std::uint32_t u32(std::uint32_t address) { return u16(address) << 16 | u16(address + 2); }
    /// Reads three fixed-point values and holds them against a vector times `scale`.
    void expectVector(std::uint32_t address, const Vector3& v, float scale)
    {
        for (const float value : {v.x, v.y, v.z}) {
            const double expected = std::trunc(double{value * scale} * 65536.0);
            EXPECT_EQ(static_cast<std::int32_t>(u32(address)), expected) << std::hex << address;
            address += 4;
        }
    }
    std::size_t unread() const { return bytes_.size(); }

    std::vector<std::pair<std::uint32_t, std::uint32_t>> blocks; ///< address, size

private:
    std::map<std::uint32_t, std::uint32_t> bytes_;
};

std::uint32_t consoleColour(Rgb555 colour)
{
    return 0x8000u | (colour >> 10 & 31u) | (colour & 0x03E0u) | (colour & 31u) << 10;
}

/// Reads a model's image as a console program would and holds it against the model.
class ModelComparison {
public:
    ModelComparison(const Model& model, float scale)
        : memory(formatModelImage(model, scale)), model_(model), scale_(scale)
    {
        for (std::uint32_t i = 0; i < model.totalPolygonCount; ++i)
            lightCount_ += isLightGouraud(model.attributes[i]);
        tableAddress_ = 0x1C38 + lightCount_;
        EXPECT_EQ(memory.blocks.size(), 4u);
        memory.blocks.resize(4);
        EXPECT_EQ(memory.blocks[0], std::pair(0x060AE000u, 48 * model.objectCount));
        EXPECT_EQ(memory.blocks[1], std::pair(0x060AFFF8u, 4u));
        EXPECT_EQ(memory.blocks[2].first, 0x060B0000u);
        EXPECT_EQ(memory.blocks[3].first, 0x25C00000u + 8 * tableAddress_);
        EXPECT_EQ(static_cast<std::int32_t>(memory.u32(0x060AFFF8)), std::trunc(scale * 65536.0));
        for (std::uint32_t k = 0; k < model.objectCount; ++k) compareObject(k);
        EXPECT_EQ(memory.unread(), 0u);
    }

    ConsoleMemory memory;
    std::vector<bool> carriesNormals; ///< of each object

private:
    void compareObject(std::uint32_t k)
    {
        SCOPED_TRACE(k);
        const Object& object = model_.objects[k];
        const auto& m = object.matrix.element;
        for (std::uint32_t row = 0; row < 4; ++row)
            memory.expectVector(0x060AE000 + 48 * k + 12 * row,
                                {m[row * 4], m[row * 4 + 1], m[row * 4 + 2]},
                                row == 3 ? scale_ : 1.0f);
        const std::uint32_t entry = 0x060B0000 + 44 * k;
        const Mesh& mesh = model_.meshes[object.mesh];
        const std::uint32_t data = memory.u32(entry);
        const std::uint32_t expected = next_ == 0 ? 0x060B0000 + 44 * model_.objectCount : next_;
        EXPECT_EQ(data, mesh.vertexCount == 0 || mesh.polygonCount == 0 ? 0 : expected);
        memory.expectVector(entry + 4, object.translation, scale_);
        for (std::uint32_t i = 0; i < 3; ++i)
            EXPECT_EQ(memory.u16(entry + 16 + 2 * i), object.rotation[i] & 0xFFFF);
        EXPECT_EQ(memory.u16(entry + 22), 0u);
        memory.expectVector(entry + 24, object.scaling, 1.0f);
        const auto reference = [](std::uint32_t index) {
            return index == noObject ? 0 : 0x060B0000 + 44 * index;
        };
        EXPECT_EQ(memory.u32(entry + 36), reference(object.child));
        EXPECT_EQ(memory.u32(entry + 40), reference(object.next));
        compareData(expected, mesh);
    }

    void compareData(std::uint32_t data, const Mesh& mesh)
    {
        const std::uint32_t points = memory.u32(data), polygons = memory.u32(data + 8);
        const std::uint32_t attributes = memory.u32(data + 16), normals = memory.u32(data + 20);
        EXPECT_EQ(memory.u32(data + 4), mesh.vertexCount);
        EXPECT_EQ(memory.u32(data + 12), mesh.polygonCount);
        EXPECT_EQ(points, data + 24);
        EXPECT_EQ(polygons, points + 12 * mesh.vertexCount);
        EXPECT_EQ(attributes, polygons + 20 * mesh.polygonCount);
        next_ = attributes + 12 * mesh.polygonCount;
        carriesNormals.push_back(normals != 0);
        if (normals != 0) {
            EXPECT_EQ(normals, next_);
            next_ += 12 * mesh.vertexCount;
        }
        for (std::uint32_t i = 0; i < mesh.vertexCount; ++i) {
            memory.expectVector(points + 12 * i, model_.vertices[mesh.vertexTable + i], scale_);
            if (normals != 0)
                memory.expectVector(normals + 12 * i,
                                    model_.vertexNormals[mesh.vertexNormalTable + i], 1.0f);
        }
        for (std::uint32_t i = 0; i < mesh.polygonCount; ++i) {
            const Polygon& polygon = model_.polygons[mesh.polygonTable + i];
            memory.expectVector(polygons + 20 * i, polygon.normal, 1.0f);
            for (std::uint32_t c = 0; c < 4; ++c)
                EXPECT_EQ(memory.u16(polygons + 20 * i + 12 + 2 * c), polygon.corner[c]);
            compareAttribute(attributes + 12 * i, model_.attributes[mesh.attributeTable + i]);
        }
    }

    void compareAttribute(std::uint32_t at, const PolygonAttribute& attribute)
    {
        const std::uint32_t flags = attribute.flags;
        const bool textured = (flags & 8) != 0, line = (flags & 0x20) != 0;
        const bool gouraud = (flags & 0x1000) != 0, light = (flags & 0x01000000) != 0;
        constexpr std::uint32_t sortCodes[] = {3, 1, 2};
        EXPECT_EQ(memory.u8(at), attribute.plane != 0);
        EXPECT_EQ(memory.u8(at + 1), sortCodes[attribute.sort] | (textured ? 0x04u : 0) |
                                         (!light    ? 0
                                          : gouraud ? 0x80u
                                                    : 0x08u) |
                                         ((flags & 0x08000000) != 0 ? 0x40u : 0));
        EXPECT_EQ(memory.u16(at + 2), textured ? attribute.texture : 0);
        constexpr std::uint32_t blends[] = {0, 1, 2, 2, 3, 3, 3, 3}; // 3 has the bits of 1 and 2
        EXPECT_EQ(memory.u16(at + 4), (textured ? 0x28u : 0xE8u) | (flags & 0x100) |
                                          blends[flags >> 9 & 7] | (gouraud ? 4u : 0));
        EXPECT_EQ(memory.u16(at + 6), consoleColour(attribute.color));
        const std::uint32_t table = memory.u16(at + 8);
        EXPECT_EQ(table, !gouraud ? 0 : light ? lightAddress_++ : tableAddress_++);
        if (gouraud && !light) {
            for (std::uint32_t c = 0; c < 4; ++c)
                EXPECT_EQ(memory.u16(0x25C00000 + 8 * table + 2 * c),
                          consoleColour(model_.gouraud[attribute.gouraud].color[c]));
        }
        EXPECT_EQ(memory.u16(at + 10), textured ? 2 | (flags & 3) << 4 : line ? 5u : 4u);
    }

    const Model& model_;
    float scale_;
    std::uint32_t lightCount_ = 0, lightAddress_ = 0x1C38, tableAddress_ = 0, next_ = 0;
};

class TargetImage : public testing::Test {
protected:
    void SetUp() override { ASSERT_EQ(createModelStore(model), Message::none); }

    Model model;
};

TEST_F(TargetImage, HoldsEveryFieldOfEverySample)
{
    for (const char* path : {"samples/ship.mx3", "samples/prop.mx3", "samples/max.mx3"})
        for (const float scale : {1.0f, 0.37f}) {
            SCOPED_TRACE(path);
            ASSERT_EQ(readModelFile(model, path), Message::none);
            (void)ModelComparison(model, scale);
        }
}

TEST_F(TargetImage, ObjectsUpToTheLastThatNeedsThemCarryNormals)
{
    model.objectCount = 5; // the cube's six polygons as objects of 2, 2, 2, none and nothing at all
    for (std::uint32_t k = 0; k < 5; ++k) {
        model.objects[k] = model.objects[0];
        model.objects[k].mesh = k;
        model.objects[k].next = k < 4 ? k + 1 : noObject;
        for (std::size_t i = 0; i < 16; ++i)
            model.objects[k].matrix.element[i] = static_cast<float>(i + 20 * k);
        model.meshes[k] = {0, k == 4 ? 0u : 8u, 2 * k, k >= 3 ? 0u : 2u, 2 * k, 0};
    }
    for (const std::size_t i : {1, 3, 5}) model.attributes[i].flags |= gouraudShading;
    model.attributes[5].flags &= ~std::uint32_t{useLight};
    ModelComparison comparison(model, 0.37f);
    EXPECT_EQ(comparison.carriesNormals, (std::vector<bool>{true, true, false, false, false}));
    EXPECT_EQ(comparison.memory.blocks[3], std::pair(0x25C0E1D0u, 8u));
}

TEST_F(TargetImage, AReferenceToNoObjectIsOneToTheFirst)
{
    model.objects[0].child = 1;
    model.objects[0].next = 0x12345678;
    ConsoleMemory memory(formatModelImage(model, 1.0f));
    EXPECT_EQ(memory.u32(0x060B0000 + 36), 0x060B0000u);
    EXPECT_EQ(memory.u32(0x060B0000 + 40), 0x060B0000u);
}

TEST_F(TargetImage, NumbersThatDoNotFitBecomeTheNearest)
{
    model.objects[0].translation = {40000.0f, -1e30f, std::nanf("")};
    ConsoleMemory memory(formatModelImage(model, 1.0f));
    EXPECT_EQ(memory.u32(0x060B0004), 0x7FFFFFFFu);
    EXPECT_EQ(memory.u32(0x060B0008), 0x80000000u);
    EXPECT_EQ(memory.u32(0x060B000C), 0u);
    model.objectCount = model.totalPolygonCount = model.totalVertexCount = 0;
    EXPECT_EQ(formatModelImage(model, 1.0f).size(), 4u * 8 + 4)
        << "an empty model has empty blocks";
}

TEST(TargetImageOfTextures, HoldsSizesAddressesAndTexelsWhereTheCSourceHasThem)
{
    TextureList list;
    ASSERT_EQ(list.create(), Message::none);
    Bytes image;
    EXPECT_EQ(formatTextureImage(image, list), Message::texturesEmpty);
    ASSERT_EQ(readTextureFile(list, "samples/ship.mxt"), Message::none);
    putNumbered(list, list.usedCount() + 1, 256, 3); // behind an empty slot
    list.pixels(list.usedCount() - 1)[5] = 0x7FFF;   // transparent
    ASSERT_EQ(formatTextureImage(image, list), Message::none);
    ConsoleMemory memory(image);
    const std::string source(formatTextureSource(list, "a.txr").view());
    std::uint32_t texel = 0x25C10000;
    for (std::uint32_t i = 0; i < list.usedCount(); ++i) {
        SCOPED_TRACE(i);
        const TextureSlot& slot = list.slot(i);
        const std::uint32_t entry = 0x0602B000 + 8 * i, offset = texel - 0x25C10000;
        EXPECT_EQ(memory.u16(entry), slot.width);
        EXPECT_EQ(memory.u16(entry + 2), slot.height);
        EXPECT_EQ(memory.u16(entry + 4) * 8, 0x10000 + offset);
        EXPECT_EQ(memory.u8(entry + 6), slot.width / 8 % 256);
        EXPECT_EQ(memory.u8(entry + 7), slot.height % 256);
        EXPECT_NE(source.find("CGADDRESS+" + std::to_string(offset) + ")"), std::string::npos);
        for (int p = 0; p < slot.width * slot.height; ++p, texel += 2) {
            const Rgb555 pixel = slot.pixels[p];
            EXPECT_EQ(memory.u16(texel), (pixel & 0x8000) != 0 ? consoleColour(pixel) : 0);
        }
    }
    EXPECT_EQ(memory.unread(), 0u);

    const TemporaryFolder folder;
    putNumbered(list, 3, 264, 1);
    std::string reason;
    EXPECT_EQ(writeTextureImage(list, folder.file("a.sal"), &reason), Message::outOfMemory);
    EXPECT_EQ(reason, "texture 3 is 264 texels wide, a row has at most 256");
    EXPECT_EQ(folder.entryCount(), 0u);
}

TEST(TargetImageOfAScene, HoldsLightAngleAndColours)
{
    SceneSettings scene;
    ConsoleMemory start(formatSceneImage(scene));
    EXPECT_EQ(
        start.blocks,
        (decltype(start.blocks){
            {0x0602F000, 12}, {0x0602F00C, 2}, {0x0602F010, 2}, {0x0602F014, 2}, {0x25E7FFFE, 2}}));
    for (const std::uint32_t i : {0u, 4u, 8u}) EXPECT_EQ(start.u32(0x0602F000 + i), 0x000093B6u);
    EXPECT_EQ(start.u16(0x0602F00C), 0xFFFFu);
    EXPECT_EQ(start.u16(0x0602F010), 16383u);
    EXPECT_EQ(start.u16(0x0602F014), 0x8000u);
    EXPECT_EQ(start.u16(0x25E7FFFE), 0xC000u);
    scene = {{-1, 0.5f, 0}, rgb555(1, 2, 3), 8191, rgb555(4, 5, 6), rgb555(7, 8, 9)};
    ConsoleMemory other(formatSceneImage(scene));
    EXPECT_EQ(other.u32(0x0602F000), 0xFFFF0000u);
    EXPECT_EQ(other.u16(0x0602F00C), 0x8000u | 1 | 2 << 5 | 3 << 10);
    EXPECT_EQ(other.u16(0x0602F014), 0x8000u | 4 | 5 << 5 | 6 << 10);
    EXPECT_EQ(other.u16(0x25E7FFFE), 0x8000u | 7 | 8 << 5 | 9 << 10);
}

} // namespace

} // namespace facetor
