#include <algorithm>
#include <cmath>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include "graphics/kernel/helpers.h"
#include "graphics/kernel/kernel.h"
#include "lib/report/message.h"
#include "plot/background/background_map.h"
#include "plot/background/curve_pen.h"
#include "plot/background/line_labels.h"
#include "plot/map/current_map.h"
#include "plot/map/seam.h"
#include "plot/map/settings.h"
#include "plot/session/plot_session.h"
#include "plot/session/status_text.h"

namespace {

constexpr float kChordDegrees = 2.5F; ///< longest step along a line
constexpr float kLongestChord = 10;   ///< plane units; the projection bends longer ones visibly
constexpr float kChordOfPlot = 0.1F;  ///< the same as a fraction of the plot's width
constexpr float kSeamJump = 50;       ///< x step of a chord that crosses the seam, plane units
constexpr float kSeamGap = 0.001F;    ///< degrees that lines end before the seam, to stay on their side
constexpr float kInset = 0.01F;       ///< labels from the edge, fraction of the domain width
constexpr float kAtEdge = 1e-4F;      ///< width of the edge that a line crosses, fraction of the domain width
constexpr float kPoleStop = 89;       ///< last latitude of meridians that end before the poles
constexpr float kMinSpacing = 0.05F;  ///< degrees; finer lines would be a grey area that takes for ever
constexpr int kCirclePoints = 49;
constexpr float kCircleStep = 7.5F; ///< degrees

bool is_between(float value, float low, float high) {
    return value > low && value < high;
}

/// How far from a to b the coordinate passes `edge`; below 0 when it does not. The end a counts, b does not.
float crossing(float a, float b, float edge) {
    if ((a <= edge) == (b <= edge)) return -1;
    return (edge - a) / (b - a);
}

/// index x step
float nth(int index, float step) {
    return static_cast<float>(index) * step;
}

/// Lines of one kind: their look is set by the caller, their labels wait until all lines are drawn.
struct GridLines {
    explicit GridLines(bool latitude) : is_latitude(latitude) {}
    bool is_latitude;
    Rect limits = MAP_get_limits();
    std::vector<LineLabel> at_edge, along;

