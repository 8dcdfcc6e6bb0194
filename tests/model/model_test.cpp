#include "model/model.h"

#include <gtest/gtest.h>

#include <cmath>

namespace facetor {
namespace {

void expectEqual(const Vector3& a, const Vector3& b)
{
    EXPECT_FLOAT_EQ(a.x, b.x);
    EXPECT_FLOAT_EQ(a.y, b.y);
    EXPECT_FLOAT_EQ(a.z, b.z);
}

class ModelTest : public testing::Test {
protected:
    void SetUp() override { ASSERT_EQ(createModelStore(model), Message::none); }

    /// Makes `count` empty objects without links.
    void makeObjects(std::uint32_t count)
    {
        model.objectCount = count;
        for (std::uint32_t i = 0; i < count; ++i) {
            model.objects[i] = model.objects[0];
            model.objects[i].mesh = i;
            model.objects[i].child = model.objects[i].next = noObject;
            model.meshes[i] = {};
        }
        model.totalVertexCount = model.totalPolygonCount = 0;
    }

    Model model;
};

TEST(FaceNormal, TakesTheEdgeToCornerTwoForOneWithoutLength)
{
    const Vertex vertices[] = {{0, 0, 0}, {1, 0, 0},    {1, 1, 0}, {0, 1, 0},
                               {0, 0, 0}, {-0.0, 0, 0}, {2, 0, 0}};
    struct Row {
        const char* reason;
        std::array<std::uint16_t, 4> corner;
    };
    const Row rows[] = {
        {"a square", {0, 1, 2, 3}},
        {"corners 0 and 1 are one", {0, 0, 2, 3}},
        {"corners 0 and 3 are one", {0, 1, 2, 0}},
        {"corner 1 lies where corner 0 does", {0, 4, 2, 3}},
        {"... and zero counts with either sign", {0, 5, 2, 3}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.reason);
        expectEqual(computeFaceNormal({{}, row.corner}, vertices), {0, 0, -1});
    }
    const std::array<std::uint16_t, 4> withoutArea[] = {{0, 0, 0, 0}, {0, 1, 6, 1}};
    for (const auto& corner : withoutArea)
        EXPECT_FALSE(isFinite(computeFaceNormal({{}, corner}, vertices)));
}

TEST_F(ModelTest, VertexNormalsCountAPolygonOnceHoweverOftenItNamesTheVertex)
{
    // A square in the z plane and a triangle, its corner 0 repeated, in the x plane, sharing 0, 1.
    const Vertex vertices[] = {{0, 0, 0}, {0, 1, 0}, {1, 1, 0}, {1, 0, 0}, {0, 1, 1}, {9, 9, 9}};
    std::copy(std::begin(vertices), std::end(vertices), model.vertices.begin() + 10);
    model.polygons[20] = {{}, {0, 1, 2, 3}};
    model.polygons[21] = {{}, {0, 4, 1, 0}};
    const Mesh mesh{10, 6, 20, 2, 20, 30};
    for (const std::uint32_t i : {20u, 21u})
        model.polygons[i].normal = computeFaceNormal(model.polygons[i], &model.vertices[10]);
    const Vector3 a = model.polygons[20].normal, b = model.polygons[21].normal;
    ASSERT_EQ(dotProduct(a, b), 0.0f);
    computeVertexNormals(model, mesh);
    expectEqual(model.vertexNormals[30], normalised({a.x + b.x, a.y + b.y, a.z + b.z}));
    expectEqual(model.vertexNormals[31], normalised({a.x + b.x, a.y + b.y, a.z + b.z}));
    expectEqual(model.vertexNormals[32], a);
    expectEqual(model.vertexNormals[34], b);
    EXPECT_FALSE(isFinite(model.vertexNormals[35])) << "no polygon names this vertex";
}

TEST_F(ModelTest, OnlyLinksThatReachEachObjectOnceFormAForest)
{
    struct Link {
        std::uint32_t from, child, next;
    };
    struct Row {
        const char* reason;
        std::vector<Link> links;
        bool forest;
    };
    const Row rows[] = {
        {"no links at all", {}, true},
        {"a chain to the last object", {{0, 1, noObject}, {1, noObject, 2}}, true},
        {"object 0 is a child", {{1, 0, noObject}}, true},
        {"an object is its own child", {{1, 1, noObject}}, false},
        {"an object follows itself", {{0, noObject, 0}}, false},
        {"child and sibling are one", {{0, 1, 1}}, false},
        {"two parents have one child", {{0, 2, noObject}, {1, 2, noObject}}, false},
        {"a circle apart from object 0", {{1, 2, noObject}, {2, noObject, 1}}, false},
        {"a circle through object 0", {{0, 1, noObject}, {1, noObject, 0}}, false},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.reason);
        makeObjects(3);
        for (const Link& link : row.links) {
            model.objects[link.from].child = link.child;
            model.objects[link.from].next = link.next;
        }
        std::uint32_t culprit = noObject;
        EXPECT_EQ(linksFormForest(model, culprit), row.forest);
        EXPECT_EQ(isSafeToDraw(model), row.forest);
        if (!row.forest) {
            EXPECT_LT(culprit, model.objectCount);
        }
    }
}

TEST_F(ModelTest, WhateverPointsOutsideItsTableIsNotSafeToDraw)
{
    struct Row {
        const char* reason;
        void (*spoil)(Model&);
    };
    const Row rows[] = {
        {"more objects than the table", [](Model& m) { m.objectCount = 129; }},
        {"a child that does not exist", [](Model& m) { m.objects[0].child = 1; }},
        {"a sibling that does not exist", [](Model& m) { m.objects[0].next = 1; }},
        {"a mesh that does not exist", [](Model& m) { m.objects[0].mesh = 1; }},
        {"a corner beyond the slice", [](Model& m) { m.polygons[5].corner[3] = 8; }},
        {"vertices beyond the pool", [](Model& m) { m.meshes[0].vertexTable = 4089; }},
        {"normals beyond the pool", [](Model& m) { m.meshes[0].vertexNormalTable = 4089; }},
        {"polygons beyond the pool", [](Model& m) { m.meshes[0].polygonTable = 4091; }},
        {"attributes beyond the pool", [](Model& m) { m.meshes[0].attributeTable = 4091; }},
        {"a slice whose end would wrap", [](Model& m) { m.meshes[0].vertexTable = 0xFFFFFFFF; }},
        {"a vertex total that is not the sum", [](Model& m) { m.totalVertexCount = 9; }},
        {"a polygon total that is not the sum", [](Model& m) { m.totalPolygonCount = 5; }},
        {"a Gouraud entry beyond the pool", [](Model& m) { m.attributes[2].gouraud = 4096; }},
    };
    for (const Row& row : rows) {
        ASSERT_EQ(createModelStore(model), Message::none);
        ASSERT_TRUE(isSafeToDraw(model));
        row.spoil(model);
        EXPECT_FALSE(isSafeToDraw(model)) << row.reason;
    }
}

} // namespace
} // namespace facetor
