#include "view/draw_order.h"

#include "view/selection.h"
#include "view/unstable_pairs.h"
#include "view/visible_polygon.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <vector>

namespace facetor {

namespace {

constexpr ClientSize client{640, 480};

/// Squares in parallel projection, so that model units are pixels from (320, 240), by their
/// attributes: 0 a slanted one, 2 before the right half of it by a little, 3 before it by much, 1
/// beside all. The model turns about the slanted one's middle.
struct Scene {
    Model model;
    Engine engine;
    View view;

    Scene()
    {
        EXPECT_EQ(createModelStore(model), Message::none);
        EXPECT_EQ(startEngine(engine), Message::none);
        add(0, 0, 100, 800, 1);
        add(200, 0, 20, 900, 0);
        add(50, 0, 10, 798, 0);
        add(0, 40, 10, 600, 0);
        model.meshes[0] = {0, 16, 0, 4, 0, 0};
        model.totalVertexCount = 16;
        model.totalPolygonCount = 4;
        view.perspective = false;
        view.modelCentre = {0, 0, 800};
    }

    void add(float x, float y, float half, float z, float slope)
    {
        const std::uint32_t number = count++;
        model.polygons[number].normal = {0, 0, -1};
        model.attributes[number] = {0, sortCentre, 0, 0, polygonFace, number};
        const std::array<std::array<float, 2>, 4> corners{{{-1, -1}, {1, -1}, {1, 1}, {-1, 1}}};
        for (std::uint32_t c = 0; c < 4; ++c) {
            const auto [right, down] = corners[c];
            model.vertices[number * 4 + c] = {x + right * half, y + down * half,
                                              z + right * half * slope};
            model.polygons[number].corner[c] = static_cast<std::uint16_t>(number * 4 + c);
        }
    }
    std::vector<OrderedPolygon> order() { return listDrawOrder(view, engine, model, client); }
    std::vector<std::uint32_t> writers(std::int32_t x, std::int32_t y)
    {
        return findWriters(view, engine, model, client, {320 + x, 240 + y});
    }

    std::uint32_t count = 0;
};

using Places = std::vector<std::uint32_t>;

} // namespace

TEST(DrawOrder, ListsWhatWritesAPixelAndWherePickedPolygonsStand)
{
    Scene scene;
    Places attributes;
    for (const OrderedPolygon& polygon : scene.order()) attributes.push_back(polygon.attribute);
    EXPECT_EQ(attributes, (Places{1, 0, 2, 3}));
    scene.model.attributes[3].flags |= meshMode;
    EXPECT_EQ(scene.writers(50, 0), (Places{1, 2}));
    EXPECT_EQ(scene.writers(0, 40), (Places{1})) << "a gap of the mesh";
    EXPECT_EQ(scene.writers(1, 40), (Places{1, 3}));
    EXPECT_EQ(scene.writers(-200, 0), Places{});
    EXPECT_EQ(scene.writers(-321, 0), Places{}) << "beyond the surface";

    const auto order = scene.order();
    EXPECT_EQ(findPicked(order, scene.model, 0), std::nullopt);
    selectOnly(scene.model, Places{1, 3});
    EXPECT_EQ(countPicked(scene.model), 2u);
    for (const auto& [from, place] : {std::pair{0u, 0u}, {1, 3}, {3, 3}, {4, 0}})
        EXPECT_EQ(findPicked(order, scene.model, from), place) << from;
}

TEST(DrawOrder, PairsThatChangePlacesAreToldWithTheRuleThatSettlesThem)
{
    struct Case {
        const char* what;
        float z; ///< of the small square before the slanted one
        std::uint16_t sort;
        std::uint32_t degrees; ///< 0: no pair
        std::vector<SortChange> settledBy;
    };
    // It lies 50 to the right: a degree moves it by 0.87.
    const Case cases[] = {
        {"two units", 798, sortCentre, 3, {{1, sortFarthest}}},
        {"one and a half", 798.5f, sortCentre, 2, {{1, sortFarthest}}},
        {"more than three degrees make of it", 797, sortCentre, 0, {}},
        {"in front by the rule", 798, sortFarthest, 0, {}},
        {"behind by the rule, as it lies", 960, sortFarthest, 0, {}},
    };
    for (const auto& [what, z, sort, degrees, settledBy] : cases) {
        SCOPED_TRACE(what);
        Scene scene;
        scene.model.attributes[0].sort = sort;
        for (std::uint32_t c = 8; c < 12; ++c) scene.model.vertices[c].z = z;
        const auto pairs =
            findUnstablePairs(scene.view, scene.engine, scene.model, client, scene.order());
        ASSERT_EQ(pairs.size(), degrees > 0 ? 1u : 0u);
        if (pairs.empty()) continue;
        EXPECT_EQ(pairs[0].farther, 1u);
        EXPECT_EQ(pairs[0].nearer, 2u);
        EXPECT_EQ(pairs[0].degrees, degrees);
        EXPECT_NEAR(pairs[0].overlap, 400, 0.01);
        EXPECT_EQ(pairs[0].settledBy, settledBy);
        scene.model.attributes[0].sort = sortFarthest;
        EXPECT_TRUE(findUnstablePairs(scene.view, scene.engine, scene.model, client, scene.order())
                        .empty());
    }
}

TEST(DrawOrder, TellsApartTheObjectsThatShowOneMesh)
{
    Scene scene;
    for (std::uint32_t c = 8; c < 12; ++c) scene.model.vertices[c].z = 798;
    Model& model = scene.model;
    model.objects[1] = model.objects[0];
    model.objects[0].next = 1;
    model.objects[1].translation = {0, 0, 500};
    model.objectCount = 2;
    const auto order = scene.order();
    std::vector<std::uint32_t> objects, polygons;
    for (const OrderedPolygon& polygon : order) {
        objects.push_back(polygon.object);
        polygons.push_back(polygon.polygon);
    }
    EXPECT_EQ(objects, (Places{1, 1, 1, 1, 0, 0, 0, 0}));
    EXPECT_EQ(polygons, (Places{1, 0, 2, 3, 1, 0, 2, 3}));
    std::vector<std::array<std::uint32_t, 2>> pairs;
    for (const auto& pair : findUnstablePairs(scene.view, scene.engine, model, client, order))
        pairs.push_back({pair.farther, pair.nearer});
    std::ranges::sort(pairs);
    EXPECT_EQ(pairs, (std::vector<std::array<std::uint32_t, 2>>{{1, 2}, {5, 6}}));
}

TEST(VisiblePolygon, TheViewTurnsToAPolygonThatIsNotSeenAndStaysWhereItIs)
{
    Scene scene;
    ASSERT_EQ(createModelStore(scene.model), Message::none); // the cube
    View view;
    fitModel(view, scene.engine, scene.model, client);
    std::uint32_t turned = 0;
    for (std::uint32_t side = 0; side < 6; ++side) {
        View shown = view;
        bringIntoSight(shown, scene.engine, scene.model, side, client);
        EXPECT_GT(countVisiblePixels(shown, scene.engine, scene.model, side, client), 1000u);
        if (shown.viewMatrix.element != view.viewMatrix.element) ++turned;
    }
    EXPECT_EQ(turned, 5u);
    EXPECT_EQ(countPicked(scene.model), 0u);
}

} // namespace facetor
