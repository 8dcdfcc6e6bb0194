#include "exchange/keep_attributes.h"

#include "exchange/model_import.h"
#include "exchange/obj_reader.h"
#include "exchange/obj_writer.h"

#include <gtest/gtest.h>

namespace facetor {
namespace {

void import(Model& model, std::string_view text)
{
    Scene scene;
    ImportReport report;
    Reason reason;
    ASSERT_EQ(createModelStore(model), Message::none);
    const AssetReader none = [](const std::string&, std::string&) { return std::nullopt; };
    ASSERT_EQ(readObj(scene, text, "a", none, reason), Message::none) << reason.text;
    ASSERT_EQ(buildModel(model, nullptr, scene, {}, report, reason), Message::none);
}

constexpr std::string_view old = "o a\nv 0 0 0\nv 2 0 0\nv 2 2 0\nv 0 2 0\nv 4 0 0\nv 4 2 0\n"
                                 "f 1 2 3 4\nf 2 5 6 3\no b\nf 1 2 3\no c\nf 1 2 4\n";

TEST(KeepAttributes, FindsPolygonsAgainAndLeavesObjectsInTheirPlace)
{
    // Face by face: in another order, from another corner, or moved; b is a child of a, c is gone.
    static const struct {
        std::string_view text;
        std::uint32_t kept, fresh, gone;
    } rows[] = {
        {"v 0 0 0\nv 2 0 0\nv 2 2 0\nv 0 2 0\nv 4 0 0\nv 4 2 0\n"
         "o d\nf 1 2 6\no a\nf 6 3 2 5\nf 3 4 1 2\no b\nf 2 3 1\n",
         3, 1, 1},
        {"v 0 0 0\nv 2 0 0\nv 2 2 0\nv 0 2 0\nv 4 0 1\nv 4 2 0\n"
         "o a\nf 2 5 6 3\nf 1 2 3 4\no b\nf 1 2 3\n",
         3, 0, 1},
        {"v 0 0 0\nv 2 0 0\nv 2 2 0\nv 0 2 0\nv 4 0 1\nv 4 2 0\no a\nf 1 2 3 4\n", 1, 0, 3},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.text);
        Model before, imported, after;
        import(before, old);
        import(imported, row.text);
        ASSERT_EQ(createModelStore(after), Message::none);
        for (std::uint32_t p = 0; p < 4; ++p) {
            before.attributes[p].color = static_cast<Rgb555>(p);
            before.gouraud[p].color = {1, 2, 3, 4};
        }
        before.objects[0].translation = {5, 0, 0};
        before.objects[0].scaling = {2, 2, 2};
        before.objects[0].child = 1;
        before.objects[0].next = 2;
        before.objects[1].next = noObject;
        for (std::uint32_t v = 0; v < before.totalVertexCount; ++v) // drawn as it was
            if (v < before.meshes[2].vertexTable) {
                Vertex& vertex = before.vertices[v];
                vertex = {(vertex.x - 5) / 2, vertex.y / 2, vertex.z / 2};
            }
        KeptPolygons polygons;
        Reason reason;
        ASSERT_EQ(keepAttributes(after, before, imported, polygons, reason), Message::none);
        EXPECT_TRUE(isSafeToDraw(after));
        EXPECT_EQ(polygons.kept, row.kept);
        EXPECT_EQ(polygons.fresh.size(), row.fresh);
        EXPECT_EQ(polygons.gone, row.gone);
        EXPECT_EQ(after.names[0], "a");
        EXPECT_EQ(after.objects[0].scaling.x, 2);
        for (std::uint32_t p = 0; p < after.meshes[0].polygonCount; ++p) {
            const std::uint32_t was = after.attributes[p].color;
            EXPECT_EQ(after.gouraud[p].color[3], 4);
            const auto& corner = after.polygons[p].corner;
            EXPECT_EQ(after.vertices[corner[0]].x,
                      before.vertices[before.polygons[was].corner[0]].x);
            EXPECT_EQ(after.vertices[corner[2]].y,
                      before.vertices[before.polygons[was].corner[2]].y);
        }
    }
}

TEST(KeepAttributes, FacesOfAMirroredObjectStayTurnedOutwards)
{
    Model before, imported, after;
    import(before, "o a\nv 0 0 0\nv -2 0 0\nv -2 2 0\nv 0 2 0\nf 1 4 3 2\n");
    before.names[0] = " a#" + std::string(200, 'b'); // comes back as "a_bb..."
    before.objects[0].scaling = {-1, 1, 1};
    std::vector<ExportedFile> files;
    ASSERT_EQ(writeObj(files, before, nullptr, "a"), Message::none);
    const auto* text = reinterpret_cast<const char*>(files[0].bytes.data());
    import(imported, std::string(text, files[0].bytes.size()) +
                         "v 2 0 0 1 0 0\nv 4 0 0\nv 4 2 0\nv 2 2 0\nf -4 -3 -2 -1\n");
    ASSERT_EQ(createModelStore(after), Message::none);
    KeptPolygons polygons;
    Reason reason;
    ASSERT_EQ(keepAttributes(after, before, imported, polygons, reason), Message::none);
    EXPECT_EQ(polygons.kept, 1u);
    for (std::uint32_t p = 0; p < 2; ++p) {
        EXPECT_EQ(imported.polygons[p].normal.z, -1); // towards who looks forward
        EXPECT_EQ(after.polygons[p].normal.z, -1);
    }
    for (std::size_t k = 0; k < 4; ++k) // each corner has kept its colour
        EXPECT_EQ(after.gouraud[1].color[k] != 0xC210,
                  after.vertices[after.polygons[1].corner[k]].x == -2 &&
                      after.vertices[after.polygons[1].corner[k]].y == 0);
}

} // namespace
} // namespace facetor
