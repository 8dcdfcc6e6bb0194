// How fast the C source of the largest model is written, beside the same lines written one by one
// with fprintf. Run from the repository's root.

#include "model/model_file.h"
#include "output/attribute_text.h"
#include "output/model_source.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>

namespace facetor::bench {

namespace {

std::unique_ptr<Model> readSample()
{
    auto model = std::make_unique<Model>();
    if (createModelStore(*model) != Message::none ||
        readModelFile(*model, "samples/max.mx3") != Message::none)
        return nullptr;
    return model;
}

std::string outputPath(const char* name)
{
    return (std::filesystem::temp_directory_path() / name).string();
}

void printPoints(std::FILE* file, const Vector3* points, std::uint32_t count)
{
    for (std::uint32_t i = 0; i < count; ++i)
        std::fprintf(file, "\tPOStoFIXED(% 8.4f,% 8.4f,% 8.4f),\r\n", double{points[i].x},
                     double{points[i].y}, double{points[i].z});
}

/// The object's tables; what is left out are some lines an object.
void printMesh(std::FILE* file, const Model& model, std::uint32_t index, std::uint32_t& light,
               std::uint32_t& table)
{
    const Mesh& mesh = model.meshes[index];
    const char* name = model.names[index].c_str();
    std::fprintf(file, "POINT\tpoint_%s[] = {\r\n", name);
    printPoints(file, model.vertices.data() + mesh.vertexTable, mesh.vertexCount);
    std::fprintf(file, "};\r\n\r\nPOLYGON\tpolygon_%s[] = {\r\n", name);
    bool normals = false;
    for (std::uint32_t i = 0; i < mesh.polygonCount; ++i) {
        const Polygon& polygon = model.polygons[mesh.polygonTable + i];
        std::fprintf(file, "\tNORMAL(% 8.4f,% 8.4f,% 8.4f), VERTICES(%2d,%2d,%2d,%2d),\r\n",
                     double{polygon.normal.x}, double{polygon.normal.y}, double{polygon.normal.z},
                     polygon.corner[0], polygon.corner[1], polygon.corner[2], polygon.corner[3]);
        normals = normals || isLightGouraud(model.attributes[mesh.attributeTable + i]);
    }
    std::fprintf(file, "};\r\n\r\nATTR\tattribute_%s[] = {\r\n", name);
    for (std::uint32_t i = 0; i < mesh.polygonCount; ++i)
        std::fprintf(
            file, "\tATTRIBUTE(%s),\r\n",
            formatAttribute(model.attributes[mesh.attributeTable + i], light, table).c_str());
    std::fprintf(file, "};\r\n\r\n");
    if (!normals) return;
    std::fprintf(file, "VECTOR\tnormal_%s[] = {\r\n", name);
    printPoints(file, model.vertexNormals.data() + mesh.vertexNormalTable, mesh.vertexCount);
    std::fprintf(file, "};\r\n\r\n");
}

void printGouraud(std::FILE* file, const Model& model)
{
    for (std::uint32_t i = 0; i < model.totalPolygonCount; ++i) {
        if ((model.attributes[i].flags & gouraudShading) == 0) continue;
        const auto& c = model.gouraud[i].color;
        std::fprintf(file,
                     "\t{C_RGB(%2d,%2d,%2d),C_RGB(%2d,%2d,%2d),C_RGB(%2d,%2d,%2d),"
                     "C_RGB(%2d,%2d,%2d)},\r\n",
                     redOf(c[0]), greenOf(c[0]), blueOf(c[0]), redOf(c[1]), greenOf(c[1]),
                     blueOf(c[1]), redOf(c[2]), greenOf(c[2]), blueOf(c[2]), redOf(c[3]),
                     greenOf(c[3]), blueOf(c[3]));
    }
}

void runPrintf(benchmark::State& state)
{
    const auto model = readSample();
    if (!model) return state.SkipWithError("run this from the repository's root");
    const std::string path = outputPath("facetor-bench-printf.mdl");
    for (auto _ : state) {
        std::FILE* file = std::fopen(path.c_str(), "wb");
        std::uint32_t light = 0, table = 0;
        printGouraud(file, *model);
        for (std::uint32_t k = 0; k < model->objectCount; ++k)
            printMesh(file, *model, k, light, table);
        std::fclose(file);
    }
    state.counters["bytes"] = static_cast<double>(std::filesystem::file_size(path));
    std::filesystem::remove(path);
}

void runSource(benchmark::State& state)
{
    const auto model = readSample();
    if (!model) return state.SkipWithError("run this from the repository's root");
    const std::string path = outputPath("facetor-bench.mdl");
    for (auto _ : state)
        if (writeModelSource(*model, path) != Message::none)
            return state.SkipWithError("cannot write");
    state.counters["bytes"] = static_cast<double>(std::filesystem::file_size(path));
    std::filesystem::remove(path);
}

void runSourceText(benchmark::State& state)
{
    const auto model = readSample();
    if (!model) return state.SkipWithError("run this from the repository's root");
    for (auto _ : state) benchmark::DoNotOptimize(formatModelSource(*model, "max.mdl"));
}

BENCHMARK(runPrintf)->Name("source/fprintf line by line");
BENCHMARK(runSource)->Name("source/written");
BENCHMARK(runSourceText)->Name("source/text alone");

} // namespace

} // namespace facetor::bench

BENCHMARK_MAIN();
