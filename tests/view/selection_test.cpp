#include "view/selection.h"

#include "view/view.h"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <string_view>

namespace facetor {

namespace {

/// Two objects of squares that face the camera in parallel projection, so that model units are
/// pixels from (320, 240). Object 0: polygon 0 (far, 100 wide) and 1 (near, 20 wide) about the
/// centre; object 1: polygon 2 to the right at 200, and polygon 3 beside it sharing the edge x 220.
struct Picture {
    Model model;
    Engine engine;
    View view;
    RubberBand band;

    Picture()
    {
        EXPECT_EQ(createModelStore(model), Message::none);
        EXPECT_EQ(startEngine(engine), Message::none);
        model.objectCount = 2;
        model.objects[1] = model.objects[0];
        model.objects[0].next = 1;
        model.objects[1].mesh = 1;
        addSquare(0, 900, 50);
        addSquare(0, 700, 10);
        addSquare(200, 800, 20);
        addSquare(240, 800, 20);
        model.meshes[0] = {0, 8, 0, 2, 0, 0};
        model.meshes[1] = {0, 16, 2, 2, 2, 0};
        model.totalVertexCount = 16;
        model.totalPolygonCount = 4;
        view.perspective = false;
        listFrame(view, engine, model, {640, 480});
        sortPolygons(engine);
    }

    void addSquare(float x, float z, float half)
    {
        Polygon& polygon = model.polygons[polygonCount];
        polygon.normal = {0, 0, -1};
        const std::array<std::array<float, 2>, 4> corners{{{-1, -1}, {1, -1}, {1, 1}, {-1, 1}}};
        for (std::size_t i = 0; i < 4; ++i) {
            model.vertices[vertexCount] = {x + corners[i][0] * half, corners[i][1] * half, z};
            polygon.corner[i] = static_cast<std::uint16_t>(vertexCount++);
        }
        model.attributes[polygonCount] = {0, sortCentre, 0, 0, polygonFace, polygonCount};
        ++polygonCount;
    }

    std::optional<std::uint32_t> pick(ScreenPoint at, bool held, const char* keys = "")
    {
        const auto has = [&](char key) {
            return std::string_view(keys).find(key) != std::string_view::npos;
        };
        return pickPolygons(model, engine, band, {at, held, has('s'), has('c'), has('t')});
    }

    /// The numbers of the marked polygons, as digits.
    std::string marked() const
    {
        std::string result;
        for (std::uint32_t i = 0; i < 4; ++i)
            if ((model.attributes[i].flags & picked) != 0) result += std::to_string(i);
        return result;
    }

