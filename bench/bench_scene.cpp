#include "bench_scene.h"

#include "engine/pixel_operation.h"
#include "model/model_file.h"
#include "texture/texture_file.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <numbers>
#include <random>

namespace facetor::bench {

namespace {

constexpr std::uint16_t textureSize = 64, textureCount = 32;
constexpr float cameraDistance = 700.0f;

std::unique_ptr<Scene> makeScene()
{
    auto scene = std::make_unique<Scene>();
    if (createModelStore(scene->model) != Message::none ||
        startEngine(scene->engine) != Message::none) {
        std::fputs("memory is short\n", stderr);
        std::exit(1);
    }
    startView(scene->view, scene->engine);
    return scene;
}

/// Checkers of two tones with some noise; round holes of 8 texels' radius in every second texture.
void giveTextures(Scene& scene)
{
    constexpr std::size_t size = std::size_t{textureSize} * textureSize;
    std::minstd_rand random(7);
    const auto between = [&](int low, int high) {
        return low + static_cast<int>(random() % static_cast<unsigned>(high - low + 1));
    };
    scene.texels.resize(size * textureCount);
    for (std::uint16_t n = 0; n < textureCount; ++n) {
        Rgb555* const texels = scene.texels.data() + n * size;
        const std::array<int, 3> base{between(4, 31), between(4, 31), between(4, 31)};
        for (int y = 0; y < textureSize; ++y)
            for (int x = 0; x < textureSize; ++x) {
                const int shade = ((x / 8 + y / 8) & 1) != 0 ? 3 : -3;
                const auto tone = [&](int component) {
                    return std::clamp(component + shade + between(-1, 1), 0, 31);
                };
                const int fromHoleX = x % 32 - 16, fromHoleY = y % 32 - 16;
                const bool hole = n % 2 == 1 && fromHoleX * fromHoleX + fromHoleY * fromHoleY < 64;
                texels[y * textureSize + x] = static_cast<Rgb555>(
                    rgb555(tone(base[0]), tone(base[1]), tone(base[2])) | (hole ? 0 : opaqueBit));
            }
        scene.textures.push_back({textureSize, textureSize, texels});
    }
    scene.engine.settings.textures = scene.textures;
}

/// Adds vertices and polygons to a scene by their places on the screen.
class Builder {
public:
    explicit Builder(Scene& scene) : scene_(scene) {}

    float unit() { return static_cast<float>(random_() % 65536) / 65536; }
    int between(int low, int high)
    {
        return low + static_cast<int>(random_() % static_cast<unsigned>(high - low + 1));
    }

    /// A vertex that is seen at a place, `depth` behind the camera's plane at 700.
    std::uint16_t addVertex(float x, float y, float depth)
    {
        const float z = cameraDistance + depth;
        const float scale = z / scene_.engine.settings.focalLength;
        const ScreenPoint centre = scene_.engine.settings.centre;
        scene_.model.vertices[vertices_] = {(x - static_cast<float>(centre.x)) * scale,
                                            (y - static_cast<float>(centre.y)) * scale, depth};
        return static_cast<std::uint16_t>(vertices_++);
    }

    void addPolygon(const std::array<std::uint16_t, 4>& corner, std::uint32_t flags)
    {
        Model& model = scene_.model;
        Polygon& polygon = model.polygons[polygons_];
        polygon.corner = corner;
        polygon.normal = normalised({unit() - 0.5f, unit() - 0.5f, -2.0f});
        model.attributes[polygons_] = {0,
                                       sortCentre,
                                       static_cast<std::uint16_t>(between(0, textureCount - 1)),
                                       static_cast<Rgb555>(random_() & 0x7FFF),
                                       flags,
                                       polygons_};
        for (Rgb555& colour : model.gouraud[polygons_].color)
            colour = static_cast<Rgb555>(random_() & 0x7FFF);
        ++polygons_;
    }

