// Reading a super-resolution product: decompression, header, all bins. VYX_BENCH_NIDS names a real file to
// read instead of the one made here.

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>

#include <benchmark/benchmark.h>

#include "radar/common/inflate.h"
#include "radar/nids/reader.h"
#include "samples/level3_products.h"

namespace {

std::vector<std::byte> product_bytes() {
    const char *name = std::getenv("VYX_BENCH_NIDS");
    if (name == nullptr)
        return samples::level3_file(samples::super_reflectivity(0), samples::Framing::wmo,
                                    samples::Compression::bzip2);
    std::ifstream file(name, std::ios::binary);
    const std::string text((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    const auto bytes = std::as_bytes(std::span(text));
    return {bytes.begin(), bytes.end()};
}

void decompress_only(benchmark::State &state) {
    const auto file = product_bytes();
    std::span<const std::byte> packed(file);
    while (!packed.empty() && !INFLATE_is_bzip2(packed)) packed = packed.subspan(1);
    std::size_t size = 0;
    for (auto _ : state) {
        std::vector<std::byte> out;
        INFLATE_bzip2(packed, kNidsMaxProduct, out);
        size = out.size();
    }
    state.counters["bytes"] = static_cast<double>(size);
}
BENCHMARK(decompress_only)->Unit(benchmark::kMillisecond);

void open_and_header(benchmark::State &state) {
    const auto file = product_bytes();
    NidsInfo info;
    for (auto _ : state) {
        NIDS_set_bytes(file);
        benchmark::DoNotOptimize(NIDS_get_header(info));
    }
}
BENCHMARK(open_and_header)->Unit(benchmark::kMillisecond);

void header_again(benchmark::State &state) {
    NIDS_set_bytes(product_bytes());
    NidsInfo info;
    for (auto _ : state) benchmark::DoNotOptimize(NIDS_get_header(info));
}
BENCHMARK(header_again)->Unit(benchmark::kMicrosecond);

template <bool ByRuns> void all_bins(benchmark::State &state) {
    NIDS_set_bytes(product_bytes());
    NidsInfo info;
    std::size_t bins = 0;
    for (auto _ : state) {
        if (NIDS_get_header(info) != 1) {
            state.SkipWithError("no product");
            break;
        }
        float start = 0, delta = 0, sum = 0;
        NidsRun run;
        bins = 0;
        while (NIDS_get_radial(start, delta) == 1) {
            if (ByRuns)
                while (NIDS_get_data(run) == 1) {
                    sum += run.value;
                    ++bins;
                }
            else
                for (const std::byte level : NIDS_get_data_bytes()) {
                    sum += static_cast<float>(std::to_integer<int>(level));
                    ++bins;
                }
        }
        benchmark::DoNotOptimize(sum);
    }
    state.counters["bins"] = static_cast<double>(bins);
}
BENCHMARK(all_bins<true>)->Unit(benchmark::kMillisecond);
BENCHMARK(all_bins<false>)->Unit(benchmark::kMillisecond);

} // namespace
