// Raster displays: small filled and outlined areas in memory and through an X server (against the same with
// Xlib alone), PNG encoding, and stepping through the frames of a window. What needs a server is left out
// where DISPLAY names none.

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <string>
#include <vector>

#include <X11/Xlib.h>
#include <benchmark/benchmark.h>

#include "graphics/devices/raster/display.h"
#include "graphics/images/formats.h"
#include "graphics/images/image.h"
#include "graphics/kernel/helpers.h"
#include "graphics/kernel/kernel.h"
#include "graphics/window/events.h"
#include "graphics/window/frames.h"
#include "graphics/window/hold.h"
#include "graphics/window/loop.h"

namespace {

constexpr int kWidth = 1000, kHeight = 800;
constexpr int kFrames = kMaxFrames;
constexpr long kInks = 16;

using Cell = std::array<PixelPoint, 5>;

/// The cells of 720 radials with 1400 bins of a quarter of a pixel and more.
std::vector<Cell> radar_cells() {
    std::vector<Cell> cells;
    constexpr int radials = 720, bins = 1400;
    const auto at = [](int radial, int bin) {
        const double angle = radial * 2 * 3.14159265358979 / radials, range = bin * 0.28;
        return PixelPoint{static_cast<std::int16_t>(std::lround(kWidth / 2 + range * std::sin(angle))),
                          static_cast<std::int16_t>(std::lround(kHeight / 2 - range * std::cos(angle)))};
    };
    for (int r = 0; r < radials; ++r)
        for (int b = 0; b < bins; ++b)
            cells.push_back({at(r, b), at(r, b + 1), at(r + 1, b + 1), at(r + 1, b), at(r, b)});
    return cells;
}

/// Inks change from run to run as in a picture.
long ink(std::size_t cell) {
    return 0x102030 * static_cast<long>(cell / 20 % kInks + 1) % 0xFFFFFF;
}

class Workstation {
public:
    explicit Workstation(const char *display) {
        gsetup_window();
        gset_win_size(kWidth, kHeight);
        (void)gopen_gks("", 0);
        open_ = gopen_ws(1, display, DeviceKind::win) == 0;
        if (open_) GPH_set_maxview(1);
    }
    Workstation(const Workstation &) = delete;
    Workstation &operator=(const Workstation &) = delete;
    ~Workstation() {
        if (open_) (void)gclose_ws(1);
        gclose_gks();
    }
    [[nodiscard]] bool is_open() const { return open_; }

private:
    bool open_ = false;
};

bool has_server() {
    const char *const display = std::getenv("DISPLAY");
    return display != nullptr && *display != '\0';
}

void draw_cells(benchmark::State &state, const char *display) {
    const Workstation workstation(display);
    if (!workstation.is_open()) return state.SkipWithError("no display");
    graster_set_clip({0, 0, kWidth, kHeight});
    const std::vector<Cell> cells = radar_cells();
    for (auto _ : state) {
        long present = -1;
        for (std::size_t i = 0; i < cells.size(); ++i) {
            if (ink(i) != present) graster_set_foreground(RasterContext::fill, present = ink(i));
            graster_area(cells[i]);
        }
        graster_sync();
    }
    state.counters["cells"] = static_cast<double>(cells.size());
}

void cells_in_memory(benchmark::State &state) {
    draw_cells(state, "memory");
}
BENCHMARK(cells_in_memory)->Unit(benchmark::kMillisecond);

void cells_through_server(benchmark::State &state) {
    if (!has_server()) return state.SkipWithError("DISPLAY is not set");
    draw_cells(state, "");
}
BENCHMARK(cells_through_server)->Unit(benchmark::kMillisecond)->UseRealTime();

void cells_with_xlib_alone(benchmark::State &state) {
    Display *const display = has_server() ? XOpenDisplay(nullptr) : nullptr;
    if (display == nullptr) return state.SkipWithError("DISPLAY is not set");
    const Window root = DefaultRootWindow(display);
    const Pixmap pixmap = XCreatePixmap(display, root, kWidth, kHeight,
                                        static_cast<unsigned>(DefaultDepth(display, DefaultScreen(display))));
    const GC context = XCreateGC(display, pixmap, 0, nullptr);
    const std::vector<Cell> cells = radar_cells();
    for (auto _ : state) {
        long present = -1;
        for (std::size_t i = 0; i < cells.size(); ++i) {
            if (ink(i) != present)
                XSetForeground(display, context, static_cast<unsigned long>(present = ink(i)));
            std::array<XPoint, 5> points;
            std::ranges::transform(cells[i], points.begin(), [](PixelPoint p) { return XPoint{p.x, p.y}; });
            XFillPolygon(display, pixmap, context, points.data(), 5, Nonconvex, CoordModeOrigin);
            XDrawLines(display, pixmap, context, points.data(), 5, CoordModeOrigin);
        }
        XSync(display, False);
    }
    XFreeGC(display, context);
    XFreePixmap(display, pixmap);
    XCloseDisplay(display);
}
BENCHMARK(cells_with_xlib_alone)->Unit(benchmark::kMillisecond)->UseRealTime();

/// VYX_BENCH_PNG names the picture.
void encode_png(benchmark::State &state) {
    const char *const name = std::getenv("VYX_BENCH_PNG");
    ImageRecord record;
    if (name == nullptr || gread_image_file(name, record) != 1)
        return state.SkipWithError("VYX_BENCH_PNG names no picture");
    for (auto _ : state) benchmark::DoNotOptimize(PNG_write("/dev/null", record));
}
BENCHMARK(encode_png)->Unit(benchmark::kMillisecond);

void step_frames(benchmark::State &state) {
    if (!has_server()) return state.SkipWithError("DISPLAY is not set");
    const Workstation workstation("");
    if (!workstation.is_open()) return state.SkipWithError("no display");
    for (int i = 0; i < kFrames; ++i) {
        (void)gcreate_frame(i);
        gselect_frame(i);
        GPH_set_color(2, static_cast<float>(i) / kFrames, 0.5F, 0);
        gsel_norm_tran(1);
        gset_fill_colr_ind(2);
        GPH_frect(0, 0, static_cast<float>(i + 1) / kFrames, 1);
    }
    graster_sync();
    for (auto _ : state) {
        gdisplay_frame(ginc_frame(0));
        gcheck_event();
    }
    state.SetItemsProcessed(state.iterations()); // frames a second
}
BENCHMARK(step_frames)->Unit(benchmark::kMicrosecond)->UseRealTime();

} // namespace
