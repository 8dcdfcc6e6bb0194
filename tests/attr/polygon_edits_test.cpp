#include "attr/polygon_edits.h"

#include "document/model_edit.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

namespace facetor {

namespace {

/// The cube of the start, some of its polygons picked.
std::unique_ptr<Model> cubeWithPicked(std::initializer_list<std::size_t> polygons)
{
    auto model = std::make_unique<Model>();
    EXPECT_EQ(createModelStore(*model), Message::none);
    for (const std::size_t i : polygons) model->attributes[i].flags |= picked;
    return model;
}

using Corners = std::array<std::uint16_t, 4>;

TEST(PolygonEdits, CornersOfPickedPolygonsTurnAndNothingElseChanges)
{
    struct Case {
        CornerTurn turn;
        PickedAfter after;
        Corners corners; ///< of polygon 1, which begins as 1, 5, 6, 2
        std::uint32_t mark;
    };
    for (const Case& c : {Case{CornerTurn::clockwise, PickedAfter::keep, {5, 6, 2, 1}, picked},
                          Case{CornerTurn::counterClockwise, PickedAfter::clear, {2, 1, 5, 6}, 0},
                          Case{CornerTurn::halfTurn, PickedAfter::keep, {6, 2, 1, 5}, picked}}) {
        SCOPED_TRACE(static_cast<int>(c.turn));
        const auto model = cubeWithPicked({1}), before = cubeWithPicked({1});
        rotateVertices(*model, c.turn, c.after);
        EXPECT_EQ(model->polygons[1].corner, c.corners);
        EXPECT_EQ(model->attributes[1].flags, (before->attributes[1].flags & ~picked) | c.mark);
        model->polygons[1].corner = before->polygons[1].corner;
        EXPECT_EQ(std::memcmp(model->polygons.data(), before->polygons.data(), 6 * sizeof(Polygon)),
                  0);
    }
}

TEST(PolygonEdits, InvertingTurnsFacesAndTheNormalsOfTheirVerticesOnceEach)
{
    const auto model = cubeWithPicked({0, 1}), before = cubeWithPicked({0, 1});
    invertSurface(*model, PickedAfter::keep);
    EXPECT_EQ(model->polygons[0].corner, (Corners{1, 0, 3, 2}));
    EXPECT_EQ(model->polygons[1].corner, (Corners{5, 1, 2, 6}));
    EXPECT_EQ(model->polygons[2].corner, before->polygons[2].corner);
    EXPECT_EQ(model->polygons[1].normal.x, -1);
    EXPECT_EQ(model->attributes[0].flags, before->attributes[0].flags | flipHorizontal);
    EXPECT_EQ(model->attributes[2].flags, before->attributes[2].flags);
    // Vertices 4 and 7 are of neither polygon; 1 and 2 are of both.
    for (std::size_t k = 0; k < 8; ++k)
        EXPECT_EQ(model->vertexNormals[k].x,
                  (k == 4 || k == 7 ? 1 : -1) * before->vertexNormals[k].x)
            << k;
    invertSurface(*model, PickedAfter::clear);
    EXPECT_EQ(std::memcmp(model->polygons.data(), before->polygons.data(), 6 * sizeof(Polygon)), 0);
    EXPECT_EQ(std::memcmp(model->vertexNormals.data(), before->vertexNormals.data(), 96), 0);
    EXPECT_EQ(model->attributes[0].flags, before->attributes[0].flags & ~picked);
}

TEST(PolygonEdits, GouraudTablesAreTheLightOfTheCornersUnderTheCamera)
{
    const auto model = cubeWithPicked({});
    for (std::size_t i = 0; i < 6; ++i) model->attributes[i].flags |= gouraudShading;
    model->attributes[1].flags |= flipHorizontal;
    model->attributes[2].flags &= ~std::uint32_t{useLight};
    model->objects[0].rotation = {0, 16384, 0}; // a quarter turn: z goes where x was
    model->objects[0].scaling = {1, 3, 1};
    MatrixStack stack;
    ASSERT_TRUE(initialiseStack(stack));
    translate(stack, 0, 0, 700); // moves points, not normals
    const Matrix camera = stack.current();
    Light light{.direction = {0, 1, 0}, .offset = {0, 20, 0}, .minimum = {0, 5, 12}};
    buildGouraudTable(*model, stack, light);
    EXPECT_EQ(std::memcmp(&stack.current(), &camera, sizeof camera), 0);

    // A corner's normal (1, 3, 1)/sqrt(11): its y is 0.9045, times -16 is -14.47. Up: 20 - 14 = 6,
    // down 34, at most 31. Green is 20 less and at least 5, blue at least 12.
    const Rgb555 up = opaqueBit | rgb555(6, 5, 12), down = opaqueBit | rgb555(31, 11, 31);
    using Colours = std::array<Rgb555, 4>;
    EXPECT_EQ(model->gouraud[0].color, (Colours{down, down, up, up}));
    EXPECT_EQ(model->gouraud[1].color, (Colours{up, up, down, down})) << "flipped: the other side";
    EXPECT_EQ(model->gouraud[2].color, (Colours{0xC210, 0xC210, 0xC210, 0xC210})) << "has a table";
    EXPECT_EQ(model->attributes[0].flags, polygonFace | gouraudShading);

    light.direction = {0, 0, 2}; // brighter than any: the level ends at 16, the darkest at 4
    model->objects[0].rotation = {};
    model->objects[0].scaling = {1, 1, 1};
    model->objects[0].matrix.element[10] = -1; // does not count
    model->attributes[0].flags |= useLight;
    light.offset = light.minimum = {};
    buildGouraudTable(*model, stack, light);
    EXPECT_EQ(model->gouraud[0].color[0], opaqueBit | rgb555(31, 31, 31));
    light.direction.z = -2;
    model->attributes[0].flags |= useLight;
    buildGouraudTable(*model, stack, light);
    EXPECT_EQ(model->gouraud[0].color[0], opaqueBit | rgb555(4, 4, 4));
}

} // namespace

} // namespace facetor
