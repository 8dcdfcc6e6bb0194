// How long the edits of every polygon of the largest sample take, each with keeping what undo
// needs. A frame of the same model, for scale, is measured by engine_bench. Run from the
// repository's root.

#include "attr/polygon_edits.h"
#include "attr/working_attribute.h"
#include "bench_scene.h"
#include "document/document.h"
#include "model/model_file.h"
#include "texture/texture_file.h"
#include "view/selection.h"

#include <benchmark/benchmark.h>

namespace facetor::bench {

namespace {

/// Runs `edit(scene)` on the sample with everything picked; `kind` is what undo keeps before it.
template <typename Edit> void runEdit(benchmark::State& state, ModelEdit kind, const Edit& edit)
{
    const auto scene = makeSampleScene("samples/max.mx3", "samples/max.mxt");
    if (!scene) return state.SkipWithError("run this from the repository's root");
    selectAll(scene->model, Mark::set);
    drawFrame(*scene); // leaves the camera in the engine
    UndoSlot undo;
    for (auto _ : state) {
        if (rememberModel(undo, scene->model, kind) != Message::none)
            return state.SkipWithError("out of memory");
        edit(*scene);
    }
    state.counters["polygons"] = scene->model.totalPolygonCount;
}

/// Apply of one page of the attribute window.
void applyEdit(benchmark::State& state, AttributePage page)
{
    runEdit(state, ModelEdit::attributes, [&](Scene& scene) {
        applyAttributePage(scene.model, WorkingAttribute{}, page, PickedAfter::keep);
    });
}

void rotateEdit(benchmark::State& state)
{
    runEdit(state, ModelEdit::rotateVertices, [](Scene& scene) {
        rotateVertices(scene.model, CornerTurn::clockwise, PickedAfter::keep);
    });
}

void invertEdit(benchmark::State& state)
{
    runEdit(state, ModelEdit::invertSurface,
            [](Scene& scene) { invertSurface(scene.model, PickedAfter::keep); });
}

void gouraudEdit(benchmark::State& state)
{
    runEdit(state, ModelEdit::gouraudTable, [](Scene& scene) {
        for (std::uint32_t i = 0; i < scene.model.totalPolygonCount; ++i)
            scene.model.attributes[i].flags |= gouraudShading | useLight;
        buildGouraudTable(scene.model, scene.engine.stack, scene.engine.settings.light);
    });
}

/// Opens the largest sample in a document, with every polygon or the first one picked.
bool openSample(Document& document, bool wholePicked)
{
    if (startDocument(document) != Message::none ||
        readModelFile(document.model, "samples/max.mx3") != Message::none ||
        readTextureFile(document.textures, "samples/max.mxt") != Message::none)
        return false;
    if (wholePicked)
        selectAll(document.model, Mark::set);
    else
        document.model.attributes[0].flags |= picked;
    return true;
}

/// A change with its step: what keeping the way back costs, in time and in bytes of a step.
void changeStep(benchmark::State& state, bool wholePicked)
{
    Document document;
    if (!openSample(document, wholePicked))
        return state.SkipWithError("run this from the repository's root");
    for (auto _ : state)
        (void)changeModel(
            document, Word::stepRotateVertices, ModelEdit::rotateVertices,
            [](Model& model) { rotateVertices(model, CornerTurn::clockwise, PickedAfter::keep); });
    const History& history = document.history;
    state.counters["bytes a step"] =
        static_cast<double>(history.size) / static_cast<double>(history.steps.size());
}

void textureStep(benchmark::State& state)
{
    Document document;
    if (!openSample(document, false))
        return state.SkipWithError("run this from the repository's root");
    for (auto _ : state)
        (void)change(document, Word::stepFlip, [&] {
            return flipTextures(document.textures, document.undo, {0, false, {}}, {true, false});
        });
    const History& history = document.history;
    state.counters["bytes a step"] =
        static_cast<double>(history.size) / static_cast<double>(history.steps.size());
}

void walkHistory(benchmark::State& state)
{
    Document document;
    if (!openSample(document, true))
        return state.SkipWithError("run this from the repository's root");
    (void)changeModel(document, Word::stepInvertSurface, ModelEdit::invertSurface,
                      [](Model& model) { invertSurface(model, PickedAfter::keep); });
    Direction direction = Direction::back;
    for (auto _ : state) {
        (void)takeStep(document, direction);
        direction = direction == Direction::back ? Direction::forward : Direction::back;
    }
}

BENCHMARK_CAPTURE(changeStep, one, false)
    ->Name("history/turn one polygon")
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(changeStep, all, true)
    ->Name("history/turn all polygons")
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(textureStep)->Name("history/flip a texture")->Unit(benchmark::kMicrosecond);
BENCHMARK(walkHistory)->Name("history/step over all polygons")->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(applyEdit, material, AttributePage::material)
    ->Name("edit/apply material")
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(applyEdit, mode, AttributePage::mode)
    ->Name("edit/apply mode")
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(applyEdit, zSort, AttributePage::zSort)
    ->Name("edit/apply Z sort")
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(applyEdit, gouraud, AttributePage::gouraud)
    ->Name("edit/apply Gouraud")
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(applyEdit, option, AttributePage::option)
    ->Name("edit/apply option")
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(rotateEdit)->Name("edit/rotate vertices")->Unit(benchmark::kMicrosecond);
BENCHMARK(invertEdit)->Name("edit/invert surface")->Unit(benchmark::kMicrosecond);
BENCHMARK(gouraudEdit)->Name("edit/Gouraud table")->Unit(benchmark::kMicrosecond);

} // namespace

} // namespace facetor::bench

BENCHMARK_MAIN();
