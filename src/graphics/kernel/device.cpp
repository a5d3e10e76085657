#include "graphics/kernel/device.h"

#include <array>
#include <cstdlib>

#include "graphics/core/state.h"
#include "graphics/kernel/foreign_device.h"
#include "graphics/kernel/print_device.h"
#include "graphics/kernel/window_device.h"
#include "lib/text/strings.h"

namespace {

const Device kNoDevice{.mode = PlotMode::none,
                       .raster = false,
                       .window = false,
                       .marker_unit = 1,
                       .open = [](std::string_view) { return -1; },
                       .close = [] { return 0; },
                       .abandon = [] {},
                       .new_page = [] { return 0; },
                       .install_clip = [] {},
                       .init_background = [] {},
                       .polyline = [](const char *, std::span<const Point>) { return 0; },
                       .fill_area = [](const char *, std::span<const Point>) { return 0; },
                       .stroke = [](const char *, std::span<const Point>) { return 0; },
                       .clear_region = [](const char *, const Rect &) { return 0; },
                       .markers = [](std::span<const Point>, float) {},
                       .text = [](const Point &, std::string_view) {},
                       .begin_text = [](const Point &, std::string_view) {},
                       .message = [](std::string_view) {},
                       .ink = nullptr};

struct Row {
    DeviceKind kind;
    const Device &device;
};
constexpr std::array kDevices{Row{DeviceKind::win, kWindowDevice}, Row{DeviceKind::pix, kForeignDevice},
                              Row{DeviceKind::ps, kPostScriptDevice}, Row{DeviceKind::hpgl, kHpglDevice},
                              Row{DeviceKind::meta, kMetafileDevice}};

/// PostScript is requested, but "vyxprint" sends it to a plotter.
bool print_goes_to_plotter() {
    const char *const printer = std::getenv("vyxprint");
    return printer != nullptr && stricmp(printer, "hpgl") == 0;
}

} // namespace

const Device *gdevice_of(DeviceKind kind) {
    if (kind == DeviceKind::ps && print_goes_to_plotter()) kind = DeviceKind::hpgl;
    for (const Row &row : kDevices)
        if (row.kind == kind) return &row.device;
    return nullptr;
}

const Device &gdevice() {
    const Device *const device = gstate().device;
    return device != nullptr ? *device : kNoDevice;
}
