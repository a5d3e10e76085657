#include <algorithm>
#include <array>
#include <cmath>

#include "graphics/core/mapping.h"
#include "graphics/core/state.h"
#include "graphics/devices/print/postscript.h"
#include "graphics/kernel/argument_checks.h"
#include "graphics/kernel/device_points.h"
#include "graphics/kernel/kernel.h"
#include "graphics/kernel/marker_shapes.h"
#include "graphics/kernel/raster_ink.h"
#include "graphics/text/stroke.h"

namespace {

/// Raster units of marker size 1.
constexpr float kMarkerUnits = 10;

/// Hands the points in print units to `ink`. -1 when memory is out.
template <typename Ink> int ink_print(const char *operation, std::span<const Point> world, Ink ink) {
    const Mapping &map = gstate().map;
    return ink_points<Point>(
        operation, world, [&map](const Point &p) { return world_to_print(map, p); }, ink);
}

/// Device units of a raster unit: a printer's marker looks as large as the window's.
float marker_unit() {
    switch (gstate().kind) {
    case DeviceKind::ps: return 0.72F;
    case DeviceKind::win:
    case DeviceKind::none: break;
    }
    return 1;
}

/// Half a marker, rounded, device units.
float marker_half() {
    const float size = clamp_coordinate(kMarkerUnits * gstate().marker.size * marker_unit(), kPixelLimit);
    return std::floor(size / 2 + 0.5F);
}

/// True when no marker of the set can reach into the window.
bool markers_outside(std::span<const Point> points, float half) {
    const Mapping &m = gstate().map;
    const float scale_x = std::fabs(m.window_to_view.x * m.ws_to_device.x);
    const float scale_y = std::fabs(m.window_to_view.y * m.ws_to_device.y);
    return !box_meets(points, m.window, safe_ratio(half, scale_x), safe_ratio(half, scale_y));
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
        gps_stroke(std::span<const Point>(device.data(), path.size()));
    }
}

void print_markers(std::span<const Point> points, float half) {
    const GraphicsState &s = gstate();
    gps_begin_markers(static_cast<int>(points.size()), s.marker.color, s.marker.width);
    const MarkerShape &shape = marker_shape(s.marker.type);
    for (const Point &p : points) stroke_marker(shape, world_to_print(s.map, p), half);
}

} // namespace

int gpolyline(std::span<const Point> points) {
    constexpr const char *kName = "gpolyline";
    if (!workstation_open(kName)) return -1;
    if (points.size() < 2) {
        gerr_printf(kName, "invalid number of points: %d\n", static_cast<int>(points.size()));
        return -1;
    }
    const GraphicsState &s = gstate();
    if (!box_meets(points, s.map.window)) return 0;
    record_points(ObjectType::polyline, points);
    switch (s.kind) {
    case DeviceKind::ps:
        return ink_print(kName, points, [&s](std::span<const Point> device) {
            gps_polyline(device, s.line.color, s.line.width, s.line.type);
        });
    case DeviceKind::win: return raster_polyline(kName, points);
    case DeviceKind::none: break;
    }
    return 0;
}

int gfill_area(std::span<const Point> points) {
    constexpr const char *kName = "gfill_area";
    if (!workstation_open(kName)) return -1;
    const GraphicsState &s = gstate();
    if (!box_meets(points, s.map.window)) return 0;
    record_points(ObjectType::fill_area, points);
    switch (s.kind) {
    case DeviceKind::ps:
        // PostScript writes no patterns.
        if (s.fill.interior != kInteriorSolid) return 0;
        return ink_print(kName, points,
                         [&s](std::span<const Point> device) { gps_fill_area(device, s.fill.color); });
    case DeviceKind::win: return raster_fill_area(kName, points);
    case DeviceKind::none: break;
    }
    return 0;
}

int gpolymarker(std::span<const Point> points) {
    if (!workstation_open("gpolymarker")) return -1;
    const float half = marker_half();
    if (markers_outside(points, half)) return 0;
    record_points(ObjectType::polymarker, points);
    switch (gstate().kind) {
    case DeviceKind::ps: print_markers(points, half); break;
    case DeviceKind::win: raster_markers(points, half); break;
    case DeviceKind::none: break;
    }
    return 0;
}

int gtext(const Point &position, std::string_view string) {
    if (!workstation_open("gtext")) return -1;
    if (string.empty() || !std::isfinite(position.x) || !std::isfinite(position.y)) return 0;
    record_text(ObjectType::text, 1, position, string);
    if (gtype_is_WIN_PIX())
        raster_text(position, string);
    else
        text(string, position.x, position.y);
    return 0;
}

void gdraw_stroke(std::span<const Point> world) {
    switch (gstate().kind) {
    case DeviceKind::ps: ink_print("gtext", world, gps_stroke); break;
    case DeviceKind::win: raster_stroke("gtext", world); break;
    case DeviceKind::none: break;
    }
}

int gclear_region(const Rect &world) {
    constexpr const char *kName = "gclear_region";
    if (!workstation_open(kName)) return -1;
    record_rect(ObjectType::clear_region, 1, world);
    const std::array corners{Point{world.xmin, world.ymin}, Point{world.xmax, world.ymin},
                             Point{world.xmax, world.ymax}, Point{world.xmin, world.ymax}};
    switch (gstate().kind) {
    case DeviceKind::ps: return ink_print(kName, corners, gps_clear_region);
    case DeviceKind::win: raster_clear_region(world); break;
    case DeviceKind::none: break;
    }
    return 0;
}

int gmessage(int level, std::string_view text) {
    if (!workstation_open("gmessage")) return -1;
    gnew_obj(ObjectType::message, level, text.size(), text.data());
    switch (gstate().kind) {
    case DeviceKind::ps: gps_message(text); break;
    case DeviceKind::win:
    case DeviceKind::none: break;
    }
    return 0;
}
