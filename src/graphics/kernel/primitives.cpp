#include <cmath>

#include "graphics/core/mapping.h"
#include "graphics/core/state.h"
#include "graphics/kernel/argument_checks.h"
#include "graphics/kernel/device.h"
#include "graphics/kernel/kernel.h"

namespace {

/// Raster units of marker size 1.
constexpr float kMarkerUnits = 10;

/// Half a marker, rounded, device units.
float marker_half() {
    const float size =
        clamp_coordinate(kMarkerUnits * gstate().marker.size * gdevice().marker_unit, kPixelLimit);
    return std::floor(size / 2 + 0.5F);
}

/// True when no marker of the set can reach into the window.
bool markers_outside(std::span<const Point> points, float half) {
    const Mapping &m = gstate().map;
    const float scale_x = std::fabs(m.window_to_view.x * m.ws_to_device.x);
    const float scale_y = std::fabs(m.window_to_view.y * m.ws_to_device.y);
    return !box_meets(points, m.window, safe_ratio(half, scale_x), safe_ratio(half, scale_y));
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
    return gdevice().polyline(kName, points);
}

int gfill_area(std::span<const Point> points) {
    constexpr const char *kName = "gfill_area";
    if (!workstation_open(kName)) return -1;
    const GraphicsState &s = gstate();
    if (!box_meets(points, s.map.window)) return 0;
    record_points(ObjectType::fill_area, points);
    return gdevice().fill_area(kName, points);
}

int gpolymarker(std::span<const Point> points) {
    if (!workstation_open("gpolymarker")) return -1;
    const float half = marker_half();
    if (markers_outside(points, half)) return 0;
    record_points(ObjectType::polymarker, points);
    gdevice().markers(points, half);
    return 0;
}

int gtext(const Point &position, std::string_view string) {
    if (!workstation_open("gtext")) return -1;
    if (string.empty() || !std::isfinite(position.x) || !std::isfinite(position.y)) return 0;
    record_text(ObjectType::text, 1, position, string);
    gdevice().text(position, string);
    return 0;
}

void gdraw_stroke(std::span<const Point> world) {
    (void)gdevice().stroke("gtext", world); // told there
}

int gclear_region(const Rect &world) {
    constexpr const char *kName = "gclear_region";
    if (!workstation_open(kName)) return -1;
    record_rect(ObjectType::clear_region, 1, world);
    return gdevice().clear_region(kName, world);
}

int gmessage(int level, std::string_view text) {
    if (!workstation_open("gmessage")) return -1;
    gnew_obj(ObjectType::message, level, text.size(), text.data());
    gdevice().message(text);
    return 0;
}
