#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <string>
#include <vector>

#include "graphics/kernel/gph.h"
#include "graphics/kernel/kernel.h"
#include "lib/text.h"
#include "plot/background.h"
#include "plot/map.h"
#include "plot/map_seam.h"
#include "plot/map_settings.h"
#include "plot/session.h"

namespace {

constexpr int kMapTransform = 2;
constexpr float kChordDegrees = 2.5F; ///< longitude step of latitude lines
constexpr float kSeamJump = 50;       ///< x step of a chord that crosses the seam, plane units
constexpr float kInset = 0.01F;       ///< labels from the edge, fraction of the domain width
constexpr float kPoleStop = 89;       ///< last latitude of meridians that end before the poles
constexpr float kMinSpacing = 0.05F;  ///< degrees; finer lines would be a grey area that takes for ever
constexpr int kCirclePoints = 49;
constexpr float kCircleStep = 7.5F; ///< degrees

struct GeoPoint {
    float lat, lon;
};

/// One latitude or longitude line: where it is labelled and how its labels stand.
struct GridLine {
    std::string label;
    HorizontalAlign horizontal;
    VerticalAlign vertical;
    Rect limits;
    float inset; ///< plane units
    bool is_latitude;

    void draw_chord(const GeoPoint &from, const GeoPoint &to) const;
    void label_edge(const Point &a, const Point &b) const;
    void label_at(const GeoPoint &place) const;
};

bool is_between(float value, float low, float high) {
    return value > low && value < high;
}

/// How far from a to b the coordinate passes `edge`; below 0 when it does not. The end a counts, b does not.
float crossing(float a, float b, float edge) {
    if ((a <= edge) == (b <= edge)) return -1;
    return (edge - a) / (b - a);
}

void GridLine::label_edge(const Point &a, const Point &b) const {
    Point place;
    if (is_latitude) {
        const float part = crossing(a.x, b.x, limits.xmin);
        place = {limits.xmin + inset, a.y + part * (b.y - a.y)};
        if (part < 0 || !is_between(place.y, limits.ymin, limits.ymax)) return;
    } else {
        const float part = crossing(a.y, b.y, limits.ymin);
        place = {a.x + part * (b.x - a.x), limits.ymin + inset};
        if (part < 0 || !is_between(place.x, limits.xmin, limits.xmax)) return;
    }
    GPH_text_align(horizontal, vertical);
    gtext(place, label);
}

void GridLine::draw_chord(const GeoPoint &from, const GeoPoint &to) const {
    Point a, b;
    if (MAP_tran(a.x, a.y, from.lat, from.lon) != 1 || MAP_tran(b.x, b.y, to.lat, to.lon) != 1) return;
    const float jump = b.x - a.x;
    if (std::abs(jump) > kSeamJump) {
        // The line enters again at the other side, where it is labelled too.
        const auto period = MAP_seam_period(b.y);
        if (!period) return;
        const float shift = std::copysign(*period, jump);
        label_edge({a.x + shift, a.y}, b);
        b.x -= shift;
    }
    gpolyline(std::array{a, b});
    label_edge(a, b);
}

void GridLine::label_at(const GeoPoint &place) const {
    Point point;
    if (MAP_tran(point.x, point.y, place.lat, place.lon) != 1) return;
    if (!is_between(point.x, limits.xmin, limits.xmax) || !is_between(point.y, limits.ymin, limits.ymax))
        return;
    GPH_text_align(kAlignCenter, is_latitude ? kAlignHalf : kAlignBase);
    gtext(point, label);
}

/// index x step
float nth(int index, float step) {
    return static_cast<float>(index) * step;
}

void draw_latitude(float lat, GridLine line, int extra) {
    line.label =
        lat == 0 ? "EQ" : format_text("%1.0f%c", static_cast<double>(std::abs(lat)), lat > 0 ? 'N' : 'S');
    const int chords = static_cast<int>(360 / kChordDegrees);
    for (int i = 0; i < chords; ++i)
        line.draw_chord({lat, nth(i, kChordDegrees) - 180}, {lat, nth(i + 1, kChordDegrees) - 180});
    if (extra != 0)
        for (int lon = -180; lon < 180; lon += extra) line.label_at({lat, static_cast<float>(lon)});
}

std::string meridian_label(float lon) {
    if (lon == 0) return "PM";
    if (std::abs(lon) == 180) return "DL";
    return format_text("%1.0f%c", static_cast<double>(std::abs(lon)), lon > 0 ? 'E' : 'W');
}

void draw_meridian(float lon, float lat_spacing, GridLine line, int extra) {
    line.label = meridian_label(lon);
    const int proj = MAP_get_proj();
    const bool stops = proj == kProjPolar || proj == kProjLambert || proj == kProjSatellite;
    const float end = stops ? std::floor(kPoleStop / lat_spacing) * lat_spacing : 90;
    const int chords = static_cast<int>(std::ceil(2 * end / lat_spacing - 0.001F));
    for (int i = 0; i < chords; ++i)
        line.draw_chord({nth(i, lat_spacing) - end, lon},
                        {std::min(nth(i + 1, lat_spacing) - end, end), lon});
    if (extra == 0) return;
    for (int lat = 0; lat < 90; lat += extra) {
        line.label_at({static_cast<float>(lat), lon});
        if (lat != 0) line.label_at({static_cast<float>(-lat), lon});
    }
}

/// Calls `draw` with 0, step, 2 step ... and with the same numbers below 0, as far as `inside` allows.
void both_sides(float step, const std::function<bool(float)> &inside,
                const std::function<void(float)> &draw) {
    for (const float sign : {1.0F, -1.0F})
        for (int i = sign > 0 ? 0 : 1; inside(sign * nth(i, step)); ++i) draw(sign * nth(i, step));
}

} // namespace

int MAP_lines(float lat_spacing, float lon_spacing) {
    if (!(lat_spacing >= kMinSpacing && lon_spacing >= kMinSpacing)) return -1;
    if (!is_map_projection(MAP_get_proj())) return 0;
    GPH_trans(kMapTransform);
    PLT_mess("Map-lalo: %.1f,%.1f", static_cast<double>(lat_spacing), static_cast<double>(lon_spacing));
    const int extra = std::clamp(std::abs(MAP_get_latlon().extra), 0, 360);
    const Rect limits = MAP_get_limits();
    GridLine line{.label = {},
                  .horizontal = kAlignLeft,
                  .vertical = kAlignHalf,
                  .limits = limits,
                  .inset = kInset * limits.width(),
                  .is_latitude = true};
    both_sides(
        lat_spacing, [](float lat) { return std::abs(lat) < 90; },
        [&](float lat) { draw_latitude(lat, line, extra); });
    line.horizontal = kAlignCenter;
    line.vertical = kAlignBase;
    line.is_latitude = false;
    // The date line is drawn once, from the east.
    both_sides(
        lon_spacing, [](float lon) { return lon > -180 && lon <= 180; },
        [&](float lon) { draw_meridian(lon, lat_spacing, line, extra); });
    return 0;
}

void MAP_draw_circle(float x, float y, float km) {
    std::vector<Point> arc;
    const auto finish = [&] {
        if (arc.size() >= 2) gpolyline(arc);
        arc.clear();
    };
    for (int i = 0; i < kCirclePoints; ++i) {
        Point point{kMissingF, kMissingF};
        MAP_offset(point.x, point.y, x, y, nth(i, kCircleStep), km);
        if (point == Point{kMissingF, kMissingF})
            finish();
        else
            arc.push_back(point);
    }
    finish();
}

float MAP_get_vert() {
    return GPH_get_win(kMapTransform).height();
}
