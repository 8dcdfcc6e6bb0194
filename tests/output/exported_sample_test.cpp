#include "output/exported_sample.h"

#include "attr/attribute_packing.h"
#include "attr/gouraud_count.h"
#include "model/model_file.h"

#include <gtest/gtest.h>

#include <memory>

namespace facetor {

namespace {

/// Half of the last decimal that is written, and a little for the reading.
constexpr double tolerance = 0.000051;

void expectSame(const Vector3& expected, const double* actual)
{
    EXPECT_NEAR(expected.x, actual[0], tolerance);
    EXPECT_NEAR(expected.y, actual[1], tolerance);
    EXPECT_NEAR(expected.z, actual[2], tolerance);
}

/// Holds the exported objects against those of the model, counting what it passed by.
struct Comparison {
    const Model& model;
    test::ExportedSample exported;
    std::uint16_t imageLight = firstGouraudTable;
    std::uint16_t imageTable =
        static_cast<std::uint16_t>(firstGouraudTable + countGouraud(model).light);
    std::uint32_t objects = 0, polygons = 0, vertices = 0, light = 0, table = 0;

    void compareGouraud(const PolygonAttribute& attribute, const ATTR& actual)
    {
        const auto& expected = model.gouraud[attribute.gouraud].color;
        std::span<const GOURAUDTBL> tables = exported.lightTables;
        std::size_t row = static_cast<std::size_t>(actual.gouraud) - firstGouraudTable;
        if (isTableGouraud(attribute)) {
            row -= exported.lightTables.size();
            tables = exported.tableTables;
            ++table;
        } else {
            ++light;
        }
        ASSERT_LT(row, tables.size());
        for (std::size_t c = 0; c < 4; ++c) EXPECT_EQ(expected[c] & 0x7FFF, tables[row].color[c]);
    }

    void compareAttribute(const PolygonAttribute& attribute, const ATTR& actual)
    {
        const bool textured = (attribute.flags & textureMap) != 0;
        EXPECT_EQ(actual.plane, attribute.plane & 1);
        EXPECT_EQ(actual.sort, attribute.sort);
        EXPECT_EQ(actual.texture, textured ? attribute.texture : -1);
        EXPECT_EQ(actual.color, attribute.color & 0x7FFF);
        EXPECT_EQ(static_cast<std::uint32_t>(actual.mode), attribute.flags & 0x1F00);
        if ((attribute.flags & gouraudShading) != 0) compareGouraud(attribute, actual);
        const PackedAttribute packed = packAttribute(attribute, imageLight, imageTable);
        EXPECT_EQ(std::to_integer<int>(packed[8]) << 8 | std::to_integer<int>(packed[9]),
                  actual.gouraud)
            << "source and target image name the same table";
    }

    void compareMesh(const Mesh& mesh, const PDATA& data)
    {
        ASSERT_EQ(data.pointCount, mesh.vertexCount);
        ASSERT_EQ(data.polygonCount, mesh.polygonCount);
        for (std::uint32_t i = 0; i < mesh.vertexCount; ++i) {
            expectSame(model.vertices[mesh.vertexTable + i], &data.points[i].x);
            if (data.normals)
                expectSame(model.vertexNormals[mesh.vertexNormalTable + i], &data.normals[i].x);
        }
        for (std::uint32_t i = 0; i < mesh.polygonCount; ++i) {
            const Polygon& polygon = model.polygons[mesh.polygonTable + i];
            expectSame(polygon.normal, data.polygons[i].normal);
            for (std::size_t c = 0; c < 4; ++c)
                EXPECT_EQ(data.polygons[i].vertices[c], polygon.corner[c]);
            compareAttribute(model.attributes[mesh.attributeTable + i], data.attributes[i]);
        }
        vertices += mesh.vertexCount;
        polygons += mesh.polygonCount;
    }

    void compareObject(std::uint32_t index, const OBJECT* actual)
    {
        ASSERT_EQ(index == noObject, actual == nullptr);
        if (!actual) return;
        ++objects;
        const Object& object = model.objects[index];
        expectSame(object.translation, actual->translation);
        expectSame({angleToDegrees(object.rotation[0]), angleToDegrees(object.rotation[1]),
                    angleToDegrees(object.rotation[2])},
                   actual->rotation);
        expectSame(object.scaling, actual->scaling);
        compareMesh(model.meshes[index], *actual->data);
        compareObject(object.child, actual->child);
        compareObject(object.next, actual->next);
    }
};

} // namespace

TEST(ExportedSample, CompilesToTheModelsNumbers)
{
    struct Case {
        const char* path;
        test::ExportedSample (*exported)();
    };
    for (const Case& c : {Case{"samples/ship.mx3", test::exportedShip},
                          Case{"samples/prop.mx3", test::exportedProp},
                          Case{"samples/max.mx3", test::exportedMax}}) {
        SCOPED_TRACE(c.path);
        const auto model = std::make_unique<Model>();
        ASSERT_EQ(createModelStore(*model), Message::none);
        ASSERT_EQ(readModelFile(*model, c.path), Message::none);
        Comparison comparison{*model, c.exported()};
        comparison.compareObject(0, comparison.exported.root);
        EXPECT_EQ(comparison.objects, model->objectCount);
        EXPECT_EQ(comparison.polygons, model->totalPolygonCount);
        EXPECT_EQ(comparison.vertices, model->totalVertexCount);
        EXPECT_EQ(comparison.light, comparison.exported.lightTables.size());
        EXPECT_EQ(comparison.table, comparison.exported.tableTables.size());
    }
}

} // namespace facetor
