#include "bench_scene.h"

#include "engine/pixel_operation.h"
#include "model/model_file.h"
#include "texture/texture_file.h"

#include <algorithm>
#include <cmath>
#include <random>

namespace facetor::bench {

namespace {

constexpr std::uint16_t textureSize = 64;

std::unique_ptr<Scene> makeScene()
{
    auto scene = std::make_unique<Scene>();
    if (createModelStore(scene->model) != Message::none ||
        startEngine(scene->engine) != Message::none)
        return nullptr;
    startView(scene->view, scene->engine);
    return scene;
}

/// A texture of noise, one texel in sixteen transparent.
void giveTexture(Scene& scene)
{
    std::minstd_rand random(7);
    scene.texels.resize(std::size_t{textureSize} * textureSize);
    for (Rgb555& texel : scene.texels) {
        texel = static_cast<Rgb555>(random() & 0x7FFF);
        if (random() % 16 != 0) texel |= opaqueBit;
    }
    scene.texture = {textureSize, textureSize, scene.texels.data()};
    scene.engine.settings.textures = {&scene.texture, 1};
}

struct Sheet {
    std::uint32_t columns, rows; ///< polygons
    float step;                  ///< edge of a polygon in model units
    float overlap;               ///< distance between polygons in edges
};

/// The sheet's polygons at z = 0, so that at the camera's distance of 700 and the focal length of
/// about 320 a model unit is 0.457 pixels.
void buildSheet(Scene& scene, const Sheet& sheet, std::uint32_t flags)
{
    std::minstd_rand random(3);
    std::uniform_real_distribution<float> jitter(-0.12f, 0.12f);
    Model& model = scene.model;
    const bool shared = sheet.overlap == 1.0f;
    const float spacing = sheet.step * sheet.overlap;
    const auto place = [&](float column, float row) {
        const float x = (column - static_cast<float>(sheet.columns) / 2) * spacing;
        const float y = (row - static_cast<float>(sheet.rows) / 2) * spacing;
        return Vertex{x + jitter(random) * sheet.step, y + jitter(random) * sheet.step,
                      jitter(random) * 20.0f};
    };
    std::uint32_t vertices = 0, polygons = 0;
    const auto addPolygon = [&](std::array<std::uint16_t, 4> corner) {
        Polygon& polygon = model.polygons[polygons];
        polygon.corner = corner;
        polygon.normal = {0, 0, -1};
        PolygonAttribute& attribute = model.attributes[polygons];
        attribute = {0, sortCentre, 0, static_cast<Rgb555>(random() & 0x7FFF), flags, polygons};
        for (Rgb555& colour : model.gouraud[polygons].color)
            colour = static_cast<Rgb555>(random() & 0x7FFF);
        ++polygons;
    };
    if (shared) {
        for (std::uint32_t row = 0; row <= sheet.rows; ++row)
            for (std::uint32_t column = 0; column <= sheet.columns; ++column)
                model.vertices[vertices++] =
                    place(static_cast<float>(column), static_cast<float>(row));
        for (std::uint32_t row = 0; row < sheet.rows; ++row)
            for (std::uint32_t column = 0; column < sheet.columns; ++column) {
                const auto a = static_cast<std::uint16_t>(row * (sheet.columns + 1) + column);
                const auto below = static_cast<std::uint16_t>(a + sheet.columns + 1);
                addPolygon({a, static_cast<std::uint16_t>(a + 1),
                            static_cast<std::uint16_t>(below + 1), below});
            }
    } else {
        for (std::uint32_t row = 0; row < sheet.rows; ++row)
            for (std::uint32_t column = 0; column < sheet.columns; ++column) {
                const Vertex at = place(static_cast<float>(column), static_cast<float>(row));
                const auto a = static_cast<std::uint16_t>(vertices);
                const float step = sheet.step;
                model.vertices[vertices++] = at;
                model.vertices[vertices++] = {at.x + step, at.y, at.z};
                model.vertices[vertices++] = {at.x + step, at.y + step, at.z};
                model.vertices[vertices++] = {at.x, at.y + step, at.z};
                addPolygon({a, static_cast<std::uint16_t>(a + 1), static_cast<std::uint16_t>(a + 2),
                            static_cast<std::uint16_t>(a + 3)});
            }
    }
    for (std::uint32_t i = 0; i < vertices; ++i)
        model.vertexNormals[i] = normalised({jitter(random), jitter(random), -0.2f});
    model.meshes[0] = {0, vertices, 0, polygons, 0, 0};
    model.totalVertexCount = vertices;
    model.totalPolygonCount = polygons;
    model.objects[0].rotation = {0, 0, 1500}; // some eight degrees
    buildViewMatrix(scene.view, scene.engine, ViewDirectionUse::ignore);
}

} // namespace

std::unique_ptr<Scene> makeSmallScene(std::uint32_t flags)
{
    auto scene = makeScene();
    giveTexture(*scene);
    buildSheet(*scene, {71, 55, 17.5f, 1.0f}, flags);
    return scene;
}

std::unique_ptr<Scene> makeLargeScene(std::uint32_t flags)
{
    auto scene = makeScene();
    giveTexture(*scene);
    buildSheet(*scene, {8, 8, 309.0f, 0.25f}, flags);
    return scene;
}

std::unique_ptr<Scene> makeSampleScene(const char* modelPath, const char* texturePath)
{
    auto scene = makeScene();
    static TextureList textures;
    if (textures.slots().empty() && textures.create() != Message::none) return nullptr;
    textures.clearAll();
    if (readModelFile(scene->model, modelPath) != Message::none ||
        readTextureFile(textures, texturePath) != Message::none)
        return nullptr;
    scene->engine.settings.textures = textures.slots();
    fitModel(scene->view, scene->engine, scene->model, scene->client);
    return scene;
}

void drawFrame(Scene& scene)
{
    scene.view.frameNeedsDrawing = true;
    paintFrame(scene.view, scene.engine, scene.model, scene.client);
}

std::vector<Span> collectSpans(Scene& scene)
{
    listFrame(scene.view, scene.engine, scene.model, scene.client);
    sortPolygons(scene.engine);
    const SpanEnds ends = spanEndsOf(scene.engine);
    const FrameSurface& surface = scene.engine.surface;
    std::vector<Span> spans;
    for (std::uint32_t i = 0; i < scene.engine.entryCount; ++i) {
        const PolygonEntry& entry = scene.engine.entries[scene.engine.sortList[i]];
        const RowRange rows =
            findQuadSpans(ends, toSurfaceRows(entry.point, surface.height), surface.height);
        for (std::int32_t row = rows.first; row <= rows.last; ++row) {
            const std::int32_t left = std::max<std::int32_t>(ends.left[row], 0);
            const std::int32_t right = std::min<std::int32_t>(ends.right[row], surface.width - 1);
            if (left <= right)
                spans.push_back(
                    {static_cast<std::uint32_t>(row * surface.width + left), right - left + 1});
        }
    }
    return spans;
}

} // namespace facetor::bench
