#include "model/model_file.h"

#include "base/file.h"
#include "base/temporary_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <optional>

namespace facetor {
namespace {

/// One object as the tests put it into a file, field by field and without the writer under test.
/// What is optional in a file is optional here.
struct FileObject {
    std::array<float, 12> matrix{1, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0};
    std::array<float, 3> translation{}, degrees{}, scaling{1, 1, 1};
    std::uint32_t mesh = 0, child = noObject, next = noObject;
    std::vector<float> vertices{0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0};
    std::vector<float> normals{0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 0, 1};
    std::vector<std::uint16_t> corners{0, 1, 2, 3};
    std::optional<std::string> name;
    std::vector<PolygonAttribute> attributes;
    std::vector<std::uint16_t> gouraud;
    std::vector<std::byte> tail; ///< bytes after the last chunk
};

struct FileModel {
    std::uint32_t version = 0x00011000;
    std::vector<FileObject> objects;
    std::optional<std::uint32_t> count; ///< in place of the number of objects
};

void putChunk(ByteWriter& out, const char (&name)[5], const std::function<void()>& payload)
{
    const std::size_t start = out.beginChunk(tag(name));
    payload();
    out.endChunk(start);
}

void putFloats(ByteWriter& out, std::span<const float> values)
{
    for (const float value : values) out.f32(value);
}

void putObject(ByteWriter& out, const FileObject& object, bool older)
{
    putChunk(out, "OBJT", [&] {
        if (!older) putFloats(out, object.matrix);
        putFloats(out, object.translation);
        putFloats(out, object.degrees);
        putFloats(out, object.scaling);
        for (const std::uint32_t index : {object.mesh, object.child, object.next}) out.u32(index);
    });
    putChunk(out, "VerF", [&] { putFloats(out, object.vertices); });
    putChunk(out, "NorF", [&] { putFloats(out, object.normals); });
    putChunk(out, "POLY", [&] {
        for (const std::uint16_t corner : object.corners) out.u16(corner);
    });
    if (object.name)
        putChunk(out, "MoNm", [&] {
            out.text(*object.name);
            out.u8(0);
        });
    if (!object.attributes.empty())
        putChunk(out, "TQAt", [&] {
            for (const PolygonAttribute& a : object.attributes) {
                for (const std::uint16_t field : {a.plane, a.sort, a.texture, a.color})
                    out.u16(field);
                out.u32(a.flags);
            }
        });
    if (!object.gouraud.empty())
        putChunk(out, "TQGr", [&] {
            for (const std::uint16_t color : object.gouraud) out.u16(color);
        });
    out.bytes(object.tail);
}

Bytes fileOf(const FileModel& file)
{
    ByteWriter out;
    putChunk(out, "MX3D", [&] {
        out.u32(file.version);
        out.u32(file.count.value_or(static_cast<std::uint32_t>(file.objects.size())));
        out.text("FACETOR DATA FILE 1995-1996/GRAPHICS TOOLS");
        out.zeros(256 - 8 - 42);
    });
    for (const FileObject& object : file.objects)
        putObject(out, object, file.version == 0x00010000);
    return out.release();
}

/// Three objects with everything a file can say: 0 has child 1 and sibling 2.
FileModel fullFile()
{
    FileModel file;
    file.objects.resize(3);
    for (std::uint32_t i = 0; i < 3; ++i) {
        FileObject& object = file.objects[i];
        object.mesh = i;
        object.matrix = {0, 1, 0, -1, 0, 0, 0, 0, 1, 5, 6, 7};
        object.translation = {1.5f, -2, 3};
        object.degrees = {0, 45, -90};
        object.scaling = {2, 2, 0.5f};
        object.name = "wing " + std::to_string(i);
        object.attributes = {{1, 2, 65535, 0x1234, textureMap | meshMode | 0x40000000u, 0}};
        object.gouraud = {1, 2, 3, 0xFFFF};
    }
    file.objects[0].child = 1;
    file.objects[0].next = 2;
    file.objects[2].corners = {0, 1, 2, 3, 3, 2, 1, 0};
    file.objects[2].attributes.push_back({0, 0, 0, 7, polygonFace, 0});
    file.objects[2].gouraud = {1, 2, 3, 0xFFFF, 5, 6, 7, 8};
    return file;
}

class ModelFile : public testing::Test {
protected:
    void SetUp() override { ASSERT_EQ(createModelStore(model), Message::none); }

    Message read(const FileModel& file) { return readModel(model, fileOf(file), &reason); }

