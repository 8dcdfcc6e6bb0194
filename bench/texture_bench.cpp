// How long edits of a full texture list take, and the pictures of its window: 4096 textures of
// 64 x 64 texels, and 4096 polygons sliced into such textures. Run from the repository's root.

#include "bench_scene.h"
#include "document/texture_edits.h"
#include "image/image_surface.h"
#include "session/texture_grid.h"
#include "slice/slice.h"
#include "view/selection.h"

#include <benchmark/benchmark.h>

namespace facetor::bench {

namespace {

constexpr std::uint16_t side = 64;

bool fill(TextureList& list)
{
    if (list.create() != Message::none) return false;
    for (std::uint32_t slot = 0; slot < textureSlotCount; ++slot) {
        Texels pixels;
        if (!pixels.allocate(side * side)) return false;
        for (std::uint32_t i = 0; i < side * side; ++i)
            pixels[i] = static_cast<Rgb555>(opaqueBit | (slot * 77 + i));
        list.set(slot, side, side, std::move(pixels));
    }
    return true;
}

/// Runs `edit(list, undo, target)` on an extent of the whole list.
template <typename Edit> void runOnAll(benchmark::State& state, const Edit& edit)
{
    TextureList list;
    if (!fill(list)) return state.SkipWithError("out of memory");
    UndoSlot undo;
    for (auto _ : state) {
        const EditOutcome outcome = edit(list, undo, TransformTarget{0, true, {0, 4095}});
        if (outcome.edit != Message::none) return state.SkipWithError("the edit failed");
    }
}

void flipAll(benchmark::State& state)
{
    runOnAll(state, [](TextureList& list, UndoSlot& undo, const TransformTarget& target) {
        return flipTextures(list, undo, target, {true, true});
    });
}

void turnAll(benchmark::State& state)
{
    runOnAll(state, [](TextureList& list, UndoSlot& undo, const TransformTarget& target) {
        return turnTextures(list, undo, target, TextureTurn::clockwise);
    });
}

void scaleAll(benchmark::State& state)
{
    runOnAll(state, [](TextureList& list, UndoSlot& undo, const TransformTarget& target) {
        return scaleTextures(list, undo, target, side, side, Sampling::smooth);
    });
}

/// The pictures of a texture list window that fills a screen, one slot further in each round.
void showPage(benchmark::State& state)
{
    constexpr GridArea area{30, 1920, 1080};
    TextureList list;
    ImageSurface surface;
    if (!fill(list) || createSurface(surface, 256, 256, 16) != Message::none)
        return state.SkipWithError("out of memory");
    std::int32_t top = 0;
    for (auto _ : state) {
        for (std::int32_t slot = top; const auto cell = cellOf(area, top, slot); ++slot) {
            const TextureSlot& texture = list.slot(static_cast<std::uint32_t>(slot));
            showTexture(surface, texture.pixels, texture.width, texture.height, 0);
            benchmark::DoNotOptimize(fittedInto(*cell, texture.width, texture.height));
        }
        top = (top + 1) % 2048;
    }
}

void sliceAll(benchmark::State& state, Sampling sampling)
{
    const auto scene = makeSampleScene("samples/max.mx3", "samples/max.mxt");
    if (!scene) return state.SkipWithError("run this from the repository's root");
    selectAll(scene->model, Mark::set);
    drawFrame(*scene); // leaves the camera in the engine
    SliceSettings settings;
    settings.sampling = sampling;
    settings.appendix = SliceAppendix::chosen;
    settings.offset = SliceOffset::repeatEdge;
    for (auto _ : state) {
        TextureList list;
        Texels picture;
        if (list.create() != Message::none || !picture.allocate(256 * 256))
            return state.SkipWithError("out of memory");
        list.set(0, 256, 256, std::move(picture));
        if (sliceTextures(list, scene->model, scene->engine.stack, scene->engine.settings, settings,
                          {160, 80, 480, 400}, 0) != Message::none)
            return state.SkipWithError("out of memory");
    }
    state.counters["polygons"] = scene->model.totalPolygonCount;
}

BENCHMARK(flipAll)->Name("textures/flip 4096")->Unit(benchmark::kMillisecond);
BENCHMARK(turnAll)->Name("textures/turn 4096")->Unit(benchmark::kMillisecond);
BENCHMARK(scaleAll)->Name("textures/scale 4096, smooth")->Unit(benchmark::kMillisecond);
BENCHMARK(showPage)->Name("textures/pictures of a window")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(sliceAll, nearest, Sampling::nearest)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(sliceAll, smooth, Sampling::smooth)->Unit(benchmark::kMillisecond);

} // namespace

} // namespace facetor::bench

BENCHMARK_MAIN();
