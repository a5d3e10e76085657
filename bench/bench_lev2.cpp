// Reading and drawing a Level II volume, against decompression alone. VYX_BENCH_LEV2 names a real file of
// bzip2 records to read instead of the one made here.

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>

#include <benchmark/benchmark.h>

#include "graphics/kernel/helpers.h"
#include "graphics/kernel/kernel.h"
#include "lib/options/flags.h"
#include "lib/resources/database.h"
#include "lib/text/byte_reader.h"
#include "plot/colour/levels.h"
#include "plot/map/current_map.h"
#include "radar/common/cells.h"
#include "radar/common/inflate.h"
#include "radar/lev2/painter.h"
#include "radar/lev2/plot.h"
#include "radar/lev2/reader.h"
#include "samples/level2.h"

namespace {

/// The file to read; one made here lives in the present directory.
const std::string &volume_name() {
    static const std::string name = [] {
        if (const char *const given = std::getenv("VYX_BENCH_LEV2")) return std::string(given);
        const samples::Bytes bytes =
            samples::level2_file(samples::level2_volume(0, true), samples::Level2Form::records);
        std::ofstream("bench_lev2.tmp", std::ios::binary)
            .write(reinterpret_cast<const char *>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
        return std::string("bench_lev2.tmp");
    }();
    return name;
}

void decompress_only(benchmark::State &state) {
    std::ifstream in(volume_name(), std::ios::binary);
    const std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    for (auto _ : state) {
        std::size_t produced = 0;
        ByteReader reader(std::as_bytes(std::span(text)));
        reader.take(24); // volume header
        while (reader.remaining() > 4) {
            const std::span<const std::byte> record =
                reader.take(static_cast<std::size_t>(std::abs(std::int64_t{reader.i32()})));
            if (reader.failed()) break;
            std::vector<std::byte> out;
            INFLATE_bzip2(record, kLev2MaxRecord, out);
            produced += out.size();
        }
        state.counters["bytes"] = static_cast<double>(produced);
    }
}
BENCHMARK(decompress_only)->Unit(benchmark::kMillisecond);

void every_radial(benchmark::State &state) {
    for (auto _ : state) {
        LEV2_set_compress(1);
        Lev2Info info;
        if (LEV2_open_file(volume_name()) != 1 || LEV2_get_header(info) != 0) {
            state.SkipWithError("no volume");
            break;
        }
        Lev2Radial radial;
        std::size_t gates = 0;
        for (; LEV2_get_block(radial) == 1; LEV2_next_block())
            gates += LEV2_get_gates(kLev2Reflectivity).size();
        LEV2_close_file();
        state.counters["gates"] = static_cast<double>(gates);
    }
}
BENCHMARK(every_radial)->Unit(benchmark::kMillisecond);

/// Radials of one cut onto the memory display: all of them, a half, a quarter.
void draw_gates(benchmark::State &state) {
    (void)gopen_gks("", 0);
    gset_win_size(1000, 800);
    (void)gopen_ws(1, "memory", DeviceKind::win);
    GPH_set_maxview(1);
    PlotDomain domain;
    LEV2_get_domain(domain, 38.7F, -90.7F, 460);
    MAP_setup(domain);
    GPH_set_color(2, 1, 0, 0);
    GPH_set_color(3, 0, 1, 0);
    CONT_set_fill_colors("-50:2,20:3", 1);
    std::vector<std::byte> levels(1832);
    for (std::size_t i = 0; i < levels.size(); ++i) levels[i] = static_cast<std::byte>(60 + i % 90);
    Lev2Gates gates;
    gates.count = static_cast<int>(levels.size());
    gates.offset = 66;
    gates.gate_km = 0.25F;
    gates.bytes = levels;
    const int radials = static_cast<int>(state.range(0));
    for (auto _ : state) {
        const CellFrame frame(domain, 38.7F, -90.7F);
        Lev2Painter painter(frame, 0, nullptr);
        for (int i = 0; i < radials; ++i) painter.draw(static_cast<float>(i) / 2, 1, 2, gates);
    }
    state.counters["gates"] = static_cast<double>(radials) * static_cast<double>(levels.size());
    (void)gclose_ws(1);
    gclose_gks();
}
BENCHMARK(draw_gates)->Arg(180)->Arg(360)->Arg(720)->Unit(benchmark::kMillisecond);

} // namespace
