#include "graphics/kernel/print_device.h"

#include <algorithm>
#include <array>

#include "graphics/core/mapping.h"
#include "graphics/core/state.h"
#include "graphics/devices/print/hpgl.h"
#include "graphics/devices/print/metafile.h"
#include "graphics/devices/print/postscript.h"
#include "graphics/devices/print/print_ink.h"
#include "graphics/kernel/argument_checks.h"
#include "graphics/kernel/device_points.h"
#include "graphics/kernel/marker_shapes.h"
#include "graphics/text/stroke.h"

namespace {

const PrintInk &ink() {
    return *gdevice().ink;
}

/// Hands the points in print units to `take`. -1 when memory is out.
template <typename Take> int ink_print(const char *operation, std::span<const Point> world, Take take) {
    const Mapping &map = gstate().map;
    return ink_points<Point>(
        operation, world, [&map](const Point &p) { return world_to_print(map, p); }, take);
}

template <const PrintInk &kInk> int open_print(std::string_view device_spec) {
    DrawingArea page;
    if (kInk.open(device_spec, page) != 0) return -1;
    GraphicsState &s = gstate();
    s.win_width = page.width;
    s.win_height = page.height;
    s.win_x = page.x;
    s.win_y = page.y;
    return 0;
}

int new_page() {
    if (ink().new_page() != 0) return -1;
    install_clip();
    return 0;
}

void clip() {
    ink().clip(print_clip(gstate().map));
}

void init_background() {
    gstore_color(kBackgroundSlot, {1, 1, 1});
}

int polyline(const char *operation, std::span<const Point> world) {
    const LineState &line = gstate().line;
    return ink_print(operation, world, [&line](std::span<const Point> device) {
        ink().polyline(device, line.color, line.width, line.type);
    });
}

int fill_area(const char *operation, std::span<const Point> world) {
    const FillState &fill = gstate().fill;
    // Pages have no patterns.
    if (fill.interior != kInteriorSolid) return 0;
    return ink_print(operation, world,
                     [&fill](std::span<const Point> device) { ink().fill_area(device, fill.color); });
}

int stroke(const char *operation, std::span<const Point> world) {
    return ink_print(operation, world, ink().stroke);
}

int clear_region(const char *operation, const Rect &world) {
    const std::array corners{Point{world.xmin, world.ymin}, Point{world.xmax, world.ymin},
                             Point{world.xmax, world.ymax}, Point{world.xmin, world.ymax}};
    return ink_print(operation, corners, ink().clear_region);
}

void stroke_marker(const MarkerShape &shape, const Point &centre, float half) {
    const float unit = shape.scaled ? half : 1;
    const float upwards = shape.upright ? -unit : unit;
    for (const std::span<const Point> path : shape.paths) {
        if (path.empty()) continue;
        std::array<Point, 13> device;
        std::transform(path.begin(), path.end(), device.begin(), [&](const Point &p) {
            return Point{centre.x + p.x * unit, centre.y + p.y * upwards};
        });
        ink().stroke(std::span<const Point>(device.data(), path.size()));
    }
}

void markers(std::span<const Point> world, float half) {
    const GraphicsState &s = gstate();
    ink().begin_markers(static_cast<int>(world.size()), s.marker.color, s.marker.width);
    const MarkerShape &shape = marker_shape(s.marker.type);
    for (const Point &p : world) stroke_marker(shape, world_to_print(s.map, p), half);
}

void stroke_text(const Point &position, std::string_view string) {
    text(string, position.x, position.y);
}

void begin_text(const Point &world, std::string_view string) {
    const TextState &attributes = gstate().text;
    ink().begin_text(world, string, attributes.color, attributes.width);
}

void message(std::string_view text) {
    ink().message(text);
}

/// The device that a page's ink makes.
template <const PrintInk &kInk> constexpr Device print_device() {
    return {.mode = PlotMode::postscript,
            .raster = false,
            .window = false,
            .marker_unit = kInk.marker_unit,
            .open = open_print<kInk>,
            .close = kInk.close,
            .abandon = kInk.abandon,
            .new_page = new_page,
            .install_clip = clip,
            .init_background = init_background,
            .polyline = polyline,
            .fill_area = fill_area,
            .stroke = stroke,
            .clear_region = clear_region,
            .markers = markers,
            .text = stroke_text,
            .begin_text = begin_text,
            .message = message,
            .ink = &kInk};
}

} // namespace

const Device kPostScriptDevice = print_device<kPostScriptInk>();
const Device kHpglDevice = print_device<kHpglInk>();
const Device kMetafileDevice = print_device<kMetafileInk>();
