// How fast an OBJ of 4096 quads is imported beside what tinyobjloader takes to parse it, and how
// many quads of triangulated models come back. Run from the repository's root.

#include "exchange/face_split.h"
#include "exchange/model_import.h"
#include "exchange/model_points.h"
#include "exchange/obj_reader.h"
#include "model/model_file.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <numbers>
#include <set>
#include <sstream>

#define TINYOBJLOADER_IMPLEMENTATION
#include <tiny_obj_loader.h>

namespace facetor::bench {

namespace {

/// A torus of rows x columns quads, few of which are flat unless `isFlat` presses it.
std::string torus(int rows, int columns, bool isFlat)
{
    std::string text;
    for (int i = 0; i < rows * columns; ++i) {
        const double a = i / columns * 2 * std::numbers::pi / rows;
        const double b = i % columns * 2 * std::numbers::pi / columns;
        const double r = 10 + 3 * std::cos(b);
        text += "v " + std::to_string(r * std::cos(a)) + ' ' + std::to_string(r * std::sin(a)) +
                ' ' + std::to_string(isFlat ? 0 : 3 * std::sin(b)) + "\nvt " +
                std::to_string(a / 7) + ' ' + std::to_string(b / 7) + '\n';
    }
    for (int i = 0; i < rows * columns; ++i) {
        const int row = i / columns, column = i % columns;
        text += 'f';
        for (const auto& [down, right] : {std::pair(0, 0), {1, 0}, {1, 1}, {0, 1}}) {
            const std::string index =
                std::to_string((row + down) % rows * columns + (column + right) % columns + 1);
            text += ' ' + index + '/' + index;
        }
        text += '\n';
    }
    return text;
}

bool import(Model& model, std::string_view text, ImportReport& report)
{
    static const AssetReader nothing = [](const std::string&, std::string&) {
        return std::optional<Bytes>();
    };
    Scene scene;
    Reason reason;
    return readObj(scene, text, "bench", nothing, reason) == Message::none &&
           buildModel(model, nullptr, scene, {}, report, reason) == Message::none;
}

void BM_Tinyobjloader(benchmark::State& state)
{
    const std::string text = torus(64, 64, false);
    for (auto _ : state) {
        std::istringstream in(text);
        tinyobj::attrib_t attributes;
        std::vector<tinyobj::shape_t> shapes;
        std::vector<tinyobj::material_t> materials;
        std::string warning, error;
        benchmark::DoNotOptimize(tinyobj::LoadObj(&attributes, &shapes, &materials, &warning,
                                                  &error, &in, nullptr, false));
    }
}
BENCHMARK(BM_Tinyobjloader)->Unit(benchmark::kMillisecond);

void BM_Import(benchmark::State& state)
{
    const std::string text = torus(64, 64, false);
    Model model;
    ImportReport report;
    if (createModelStore(model) != Message::none) return state.SkipWithError("no memory");
    for (auto _ : state) benchmark::DoNotOptimize(import(model, text, report));
    state.counters["polygons"] = report.polygons;
}
BENCHMARK(BM_Import)->Unit(benchmark::kMillisecond);

using Corners = std::set<Real3>;

Corners cornersOf(const Model& model, const Mesh& mesh, std::uint32_t polygon)
{
    Corners corners;
    for (const std::uint16_t corner : model.polygons[mesh.polygonTable + polygon].corner) {
        const Vertex& v = model.vertices[mesh.vertexTable + corner];
        corners.insert({double{v.x}, double{v.y}, double{v.z}});
    }
    return corners;
}

/// Of the flat convex quads of a model, how many come back when it is cut into triangles.
void rejoin(benchmark::State& state, Model& model)
{
    std::string text;
    std::set<Corners> flat, back;
    std::size_t first = 1;
    for (std::uint32_t o = 0; o < model.objectCount; ++o) {
        const Mesh& mesh = model.meshes[o];
        text += "o " + std::to_string(o) + '\n';
        for (std::uint32_t v = 0; v < mesh.vertexCount; ++v) {
            std::ostringstream line;
            line.precision(9);
            const Vertex& p = model.vertices[mesh.vertexTable + v];
            line << "v " << p.x << ' ' << -p.y << ' ' << -p.z << '\n';
            text += line.str();
        }
        for (std::uint32_t p = 0; p < mesh.polygonCount; ++p) {
            const PolygonAttribute& attribute = model.attributes[mesh.attributeTable + p];
            const std::string look =
                std::to_string(attribute.color) + '-' + std::to_string(attribute.texture);
            text += "usemtl " + look + '\n';
            const auto& c = model.polygons[mesh.polygonTable + p].corner;
            const std::array<std::size_t, 4> at{first + c[0], first + c[3], first + c[2],
                                                first + c[1]};
            const std::size_t turn = p % 2; // either diagonal
            for (const std::size_t k : {std::size_t{1}, std::size_t{2}})
                text += "f " + std::to_string(at[turn]) + ' ' + std::to_string(at[turn + k]) + ' ' +
                        std::to_string(at[(turn + k + 1) % 4]) + '\n';
            std::array<Real3, 4> points;
            for (std::size_t i = 0; i < 4; ++i) {
                const Vertex& v = model.vertices[mesh.vertexTable + c[3 - i]];
                points[i] = {double{v.x}, double{v.y}, double{v.z}};
            }
            const Real3 n1 = areaVector(std::array{points[0], points[1], points[2]});
            const Real3 n2 = areaVector(std::array{points[0], points[2], points[3]});
            if (isConvexQuad(points, n1) && dot(n1, n2) > 0.9999999 * lengthOf(n1) * lengthOf(n2))
                flat.insert(cornersOf(model, mesh, p));
        }
        first += mesh.vertexCount;
    }
    Model joined;
    ImportReport report;
    if (createModelStore(joined) != Message::none) return state.SkipWithError("no memory");
    for (auto _ : state)
        if (!import(joined, text, report)) return state.SkipWithError("not imported");
    for (std::uint32_t o = 0; o < joined.objectCount; ++o)
        for (std::uint32_t p = 0; p < joined.meshes[o].polygonCount; ++p)
            back.insert(cornersOf(joined, joined.meshes[o], p));
    std::size_t found = 0;
    for (const Corners& quad : flat) found += back.count(quad);
    state.counters["flat"] = static_cast<double>(flat.size());
    state.counters["percent"] =
        100.0 * static_cast<double>(found) / static_cast<double>(flat.size());
}

void BM_RejoinSample(benchmark::State& state, const char* path)
{
    Model model;
    if (createModelStore(model) != Message::none || readModelFile(model, path) != Message::none)
        return state.SkipWithError("no sample");
    rejoin(state, model);
}
BENCHMARK_CAPTURE(BM_RejoinSample, ship, "samples/ship.mx3")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_RejoinSample, prop, "samples/prop.mx3")->Unit(benchmark::kMillisecond);

void BM_RejoinTorus(benchmark::State& state, bool isFlat)
{
    Model model;
    ImportReport report;
    if (createModelStore(model) != Message::none || !import(model, torus(64, 63, isFlat), report))
        return state.SkipWithError("not imported");
    rejoin(state, model);
}
BENCHMARK_CAPTURE(BM_RejoinTorus, curved, false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_RejoinTorus, pressed, true)->Unit(benchmark::kMillisecond);

} // namespace

} // namespace facetor::bench

BENCHMARK_MAIN();
