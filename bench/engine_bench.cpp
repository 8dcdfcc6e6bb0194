// How fast the engine is, beside two limits measured in the same run: memset of the surface bytes
// that a fill writes, and a bare gather loop (index, load texel, test bit 15, store). The counter
// "ratio" is the time of a benchmark divided by that of the limit that its name ends with.

#include "bench_scene.h"

#include "engine/solid_span.h"
#include "model/polygon_attribute.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <map>
#include <string>

namespace facetor::bench {

namespace {

/// Nanoseconds of one pass, by benchmark name; limits run before what is held against them.
std::map<std::string, double> passTimes;

template <typename Pass>
double timePasses(benchmark::State& state, const std::string& name, Pass pass)
{
    double best = 1e30;
    for (auto _ : state) {
        const auto start = std::chrono::steady_clock::now();
        pass();
        const auto end = std::chrono::steady_clock::now();
        best = std::min(best, std::chrono::duration<double, std::nano>(end - start).count());
    }
    const auto known = passTimes.find(name);
    if (known != passTimes.end()) best = std::min(best, known->second);
    passTimes[name] = best;
    return best;
}

void setRatio(benchmark::State& state, double time, const std::string& limit)
{
    const auto known = passTimes.find(limit);
    if (known != passTimes.end()) state.counters["ratio"] = time / known->second;
}

std::int64_t pixelCount(const std::vector<Span>& spans)
{
    std::int64_t pixels = 0;
    for (const Span& span : spans) pixels += span.count;
    return pixels;
}

using MakeScene = std::unique_ptr<Scene> (*)(std::uint32_t flags);

struct Size {
    const char* name;
    MakeScene make;
};
constexpr Size sizes[] = {{"small", makeSmallScene}, {"large", makeLargeScene}};

struct Fill {
    const char* name;
    std::uint32_t flags;
    const char* limit;
};
constexpr Fill fills[] = {
    {"flat", polygonFace, "spans"},
    {"flat lit", polygonFace | useLight, "spans"},
    {"flat mesh", polygonFace | meshMode, "spans"},
    {"flat shadow", polygonFace | shadowMode, "spans"},
    {"flat translucent", polygonFace | translucentMode, "spans"},
    {"gouraud", polygonFace | gouraudShading, "spans"},
    {"gouraud lit", polygonFace | gouraudShading | useLight, "spans"},
    {"textured", textureMap, "gather"},
    {"textured lit", textureMap | useLight, "gather"},
    {"textured mesh", textureMap | meshMode, "gather"},
    {"textured translucent", textureMap | translucentMode, "gather"},
    {"textured gouraud", textureMap | gouraudShading, "gather"},
};

/// The spans of the scene filled with nothing else to do.
void runSpans(benchmark::State& state, const Size& size)
{
    const auto scene = size.make(polygonFace);
    const std::vector<Span> spans = collectSpans(*scene);
    Rgb555* pixels = scene->engine.surface.pixels();
    const double time = timePasses(state, std::string("spans ") + size.name, [&] {
        Rgb555 colour = 0;
        for (const Span& span : spans) storeSolid(pixels + span.offset, span.count, colour++);
        benchmark::ClobberMemory();
    });
    state.counters["ns/px"] = time / static_cast<double>(pixelCount(spans));
}

void runMemset(benchmark::State& state, const Size& size)
{
    const auto scene = size.make(polygonFace);
    std::int64_t left = pixelCount(collectSpans(*scene));
    const auto surface = static_cast<std::int64_t>(scene->engine.surface.pixelCount());
    Rgb555* pixels = scene->engine.surface.pixels();
    const double time = timePasses(state, std::string("memset ") + size.name, [&] {
        for (std::int64_t rest = left; rest > 0; rest -= surface) {
            std::memset(pixels, 0, static_cast<std::size_t>(std::min(rest, surface)) * 2);
            benchmark::ClobberMemory();
        }
    });
    state.counters["ns/px"] = time / static_cast<double>(left);
}

/// One texel a pixel, its address stepping as for a texture laid over 141 pixels.
void runGather(benchmark::State& state, const Size& size)
{
    const auto scene = size.make(textureMap);
    const std::vector<Span> spans = collectSpans(*scene);
    Rgb555* pixels = scene->engine.surface.pixels();
    const Rgb555* texels = scene->texels.data();
    const std::uint32_t stepU = (64u << 16) / 141, stepV = (64u << 16) / 900;
    const double time = timePasses(state, std::string("gather ") + size.name, [&] {
        std::uint32_t u = 0, v = 0;
        for (const Span& span : spans) {
            Rgb555* to = pixels + span.offset;
            for (std::int32_t i = 0; i < span.count; ++i, u += stepU, v += stepV) {
                const Rgb555 texel = texels[(v >> 16 & 63) * 64 + (u >> 16 & 63)];
                if ((texel & opaqueBit) != 0) to[i] = texel;
            }
        }
        benchmark::ClobberMemory();
    });
    state.counters["ns/px"] = time / static_cast<double>(pixelCount(spans));
}

/// A whole frame of polygons that all are drawn by one filler.
void runFill(benchmark::State& state, const Size& size, const Fill& fill)
{
    const auto scene = size.make(fill.flags);
    const std::vector<Span> spans = collectSpans(*scene);
    const double time =
        timePasses(state, std::string(fill.name) + " " + size.name, [&] { drawFrame(*scene); });
    state.counters["ns/px"] = time / static_cast<double>(pixelCount(spans));
    state.counters["ns/polygon"] = time / static_cast<double>(scene->engine.entryCount);
    const bool small = std::strcmp(size.name, "small") == 0;
    setRatio(state, time, std::string(small ? "spans" : fill.limit) + " " + size.name);
}

void runTransforms(benchmark::State& state)
{
    const auto scene = makeSmallScene(polygonFace);
    MatrixStack& stack = scene->engine.stack;
    const double time = timePasses(state, "matrix", [&] {
        for (int i = 0; i < 100; ++i) {
            pushMatrix(stack);
            multiplyMatrix(stack, toRotationTranslation(identityMatrix));
            translate(stack, 1, 2, 3);
            rotateXYZ(stack, 100 * i, 200, 300);
            scale(stack, 1, 2, 1);
            popMatrix(stack);
        }
        benchmark::ClobberMemory();
    });
    state.counters["ns/object"] = time / 100;
}

int compareEntries(const void* a, const void* b)
{
    const float da = (*static_cast<const PolygonEntry* const*>(a))->depth;
    const float db = (*static_cast<const PolygonEntry* const*>(b))->depth;
    return da > db ? -1 : da < db ? 1 : 0;
}

void runQsort(benchmark::State& state)
{
    const auto scene = makeSmallScene(polygonFace);
    listFrame(scene->view, scene->engine, scene->model, scene->client);
    std::vector<const PolygonEntry*> listed, list;
    for (std::uint32_t i = 0; i < scene->engine.entryCount; ++i)
        listed.push_back(&scene->engine.entries[i]);
    const double time = timePasses(state, "qsort", [&] {
        list = listed;
        std::qsort(list.data(), list.size(), sizeof list[0], compareEntries);
    });
    state.counters["ns/polygon"] = time / static_cast<double>(list.size());
}

void runListing(benchmark::State& state)
{
    const auto scene = makeSmallScene(polygonFace);
    const double time = timePasses(state, "listing", [&] {
        listFrame(scene->view, scene->engine, scene->model, scene->client);
        sortPolygons(scene->engine);
    });
    state.counters["ns/polygon"] = time / static_cast<double>(scene->engine.entryCount);
    setRatio(state, time, "qsort");
}

void runSample(benchmark::State& state, const std::string& name)
{
    const auto scene =
        makeSampleScene(("samples/" + name + ".mx3").c_str(), ("samples/" + name + ".mxt").c_str());
    if (!scene) {
        state.SkipWithError("run this from the repository's root: samples/ is missing");
        return;
    }
    timePasses(state, name, [&] { drawFrame(*scene); });
    state.counters["polygons"] = scene->engine.entryCount;
}

void registerAll()
{
    for (const Size& size : sizes) {
        const std::string suffix = std::string("/") + size.name;
        benchmark::RegisterBenchmark(("limit/memset" + suffix).c_str(), runMemset, size);
        benchmark::RegisterBenchmark(("limit/spans" + suffix).c_str(), runSpans, size);
        benchmark::RegisterBenchmark(("limit/gather" + suffix).c_str(), runGather, size);
        for (const Fill& fill : fills)
            benchmark::RegisterBenchmark(("frame/" + std::string(fill.name) + suffix).c_str(),
                                         runFill, size, fill);
    }
    benchmark::RegisterBenchmark("matrix/object placed", runTransforms);
    benchmark::RegisterBenchmark("limit/qsort", runQsort);
    benchmark::RegisterBenchmark("list/transform, tests, sort", runListing);
    for (const char* name : {"ship", "prop", "max"})
        benchmark::RegisterBenchmark((std::string("sample/") + name).c_str(), runSample,
                                     std::string(name));
}

} // namespace

} // namespace facetor::bench

int main(int argc, char** argv)
{
    facetor::bench::registerAll();
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