    std::uint32_t vertexCount = 0, polygonCount = 0;
};

} // namespace

TEST(Selection, AClickMarksTheNearestAndWithTabTheOneBehind)
{
    struct Case {
        const char* reason;
        ScreenPoint at;
        const char* keys;
        const char* marked;
        bool opensBand;
    };
    const Case cases[] = {
        {"the nearer of two", {320, 240}, "", "1", false},
        {"Tab: the farther of two", {320, 240}, "t", "0", false},
        {"Tab and Shift: still one polygon", {320, 240}, "ts", "0", false},
        {"Shift: its whole object", {320, 240}, "s", "01", false},
        {"Tab over a single one: a rubber band", {520, 240}, "t", "", true},
        {"beside all", {600, 400}, "", "", true},
        {"the left and top edges belong to a polygon", {270, 190}, "", "0", false},
        {"the right edge does not", {370, 240}, "", "", true},
        {"a shared edge belongs to one", {540, 240}, "", "3", false},
    };
    for (const Case& c : cases) {
        Picture picture;
        const auto hit = picture.pick(c.at, true, c.keys);
        EXPECT_EQ(picture.marked(), c.marked) << c.reason;
        EXPECT_EQ(picture.band.open, c.opensBand) << c.reason;
        EXPECT_EQ(hit.has_value(), !c.opensBand) << c.reason;
    }
}

TEST(Selection, TheRubberBandTakesWhatLiesWithinItWhole)
{
    struct Case {
        const char* reason;
        ScreenPoint from, to;
        const char* keys; ///< on release
        const char* marked;
    };
    const Case cases[] = {
        {"corners on its sides are within", {270 - 1, 190 - 1}, {370, 290}, "", "01"},
        {"one pixel short", {269, 189}, {369, 290}, "", "1"},
        {"drawn up from the other corner", {600, 300}, {499, 200}, "", "23"},
        {"Shift: whole objects", {450, 200}, {545, 300}, "s", "23"},
        {"without Shift one of the two", {450, 200}, {545, 300}, "", "2"},
    };
    for (const Case& c : cases) {
        Picture picture;
        (void)picture.pick(c.from, true);
        ASSERT_TRUE(picture.band.open) << c.reason;
        (void)picture.pick(c.to, true);
        EXPECT_LE(picture.band.rectangle.left, picture.band.rectangle.right);
        EXPECT_EQ(picture.marked(), "") << c.reason;
        (void)picture.pick(c.to, false, c.keys);
        EXPECT_EQ(picture.marked(), c.marked) << c.reason;
        EXPECT_FALSE(picture.band.open);
        selectAll(picture.model, Mark::set);
        (void)picture.pick({600, 400}, true);
        (void)picture.pick({400, 0}, true);
        (void)picture.pick({400, 0}, false, "c");
        EXPECT_EQ(picture.marked(), "01") << "what lies within was cleared";
    }
}

TEST(Selection, WithoutAMouseTheNextListedPolygonIsMarked)
{
    struct Case {
        const char* before;
        Neighbour neighbour;
        bool keepMarks;
        const char* marked;
    };
    constexpr auto next = Neighbour::next, previous = Neighbour::previous;
    const Case cases[] = {
        {"", next, false, "0"},       {"", previous, false, "3"}, {"0", next, false, "2"},
        {"2", next, true, "23"},      {"23", next, false, "0"},   {"23", previous, true, "023"},
        {"0", previous, true, "03"},  {"1", next, false, "2"},    {"1", previous, false, "0"},
        {"0123", next, true, "0123"},
    };
    for (const Case& c : cases) {
        Picture picture;
        for (const char digit : std::string_view(c.before))
            picture.model.attributes[static_cast<std::size_t>(digit - '0')].flags |= picked;
        picture.model.polygons[1].normal = {0, 0, 1}; // looks away, so it is not listed
        listFrame(picture.view, picture.engine, picture.model, {640, 480});
        const auto polygon = pickNeighbour(picture.model, picture.engine, c.neighbour, c.keepMarks);
        EXPECT_EQ(picture.marked(), c.marked) << c.before << int(c.neighbour);
        ASSERT_TRUE(polygon);
        EXPECT_NE(picture.model.attributes[*polygon].flags & picked, 0u);
    }
    Picture empty;
    empty.engine.entryCount = 0;
    selectAll(empty.model, Mark::set);
    EXPECT_FALSE(pickNeighbour(empty.model, empty.engine, next, false));
    EXPECT_EQ(empty.marked(), "0123");
}

TEST(Selection, SelectMaterialComparesWhatTheOtherPolygonShows)
{
    // Polygon 1 is marked, textured with 5, and its colour field holds 0x1234.
    Picture picture;
    PageArray<PolygonAttribute>& attributes = picture.model.attributes;
    attributes[0] = {0, 0, 5, 0x7777, textureMap, 0}; // the same texture
    attributes[1] = {0, 0, 5, 0x1234, textureMap | picked, 1};
    attributes[2] = {0, 0, 5, 0x9234, polygonFace, 2}; // untextured, the same colour
    attributes[3] = {0, 0, 6, 0x1234, textureMap, 3};  // another texture
    ASSERT_EQ(selectMaterial(picture.model, Mark::set), Message::none);
    EXPECT_EQ(picture.marked(), "012");
    ASSERT_EQ(selectMaterial(picture.model, Mark::clear), Message::none);
    EXPECT_EQ(picture.marked(), "");
}

} // namespace facetor
