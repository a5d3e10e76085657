// National mosaics with echo over a third of the country: walking their runs alone, and drawing them as a
// picture of 1000 x 800 pixels in memory.

#include <algorithm>
#include <cmath>
#include <fstream>
#include <string>

#include <benchmark/benchmark.h>

#include "graphics/devices/raster/display.h"
#include "graphics/kernel/helpers.h"
#include "graphics/kernel/kernel.h"
#include "lib/options/flags.h"
#include "lib/report/message.h"
#include "lib/resources/database.h"
#include "plot/map/current_map.h"
#include "plot/session/plot_session.h"
#include "radar/kavrad/decoder.h"
#include "radar/nowrad/decoder.h"
#include "samples/mosaic.h"

namespace {

/// Levels of five dBZ that change every few cells; about a third has echo. `scale`: cells of a degree.
unsigned echo(int line, int column, double scale) {
    const double x = column / scale * 9, y = line / scale * 9;
    const double dbz = 18 * std::sin(x * 0.31 + 1.7 * std::sin(y * 0.17)) +
                       14 * std::sin(y * 0.27 - x * 0.13) + 9 * std::sin((x + y) * 2.1) +
                       9 * std::sin((x - 2 * y) * 1.7) + 5 * std::sin(x * 9 + y * 7);
    return dbz < 10 ? 0 : static_cast<unsigned>(dbz / 5);
}

std::string written(const char *name, const samples::Bytes &bytes) {
    std::ofstream(name, std::ios::binary)
        .write(reinterpret_cast<const char *>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    return name;
}

const std::string &kavrad_name() {
    static const std::string name = written(
        "bench_kavrad.tmp", samples::kavrad_file({false, false, 0, [](int line, int column) {
                                                      const unsigned level = echo(line, column, 80);
                                                      return level > 0 ? level : samples::kKavradPlainNoEcho;
                                                  }}));
    return name;
}

const std::string &nowrad_name() {
    static const std::string name = [] {
        samples::NowradFile file = samples::nowrad_latlon(0);
        file.window = {};
        file.level = [](int line, int column) { return echo(line, column, 58); };
        return written("bench_nowrad.tmp", samples::nowrad_file(file));
    }();
    return name;
}

void walk(benchmark::State &state, const MosaicFormat &format, const std::string &name) {
    MESS_set(0, 0);
    std::size_t runs = 0;
    for (auto _ : state) {
        Stream stream = FILE_open(name, "r");
        MosaicInfo info;
        if (!format.read_header(stream, info)) return state.SkipWithError("no header");
        MosaicLine line;
        runs = 0;
        while (format.next_line(stream, line)) runs += line.runs.size();
    }
    state.counters["runs"] = static_cast<double>(runs);
}

PlotDomain country(int proj) {
    PlotDomain domain;
    domain.proj = proj;
    domain.plat = proj == kProjPolar ? 90.0F : 0.0F;
    domain.plon = domain.clon = -96;
    domain.clat = 39;
    domain.nx = 51;
    domain.ny = 41;
    domain.dx = domain.dy = 1;
    return domain;
}

void draw(benchmark::State &state, const MosaicFormat &format, const std::string &name, int proj) {
    MESS_set(0, 0);
    FLAG_resetplot(1);
    FLAG_set(kFlagDevice, 1);
    RES_put("device", "d,memory");
    RES_put("file_path", VYX_SOURCE_DIR "/data");
    RES_put("geometry", "1000x800");
    RES_put("plot_param", "full,nobar");
    PlotDomain domain = country(proj);
    PLT_open(DOM_aspect(domain));
    MAP_setup(domain);
    MosaicDriver driver(format);
    for (auto _ : state) {
        if (!driver.open(name)) return state.SkipWithError("no file");
        driver.draw();
    }
    RasterImage image;
    if (!graster_read(graster_base(), image)) return state.SkipWithError("no picture");
    state.counters["bytes set"] = static_cast<double>(
        std::ranges::count_if(image.data, [](std::byte byte) { return byte != std::byte{0}; }));
    (void)GPH_end(1);
}

BENCHMARK_CAPTURE(walk, kavrad, kKavradFormat, kavrad_name())->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(draw, kavrad_polar, kKavradFormat, kavrad_name(), kProjPolar)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(draw, kavrad_own, kKavradFormat, kavrad_name(), kProjLatLon)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(walk, nowrad, kNowradFormat, nowrad_name())->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(draw, nowrad_polar, kNowradFormat, nowrad_name(), kProjPolar)
    ->Unit(benchmark::kMillisecond);

} // namespace