    void draw(std::span<const MapPoint> places, const std::string &text, int line);
    void label_along(const MapPoint &place, const std::string &text, int line);

private:
    void label_edge(const Point &a, const Point &b, const std::string &text, int line);
};

void GridLines::label_edge(const Point &a, const Point &b, const std::string &text, int line) {
    const float inset = kInset * limits.width(), edge = kAtEdge * limits.width();
    if (is_latitude) {
        const float part = crossing(a.x, b.x, limits.xmin + edge);
        const Point place{limits.xmin + inset, a.y + part * (b.y - a.y)};
        if (part >= 0 && is_between(place.y, limits.ymin, limits.ymax))
            at_edge.push_back({place, text, kAlignLeft, kAlignHalf, line});
    } else {
        const float part = crossing(a.y, b.y, limits.ymin + edge);
        const Point place{a.x + part * (b.x - a.x), limits.ymin + inset};
        if (part >= 0 && is_between(place.x, limits.xmin, limits.xmax))
            at_edge.push_back({place, text, kAlignCenter, kAlignBase, line});
    }
}

void GridLines::draw(std::span<const MapPoint> places, const std::string &text, int line) {
    CurvePen pen(gpolyline, std::min(kLongestChord, kChordOfPlot * limits.width()));
    pen.keep_to(GPH_get_win(kDataTransform));
    pen.tell([&](const Point &a, const Point &b) { label_edge(a, b, text, line); });
    for (const MapPoint &place : places) pen.to(place);
}

void GridLines::label_along(const MapPoint &place, const std::string &text, int line) {
    Point point;
    if (MAP_tran(point.x, point.y, place.lat, place.lon) != 1) return;
    if (!is_between(point.x, limits.xmin, limits.xmax) || !is_between(point.y, limits.ymin, limits.ymax))
        return;
    along.push_back({point, text, kAlignCenter, is_latitude ? kAlignHalf : kAlignBase, line});
}

/// Once round the earth, from one side of the meridian where projections are torn to the other.
std::vector<MapPoint> parallel(float lat) {
    const float seam = MAP_get_domain().plon - 180;
    std::vector<MapPoint> places{{lat, seam + kSeamGap}};
    const float end = seam + 360 - kSeamGap;
    for (float lon = (std::floor(seam / kChordDegrees) + 1) * kChordDegrees; lon < end; lon += kChordDegrees)
        if (lon > seam + kSeamGap) places.push_back({lat, lon});
    places.push_back({lat, end});
    return places;
}

std::vector<MapPoint> meridian(float lon, float lat_spacing) {
    const int proj = MAP_get_proj();
    const bool stops = proj == kProjPolar || proj == kProjLambert || proj == kProjSatellite;
    const float end = stops ? std::floor(kPoleStop / lat_spacing) * lat_spacing : 90;
    const int chords = static_cast<int>(std::ceil(2 * end / kChordDegrees - 0.001F));
    std::vector<MapPoint> places;
    if (chords < 1) return places;
    const float step = 2 * end / static_cast<float>(chords);
    for (int i = 0; i <= chords; ++i) places.push_back({std::min(nth(i, step) - end, end), lon});
    return places;
}

std::string parallel_label(float lat) {
    return lat == 0 ? "EQ" : degree_text(std::abs(lat)) + (lat > 0 ? 'N' : 'S');
}

std::string meridian_label(float lon) {
    if (lon == 0) return "PM";
    if (std::abs(lon) == 180) return "DL";
    return degree_text(std::abs(lon)) + (lon > 0 ? 'E' : 'W');
}

void draw_parallel(float lat, int line, int extra, GridLines &lines) {
    const std::string text = parallel_label(lat);
    lines.draw(parallel(lat), text, line);
    if (extra != 0)
        for (int lon = -180; lon < 180; lon += extra)
            lines.label_along({lat, static_cast<float>(lon)}, text, line);
}

void draw_meridian(float lon, int line, float lat_spacing, int extra, GridLines &lines) {
    const std::string text = meridian_label(lon);
    lines.draw(meridian(lon, lat_spacing), text, line);
    if (extra == 0) return;
    for (int lat = 0; lat < 90; lat += extra) {
        lines.label_along({static_cast<float>(lat), lon}, text, line);
        if (lat != 0) lines.label_along({static_cast<float>(-lat), lon}, text, line);
    }
}

/// Calls `draw` with 0, step, 2 step ... and with the same numbers below 0, as far as `inside` allows, and
/// how many steps each is from 0.
void both_sides(float step, const std::function<bool(float)> &inside,
                const std::function<void(float, int)> &draw) {
    for (const float sign : {1.0F, -1.0F})
        for (int i = sign > 0 ? 0 : 1; inside(sign * nth(i, step)); ++i) draw(sign * nth(i, step), i);
}

} // namespace

int MAP_lines(float lat_spacing, float lon_spacing) {
    if (!(lat_spacing >= kMinSpacing && lon_spacing >= kMinSpacing)) {
        if (lat_spacing > 0 && lon_spacing > 0)
            MESS_print(kWarn, "MAP_lines: Lines less than %.2f degrees apart are not drawn\n",
                       static_cast<double>(kMinSpacing));
        return -1;
    }
    if (!is_map_projection(MAP_get_proj())) return 0;
    GPH_trans(kDataTransform);
    PLT_mess("Map-lalo: %.1f,%.1f", static_cast<double>(lat_spacing), static_cast<double>(lon_spacing));
    const int extra = std::clamp(std::abs(MAP_get_latlon().extra), 0, 360);
    GridLines parallels(true), meridians(false);
    both_sides(
        lat_spacing, [](float lat) { return std::abs(lat) < 90; },
        [&](float lat, int line) { draw_parallel(lat, line, extra, parallels); });
    // The date line is drawn once, from the east.
    both_sides(
        lon_spacing, [](float lon) { return lon > -180 && lon <= 180; },
        [&](float lon, int line) { draw_meridian(lon, line, lat_spacing, extra, meridians); });
    LineLabels labels;
    labels.draw_at_edge(parallels.at_edge, lat_spacing);
    labels.draw_at_edge(meridians.at_edge, lon_spacing);
    labels.draw_along(parallels.along);
    labels.draw_along(meridians.along);
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
        if (point == Point{kMissingF, kMissingF}) {
            finish();
            continue;
        }
        if (const auto seam = arc.empty() ? std::nullopt : MAP_seam_jump(arc.back(), point, kSeamJump)) {
            // The piece runs on over the seam, and enters again from as far beyond its other side.
            const Point before = arc.back();
            if (*seam != 0) arc.push_back({point.x - *seam, point.y});
            finish();
            if (*seam != 0) arc.push_back({before.x + *seam, before.y});
        }
        arc.push_back(point);
    }
    finish();
}

float MAP_get_vert() {
    return GPH_get_win(kDataTransform).height();
}
