// Whole frames beside two others, in microseconds: the plain path, which fills one pixel after the
// other, and the limit, which only stores the same pixels from spans, colours and texel numbers
// known beforehand. Run from the repository's root for the samples.

#include "bench_scene.h"

#include "engine/gouraud_steps.h"
#include "engine/pixel_operation.h"
#include "engine/solid_span.h"
#include "model/polygon_attribute.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <functional>
#include <string>

namespace facetor::bench {

namespace {

/// The shortest of many runs, in microseconds, for at least 0.2 s.
double shortest(const std::function<void()>& run)
{
    using Clock = std::chrono::steady_clock;
    double best = 1e30, total = 0;
    while (total < 2e5) {
        const Clock::time_point start = Clock::now();
        run();
        const double time = std::chrono::duration<double, std::micro>(Clock::now() - start).count();
        best = std::min(best, time);
        total += time;
    }
    return best;
}

/// A scene's spans with a texel number for each textured pixel.
class Limit {
public:
    explicit Limit(Scene& scene) : scene_(scene), spans_(collectSpans(scene))
    {
        constexpr std::uint32_t textureTexels = 64 * 64;
        std::uint32_t texel = 0;
        for (const Span& span : spans_) {
            const PolygonAttribute& attribute = scene.model.attributes[span.attribute];
            if ((attribute.flags & textureMap) == 0) continue;
            for (std::int32_t i = 0; i < span.count; ++i)
                numbers_.push_back(attribute.texture * textureTexels +
                                   (texel += i % 8 == 0 ? 65 : 8) % textureTexels);
        }
    }

    void draw()
    {
        clearSurface(scene_.engine.surface, 16);
        const std::uint32_t* number = numbers_.data();
        for (const Span& span : spans_) {
            const PolygonAttribute& attribute = scene_.model.attributes[span.attribute];
            Rgb555* const to = scene_.engine.surface.pixels() + span.offset;
            const bool translucent = (attribute.flags & translucentMode) != 0;
            if ((attribute.flags & textureMap) != 0) {
                if (translucent)
                    fetch<PixelMode::translucent>(to, span.count, number);
                else
                    fetch<PixelMode::replace>(to, span.count, number);
                number += span.count;
            } else if ((attribute.flags & gouraudShading) != 0) {
                if (translucent)
                    shade<PixelMode::translucent>(to, span.count, attribute.color);
                else
                    shade<PixelMode::replace>(to, span.count, attribute.color);
            } else if (translucent) {
                for (std::int32_t i = 0; i < span.count; ++i)
                    to[i] = blended<PixelMode::translucent>(to[i], attribute.color);
            } else {
                storeSolid(to, span.count, attribute.color);
            }
        }
    }

private:
    template <PixelMode mode>
    void fetch(Rgb555* to, std::int32_t count, const std::uint32_t* number) const
    {
        for (std::int32_t i = 0; i < count; ++i) {
            const Rgb555 texel = scene_.texels[number[i]];
            if ((texel & opaqueBit) != 0) to[i] = blended<mode>(to[i], texel);
        }
    }

    /// Three components in fixed point, a step of each a pixel.
    template <PixelMode mode> static void shade(Rgb555* to, std::int32_t count, Rgb555 colour)
    {
        auto red = static_cast<std::uint16_t>(redOf(colour) << 10);
        auto green = static_cast<std::uint16_t>(greenOf(colour) << 10);
        auto blue = static_cast<std::uint16_t>(blueOf(colour) << 10);
        for (std::int32_t i = 0; i < count; ++i) {
            const int mixed = (red & 0x7C00) | (green >> 5 & 0x3E0) | (blue >> 10 & 31);
            to[i] = blended<mode>(to[i], static_cast<Rgb555>(mixed));
            red = static_cast<std::uint16_t>(red + 5);
            green = static_cast<std::uint16_t>(green + 2);
            blue = static_cast<std::uint16_t>(blue - 9);
        }
    }

    Scene& scene_;
    std::vector<Span> spans_;
    std::vector<std::uint32_t> numbers_; ///< of texels, for the textured spans in turn
};

void printRow(const std::string& name, Scene& scene)
{
    EngineSettings& settings = scene.engine.settings;
    settings.fillPath = fastestFillPath;
    const double frame = shortest([&] { drawFrame(scene); });
    settings.fillPath = FillPath::plain;
    const double plain = shortest([&] { drawFrame(scene); });
    if (scene.texels.empty()) { // a sample: its textures are not in one piece
        std::printf("%-24s %8.0f %8.0f %8.2f\n", name.c_str(), frame, plain, plain / frame);
        return;
    }
    Limit limit(scene);
    const double least = shortest([&] { limit.draw(); });
    std::printf("%-24s %8.0f %8.0f %8.2f %8.0f %8.2f\n", name.c_str(), frame, plain, plain / frame,
                least, frame / least);
}

void printTable()
{
    struct Row {
        const char* name;
        bool small;
        std::uint32_t flags;
    };
    constexpr std::array<Row, 8> rows{{
        {"flat, small", true, polygonFace},
        {"textured, small", true, textureMap},
        {"textured, lit, small", true, textureMap | useLight},
        {"Gouraud, small", true, polygonFace | gouraudShading},
        {"textured, large", false, textureMap},
        {"textured, lit, large", false, textureMap | useLight},
        {"Gouraud, large", false, polygonFace | gouraudShading},
        {"flat, large", false, polygonFace},
    }};
    std::printf("%-24s %8s %8s %8s %8s %8s\n", "scene", "frame", "plain", "p/f", "limit", "f/l");
    for (const Row& row : rows) {
        const auto scene = row.small ? makeSmallScene(row.flags) : makeLargeScene(row.flags);
        printRow(row.name, *scene);
    }
    printRow("mix", *makeMixedScene());
    for (const char* name : {"ship", "prop", "max"}) {
        const std::string path = std::string("samples/") + name;
        if (const auto scene = makeSampleScene((path + ".mx3").c_str(), (path + ".mxt").c_str()))
            printRow(path, *scene);
    }
}

} // namespace

} // namespace facetor::bench

int main()
{
    facetor::bench::printTable();
    return 0;
}
