// How fast the PostScript device writes: radar cells as fill areas, and the strokes of labels.

#include <array>
#include <cstdint>
#include <filesystem>
#include <string>

#include <benchmark/benchmark.h>

#include "graphics/core/color_slots.h"
#include "graphics/devices/print/postscript.h"
#include "lib/report/message.h"

namespace {

class OpenPage {
public:
    OpenPage() {
        MESS_set(0, 0);
        DrawingArea page;
        open_ = gps_open(path_ + ",color", page) == 0;
        for (int index = 0; index < 16; ++index)
            store_color(index, {static_cast<float>(index) / 16, 0.5F, 0.25F});
    }
    OpenPage(const OpenPage &) = delete;
    OpenPage &operator=(const OpenPage &) = delete;
    ~OpenPage() { std::filesystem::remove(path_); }

    /// Closes the file and reports how fast it was written.
    void finish(benchmark::State &state) const {
        if (!open_ || gps_close() != 0) {
            state.SkipWithError("the page could not be written");
            return;
        }
        state.SetBytesProcessed(static_cast<std::int64_t>(std::filesystem::file_size(path_)));
        state.SetItemsProcessed(state.iterations());
    }

private:
    std::string path_ = (std::filesystem::temp_directory_path() / "vyx_bench.ps").string();
    bool open_ = false;
};

void fill_area_4_corners(benchmark::State &state) {
    const OpenPage page;
    int cell = 0;
    for (auto _ : state) {
        const auto x = static_cast<float>(cell % 700) + 0.37F,
                   y = static_cast<float>(cell / 700 % 500) + 0.61F;
        gps_fill_area(
            std::array{Point{x, y}, Point{x, y + 1.13F}, Point{x + 1.29F, y + 1.17F}, Point{x + 1.31F, y}},
            cell / 3 % 16);
        ++cell;
    }
    page.finish(state);
}
BENCHMARK(fill_area_4_corners)->Iterations(1'000'000);

void polyline_30_points(benchmark::State &state) {
    const OpenPage page;
    std::array<Point, 30> points;
    for (std::size_t i = 0; i < points.size(); ++i)
        points[i] = {static_cast<float>(i) * 17.31F, static_cast<float>(i) * 11.77F};
    for (auto _ : state) gps_polyline(points, 1, 1, 1);
    page.finish(state);
}
BENCHMARK(polyline_30_points)->Iterations(200'000);

} // namespace
