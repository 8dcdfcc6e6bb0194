// How fast the largest model is read, its face normals computed, beside a reader that only takes
// the records one by one. Run from the repository's root.

#include "model/model_file.h"

#include <benchmark/benchmark.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>
#include <vector>

namespace facetor::bench {

namespace {

constexpr char path[] = "samples/max.mx3";

struct ChunkHeader {
    std::array<char, 4> tag;
    std::uint32_t size;
};

/// The records of all chunks, in the order of the file; nothing is checked or computed.
struct Records {
    std::vector<std::array<float, 3>> points;
    std::vector<std::array<std::uint16_t, 4>> polygons; ///< and Gouraud entries
    std::vector<std::array<std::uint16_t, 6>> attributes;
};

template <typename Record>
void readRecords(std::FILE* file, std::uint32_t size, std::vector<Record>& records)
{
    for (std::uint32_t i = 0; i < size / sizeof(Record); ++i) {
        Record record;
        if (std::fread(record.data(), sizeof(Record), 1, file) != 1) return;
        records.push_back(record);
    }
}

void readByRecord(benchmark::State& state)
{
    for (auto _ : state) {
        std::FILE* file = std::fopen(path, "rb");
        if (!file) return state.SkipWithError("run this from the repository's root");
        Records records;
        ChunkHeader header;
        while (std::fread(&header, sizeof header, 1, file) == 1) {
            const auto is = [&](const char* tag) {
                return !std::memcmp(header.tag.data(), tag, 4);
            };
            if (is("VerF") || is("NorF"))
                readRecords(file, header.size, records.points);
            else if (is("POLY") || is("TQGr"))
                readRecords(file, header.size, records.polygons);
            else if (is("TQAt"))
                readRecords(file, header.size, records.attributes);
            else
                std::fseek(file, static_cast<long>(header.size), SEEK_CUR);
        }
        std::fclose(file);
        benchmark::DoNotOptimize(records);
        state.counters["polygons"] = static_cast<double>(records.attributes.size());
    }
}

void readModel(benchmark::State& state)
{
    const auto model = std::make_unique<Model>();
    if (createModelStore(*model) != Message::none) return state.SkipWithError("memory is short");
    for (auto _ : state)
        if (readModelFile(*model, path) != Message::none)
            return state.SkipWithError("run this from the repository's root");
    state.counters["polygons"] = static_cast<double>(model->totalPolygonCount);
}

BENCHMARK(readByRecord)->Name("load/record by record")->Unit(benchmark::kMicrosecond);
BENCHMARK(readModel)->Name("load/model, normals computed")->Unit(benchmark::kMicrosecond);

} // namespace

} // namespace facetor::bench

BENCHMARK_MAIN();