    Model model;
    Reason reason;
};

TEST_F(ModelFile, IsWrittenAgainByteForByteButForAnglesAndMarks)
{
    FileModel file = fullFile();
    for (FileObject& object : file.objects) object.degrees = {0, 0, 0};
    const Bytes bytes = fileOf(file);
    ASSERT_EQ(readModel(model, bytes), Message::none);
    EXPECT_EQ(writeModel(model), bytes);

    model.attributes[3].flags |= picked;
    model.objects[1].rotation = {16384, 1, -16384};
    const Bytes marked = writeModel(model);
    EXPECT_NE(marked, bytes) << "a selection mark is written as it stands";
    ASSERT_EQ(readModel(model, marked), Message::none);
    EXPECT_EQ(model.attributes[3].flags, polygonFace) << "and cleared by the reader";
    EXPECT_EQ(model.objects[1].rotation, (std::array<Angle, 3>{16383, 0, -16383}));
}

TEST_F(ModelFile, TheOlderLayoutHasIdentityMatrices)
{
    FileModel file = fullFile();
    file.version = 0x00010000;
    ASSERT_EQ(read(file), Message::none) << reason.text;
    for (std::uint32_t i = 0; i < 3; ++i)
        EXPECT_EQ(model.objects[i].matrix.element, identityMatrix.element);
    EXPECT_EQ(model.objects[0].translation.x, 1.5f);
    EXPECT_EQ(model.objects[0].rotation[2], -16383);
    EXPECT_EQ(model.objects[0].next, 2u);
    const Bytes written = writeModel(model);
    EXPECT_EQ(written[9], std::byte{0x10}) << "the writer knows the current layout only";
}

TEST_F(ModelFile, MissingOptionalChunksGiveDefaults)
{
    FileModel file;
    file.objects.resize(2);
    file.objects[1].mesh = 1;
    model.names[1] = "of the model before";
    model.attributes[0] = {9, 9, 9, 9, 9, 9};
    ASSERT_EQ(read(file), Message::none) << reason.text;
    EXPECT_EQ(model.names[0], "Model00");
    EXPECT_EQ(model.names[1], "Model01");
    for (std::uint32_t i = 0; i < 2; ++i) {
        const PolygonAttribute& attribute = model.attributes[i];
        EXPECT_EQ(attribute.plane, 1);
        EXPECT_EQ(attribute.sort, 0);
        EXPECT_EQ(attribute.texture, 0);
        EXPECT_EQ(attribute.color, 0xE318);
        EXPECT_EQ(attribute.flags, 0x01000010u);
        EXPECT_EQ(attribute.gouraud, i);
        EXPECT_EQ(model.gouraud[i].color, (std::array<Rgb555, 4>{0xC210, 0xC210, 0xC210, 0xC210}));
    }
}

TEST_F(ModelFile, AnUnknownChunkDerailsTheReader)
{
    // The unknown chunk's payload is read as chunk headers: a name chunk within it counts, and what
    // stands behind is found only where the payload is a multiple of 8 bytes long.
    FileModel file;
    file.objects.resize(1);
    ByteWriter tail;
    putChunk(tail, "Xtra", [&] { putChunk(tail, "MoNm", [&] { tail.text("within"); }); });
    file.objects[0].tail = tail.release();
    ASSERT_EQ(read(file), Message::none) << reason.text;
    EXPECT_EQ(model.names[0], "within");

    file.objects.resize(2);
    file.objects[1] = FileObject{};
    file.objects[1].mesh = 1;
    ByteWriter four;
    putChunk(four, "Xtra", [&] { four.u32(0); });
    file.objects[0].tail = four.release();
    EXPECT_EQ(read(file), Message::formatNotSupported) << "four bytes off, no object is found";
    EXPECT_TRUE(isSafeToDraw(model));
}

TEST_F(ModelFile, WhatDoesNotExistIsRefusedWithTheReason)
{
    struct Row {
        const char* reason; ///< as the reader has to give it, or a part of it
        void (*spoil)(FileModel&);
    };
    const Row rows[] = {
        {"129 objects", [](FileModel& f) { f.count = 129; }},
        {"4294967295 objects", [](FileModel& f) { f.count = 0xFFFFFFFF; }},
        {"object 3, chunk OBJT at offset", [](FileModel& f) { f.count = 4; }},
        {"mesh 3 does not exist", [](FileModel& f) { f.objects[1].mesh = 3; }},
        {"object 3 does not exist", [](FileModel& f) { f.objects[1].child = 3; }},
        {"object 4294967294 does not exist", [](FileModel& f) { f.objects[1].next = 0xFFFFFFFE; }},
        {"object 2, chunk POLY",
         [](FileModel& f) {
             f.objects[2].corners = {0, 1, 2, 4};
         }},
        {"polygon 1 names vertex 65535 of 4",
         [](FileModel& f) { f.objects[2].corners = {0, 1, 2, 3, 65535, 0, 0, 0}; }},
        {"names vertex 0 of 0", [](FileModel& f) { f.objects[0].vertices.clear(); }},
        {"2 attributes for 1 polygons", [](FileModel& f) { f.objects[1].attributes.resize(2); }},
        {"3 Gouraud entries for 2 polygons", [](FileModel& f) { f.objects[2].gouraud.resize(12); }},
        {"a name of more than 4095 bytes",
         [](FileModel& f) { f.objects[2].name = std::string(4096, 'n'); }},
        {"more than 4096 vertices", [](FileModel& f) { f.objects[2].vertices.resize(4089 * 3); }},
        {"more than 4096 polygons", [](FileModel& f) { f.objects[2].corners.resize(4095 * 4); }},
        {"rotation beyond what an angle holds",
         [](FileModel& f) { f.objects[0].degrees[1] = 1.2e7f; }},
        {"linked twice or in a circle", [](FileModel& f) { f.objects[2].child = 0; }},
        {"linked twice or in a circle", [](FileModel& f) { f.objects[2].next = 1; }},
        {"linked twice or in a circle", [](FileModel& f) { f.objects[1].child = 1; }},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.reason);
        FileModel file = fullFile();
        row.spoil(file);
        EXPECT_EQ(read(file), Message::formatNotSupported);
        EXPECT_NE(reason.text.find(row.reason), std::string::npos) << reason.text;
        EXPECT_TRUE(isSafeToDraw(model));
    }
}

TEST_F(ModelFile, ObjectsMayShareAMeshWithinWhatAFrameHolds)
{
    FileModel file = fullFile();
    for (FileObject& object : file.objects) object.mesh = 0;
    EXPECT_EQ(read(file), Message::none) << reason.text;
    EXPECT_EQ(model.objects[2].mesh, 0u);

    file.objects[0].corners.assign(1400 * 4, 0);
    EXPECT_EQ(read(file), Message::formatNotSupported) << "4200 polygons in one frame";
    EXPECT_NE(reason.text.find("shares a mesh"), std::string::npos) << reason.text;
    EXPECT_TRUE(isSafeToDraw(model));
    EXPECT_EQ(model.objects[2].mesh, 2u) << "what stays is within the frame";
}

TEST_F(ModelFile, EveryCutFileLeavesAModelThatIsSafeToDraw)
{
    FileModel file = fullFile();
    const Bytes whole = fileOf(file);
    // Only between the optional chunks of the last object may a cut file be a valid one.
    FileObject& last = file.objects.back();
    last.name.reset();
    last.attributes.clear();
    last.gouraud.clear();
    const std::size_t required = fileOf(file).size();
    for (std::size_t size = 0; size < whole.size(); ++size) {
        SCOPED_TRACE(size);
        // Of exactly this size, so that an overrun of one byte reaches the sanitizer.
        const Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
        const Message message = readModel(model, cut);
        ASSERT_TRUE(isSafeToDraw(model));
        if (size < required) {
            ASSERT_EQ(message, Message::formatNotSupported);
        }
    }
    EXPECT_EQ(readModel(model, whole), Message::none);
}

TEST_F(ModelFile, AFailureLaterKeepsTheObjectsReadSoFar)
{
    FileModel file = fullFile();
    file.objects[2].corners = {9, 9, 9, 9};
    ASSERT_EQ(read(file), Message::formatNotSupported);
    EXPECT_EQ(model.objectCount, 3u);
    EXPECT_EQ(model.names[1], "wing 1");
    EXPECT_EQ(model.meshes[1].polygonCount, 1u);
    EXPECT_EQ(model.meshes[2].polygonCount, 0u);
    EXPECT_EQ(model.names[2], "Model02");
    EXPECT_EQ(model.totalPolygonCount, 2u);
}

TEST_F(ModelFile, IsFoundByItsFirstBytes)
{
    const TemporaryFolder folder;
    const std::string path = folder.file("a.mx3");
    ASSERT_EQ(writeModelFile(model, path), Message::none);
    EXPECT_TRUE(probeModelFile(path));
    Model other;
    ASSERT_EQ(createModelStore(other), Message::none);
    EXPECT_EQ(readModelFile(other, path), Message::none);
    EXPECT_EQ(writeModel(other), writeModel(model));

    EXPECT_EQ(readModelFile(other, folder.file("missing.mx3")), Message::cannotOpenFile);
    EXPECT_FALSE(probeModelFile(folder.file("missing.mx3")));
    EXPECT_EQ(writeModelFile(model, folder.file("no/such/folder.mx3")), Message::cannotCreateFile);
    for (const std::string_view text : {"", "MX3D", "MX3", "MXTX\0\1\0\0", "mx3d\0\1\0\0"}) {
        ASSERT_EQ(writeFile(path, std::as_bytes(std::span(text))), Message::none);
        EXPECT_FALSE(probeModelFile(path)) << text;
    }
}

TEST_F(ModelFile, NormalsOfAnotherCountAreSkippedAndComputed)
{
    FileModel file;
    file.objects.resize(2);
    file.objects[0].normals = {1, 0, 0, 0, 1, 0}; // 2 for 4 vertices
    file.objects[1].mesh = 1;
    file.objects[1].normals = {1, 0, 0, 1, 0, 0, 1, 0, 0, 0, 1, 0};
    ASSERT_EQ(read(file), Message::none) << reason.text;
    for (std::uint32_t i = 0; i < 4; ++i) {
        EXPECT_EQ(model.vertexNormals[i].z, -1.0f) << "the face normal";
        EXPECT_EQ(model.vertexNormals[i].x, 0.0f);
    }
    EXPECT_EQ(model.vertexNormals[4].x, 1.0f) << "the next object's are as the file says";
    EXPECT_EQ(model.vertexNormals[7].y, 1.0f);
}

} // namespace
} // namespace facetor
