#include "island_ground.h"

#include "numbers.h"
#include "shapes.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

namespace facetor::samples {

namespace {

constexpr Rgb555 meadow = rgb555(12, 18, 6);
constexpr Rgb555 rock = rgb555(13, 11, 10);
constexpr Rgb555 pine = rgb555(3, 11, 5);
constexpr Rgb555 leafColours[] = {rgb555(9, 15, 4), rgb555(5, 13, 5), rgb555(6, 12, 3),
                                  rgb555(12, 14, 3), rgb555(4, 11, 5)};

enum class Plant { spruce, bush, pebble, stone, reed };

/// What each kind takes from the pools.
struct PlantSize {
    std::uint32_t vertices, polygons;
};
constexpr PlantSize plantSizes[] = {
    {10, 8}, {6, 8}, {4, 4}, {5, 5}, {4, 1},
};

void addPlant(Part& grove, Plant plant, Point foot, double size)
{
    const auto cone = [&](double y, double radius, double top) {
        addFan(grove, levelRing(foot - Point{0, y, 0}, radius, radius, 4), foot - Point{0, top, 0},
               {0, -1, 0}, smooth(pine));
    };
    const auto ring = [&](int corners) {
        return levelRing(foot + Point{0, 1, 0}, size * 0.3, size * 0.3, corners);
    };
    switch (plant) {
    case Plant::spruce:
        cone(1, size * 0.42, size * 1.1);
        cone(size * 0.6, size * 0.32, size * 1.7);
        break;
    case Plant::bush:
        addCrystal(grove, foot - Point{0, size * 0.4, 0}, size * 0.4, size * 0.8, size * 0.5,
                   smooth(leafColours[grove.vertices.size() % std::size(leafColours)]));
        break;
    case Plant::pebble: {
        const auto& corners = ring(3);
        const std::uint16_t a = grove.add(corners[0]), b = grove.add(corners[1]);
        const std::uint16_t c = grove.add(corners[2]);
        const std::uint16_t top = grove.add(foot - Point{0, size * 0.4, 0});
        for (const auto& face : {std::array{a, top, b}, std::array{b, top, c},
                                 std::array{c, top, a}, std::array{a, b, c}})
            grove.joinTriangle(face, lit(rock));
        break;
    }
    case Plant::stone: {
        const Ring corners = ring(4);
        std::array<std::uint16_t, 4> index;
        for (std::size_t i = 0; i < 4; ++i) index[i] = grove.add(corners[i]);
        const std::uint16_t top = grove.add(foot - Point{0, size * 0.5, 0});
        for (std::size_t i = 0; i < 4; ++i)
            grove.joinTriangle({index[i], top, index[(i + 1) % 4]}, lit(rock));
        grove.join(index, lit(rock));
        break;
    }
    case Plant::reed:
        grove.quad({foot + Point{-1, -6, 0}, foot + Point{1, -6, 0}, foot + Point{2, 1, 0},
                    foot + Point{-2, 1, 0}},
                   lit(meadow).dualSided());
        break;
    }
}

/// Kinds of plants that take exactly that many vertices and polygons; none when it cannot be done.
std::vector<Plant> plantsThatFill(std::uint32_t vertices, std::uint32_t polygons)
{
    std::vector<Plant> plants;
    const auto take = [&](Plant plant) {
        const PlantSize size = plantSizes[static_cast<std::size_t>(plant)];
        vertices -= size.vertices;
        polygons -= size.polygons;
        plants.push_back(plant);
    };
    while (vertices > 120 && polygons > 120)
        take(vertices >= polygons ? Plant::spruce : Plant::bush);
    // What is left is small enough to try everything.
    for (std::uint32_t spruces = 0; spruces <= 12; ++spruces)
        for (std::uint32_t bushes = 0; bushes <= 20; ++bushes)
            for (std::uint32_t reeds = 0; reeds <= 12; ++reeds)
                for (std::uint32_t stones = 0; stones <= 4; ++stones) {
                    const std::uint32_t v = 10 * spruces + 6 * bushes + 4 * reeds + 5 * stones;
                    const std::uint32_t p = 8 * spruces + 8 * bushes + reeds + 5 * stones;
                    if (v > vertices || p > polygons || vertices - v != polygons - p ||
                        (vertices - v) % 4 != 0)
                        continue;
                    const std::uint32_t pebbles = (vertices - v) / 4;
                    const std::pair<Plant, std::uint32_t> counts[] = {
                        {Plant::spruce, spruces}, {Plant::bush, bushes},    {Plant::reed, reeds},
                        {Plant::stone, stones},   {Plant::pebble, pebbles},
                    };
                    for (const auto& [plant, count] : counts)
                        plants.insert(plants.end(), count, plant);
                    return plants;
                }
    return {};
}

bool isPlantable(double x, double z)
{
    const double fromMiddle = squaredDistance(x, z, {0, 0, 0});
    if (fromMiddle < (cityRadius + 7) * (cityRadius + 7) || fromMiddle > 151.0 * 151) return false;
    if (squaredDistance(x, z, lakeCentre) < 1.6 * lakeRadius * lakeRadius) return false;
    if (squaredDistance(x, z, {136, 0, 40}) < 15 * 15) return false;
    if (x > 40 && z < -40 && -x * 0.688 - z * 0.725 < 20 && -x * 0.688 - z * 0.725 > -20 &&
        x * 0.725 - z * 0.688 > 100)
        return false; // where the water leaves the lake
    const double height = groundHeight(x, z);
    return height < 40 && height + 14 * roughness(x, z, 30, 9) < 34;
}

} // namespace

void addGroves(ModelBuilder& builder)
{
    const std::uint32_t first = builder.objectCount();
    for (std::uint32_t i = first; i < objectCapacity; ++i)
        builder.add("Grove" + std::to_string(i - first + 1), 0);
    const std::uint32_t groves = builder.objectCount() - first;
    const std::vector<Plant> plants = plantsThatFill(vertexCapacity - builder.vertexCount(),
                                                     polygonCapacity - builder.polygonCount());
    struct Place {
        Plant plant;
        double x, z, size;
    };
    std::vector<Place> places;
    std::uint32_t attempt = 0;
    for (const Plant plant : plants) {
        double x = 0, z = 0;
        do {
            x = (2 * scatteredUnit(++attempt, 41) - 1) * islandRadius;
            z = (2 * scatteredUnit(attempt, 42) - 1) * islandRadius;
        } while (!isPlantable(x, z));
        places.push_back({plant, x, z, 8 + 6 * scatteredUnit(attempt, 43)});
    }
    // A grove is a sector of the island: the places in the order of their directions, in parts of
    // the same number, so that none is empty.
    std::stable_sort(places.begin(), places.end(), [](const Place& a, const Place& b) {
        const bool aFront = a.z < 0, bFront = b.z < 0;
        return aFront != bFront ? aFront : a.x * b.z - b.x * a.z > 0;
    });
    for (std::size_t i = 0; i < places.size(); ++i) {
        const Place& place = places[i];
        const auto grove = static_cast<std::uint32_t>(i * groves / places.size());
        addPlant(builder.part(first + grove), place.plant, onGround(place.x, place.z), place.size);
    }
}

} // namespace facetor::samples