    /// A rectangle of the given sides in pixels, turned at random, its corners jittered.
    void addFree(float width, float height, std::uint32_t flags)
    {
        constexpr float turn = 2 * std::numbers::pi_v<float>;
        const float angle = unit() * turn, c = std::cos(angle), s = std::sin(angle);
        const float jitter = 0.1f * std::min(width, height);
        const float reach = 0.5f * std::sqrt(width * width + height * height) + jitter + 1;
        const float x = reach + unit() * (static_cast<float>(scene_.client.width) - 2 * reach);
        const float y = reach + unit() * (static_cast<float>(scene_.client.height) - 2 * reach);
        const float depth = unit() * 100 - 50;
        std::array<std::uint16_t, 4> corner;
        for (std::size_t i = 0; i < 4; ++i) {
            const float across =
                (i == 1 || i == 2 ? 0.5f : -0.5f) * width + jitter * (unit() - 0.5f);
            const float down = (i >= 2 ? 0.5f : -0.5f) * height + jitter * (unit() - 0.5f);
            corner[i] =
                addVertex(x + across * c - down * s, y + across * s + down * c, depth + unit() * 2);
        }
        addPolygon(corner, flags);
    }

    void finish()
    {
        Model& model = scene_.model;
        for (std::uint32_t i = 0; i < vertices_; ++i)
            model.vertexNormals[i] = normalised({unit() - 0.5f, unit() - 0.5f, -1.0f});
        model.meshes[0] = {0, vertices_, 0, polygons_, 0, 0};
        model.totalVertexCount = vertices_;
        model.totalPolygonCount = polygons_;
        buildViewMatrix(scene_.view, scene_.engine, ViewDirectionUse::ignore);
    }

private:
    Scene& scene_;
    std::minstd_rand random_{3};
    std::uint32_t vertices_ = 0, polygons_ = 0;
};

} // namespace

std::unique_ptr<Scene> makeSmallScene(std::uint32_t flags)
{
    auto scene = makeScene();
    giveTextures(*scene);
    Builder builder(*scene);
    constexpr int side = 64;
    for (int row = 0; row < side; ++row)
        for (int column = 0; column < side; ++column) // neighbours lie apart in the drawing order
            builder.addVertex(static_cast<float>(82 + column * 15 / 2 + builder.between(-1, 1)),
                              static_cast<float>(18 + row * 7 + builder.between(-1, 1)),
                              40 * builder.unit() - 20);
    const auto add = [&](int column, int row, int across) {
        const auto at = [&](int c, int r) { return static_cast<std::uint16_t>(r * side + c); };
        builder.addPolygon({at(column, row), at(column + across, row), at(column + across, row + 1),
                            at(column, row + 1)},
                           flags);
    };
    for (int row = 0; row + 1 < side; ++row)
        for (int column = 0; column + 1 < side; ++column) add(column, row, 1);
    constexpr int cells = (side - 1) * (side - 1);
    constexpr int wide = static_cast<int>(polygonCapacity) - cells;
    for (int n = 0; n < wide; ++n) add(n * 37 % (side - 2), n * (side - 2) / wide, 2);
    builder.finish();
    return scene;
}

std::unique_ptr<Scene> makeLargeScene(std::uint32_t flags)
{
    auto scene = makeScene();
    giveTextures(*scene);
    Builder builder(*scene);
    for (int n = 0; n < 64; ++n) {
        const float width = 120 + builder.unit() * 80;
        builder.addFree(width, 20000 / width, flags);
    }
    builder.finish();
    return scene;
}

std::unique_ptr<Scene> makeMixedScene()
{
    constexpr std::array<std::uint32_t, 4> kinds{polygonFace, polygonFace | gouraudShading,
                                                 textureMap, textureMap | useLight};
    auto scene = makeScene();
    giveTextures(*scene);
    Builder builder(*scene);
    for (int n = 0; n < 1024; ++n) {
        const float side = 6 * std::pow(15.0f, builder.unit());
        const float aspect = 0.7f + builder.unit() * 0.6f;
        const std::uint32_t kind = kinds[static_cast<std::size_t>(builder.between(0, 3))];
        builder.addFree(side * aspect, side / aspect,
                        kind | (builder.between(0, 1) == 1 ? translucentMode : 0u));
    }
    builder.finish();
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
        const RowRange rows = findQuadSpans<fastestFillPath>(
            ends, toSurfaceRows(entry.point, surface.height), surface.height);
        for (std::int32_t row = rows.first; row <= rows.last; ++row) {
            const std::int32_t left = std::max<std::int32_t>(ends.left[row], 0);
            const std::int32_t right = std::min<std::int32_t>(ends.right[row], surface.width - 1);
            if (left <= right)
                spans.push_back({static_cast<std::uint32_t>(row * surface.width + left),
                                 right - left + 1, entry.attribute});
        }
    }
    return spans;
}

} // namespace facetor::bench
