#include "plot/background/reach.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "graphics/kernel/helpers.h"
#include "plot/map/current_map.h"

namespace {

/// Samples along each side of the window, between which the earth is not looked at.
constexpr int kSamples = 8;
/// Degrees that a line may bend out of the box around its ends, and that samples may miss.
constexpr float kMargin = 4;
/// Wider plots, and plots near a pole, show too much to leave anything out.
constexpr float kWidest = 40, kNearPole = 80;

float degrees_between(float lat_a, float lon_a, float lat_b, float lon_b) {
    const double a = lat_a * kDegree, b = lat_b * kDegree, east = (lon_b - lon_a) * kDegree;
    const double cosine = std::sin(a) * std::sin(b) + std::cos(a) * std::cos(b) * std::cos(east);
    return static_cast<float>(std::acos(std::clamp(cosine, -1.0, 1.0)) / kDegree);
}

/// Distance of `value` from a stretch, 0 inside it.
float beyond(float value, float low, float high) {
    return std::max({0.0F, low - value, value - high});
}

} // namespace

MapReach::MapReach() {
    const Rect window = GPH_get_win(kDataTransform);
    const float middle_x = (window.xmin + window.xmax) / 2, middle_y = (window.ymin + window.ymax) / 2;
    if (MAP_untran(lat_, lon_, middle_x, middle_y) != 1) return;
    float reach = 0;
    for (int i = 0; i <= kSamples; ++i) {
        const float part = static_cast<float>(i) / kSamples;
        const float x = window.xmin + part * window.width(), y = window.ymin + part * window.height();
        for (const Point &p :
             {Point{x, window.ymin}, Point{x, window.ymax}, Point{window.xmin, y}, Point{window.xmax, y}}) {
            float lat = 0, lon = 0;
            if (MAP_untran(lat, lon, p.x, p.y) != 1) return;
            reach = std::max(reach, degrees_between(lat_, lon_, lat, lon));
        }
    }
    reach += kMargin;
    if (reach > kWidest || std::abs(lat_) + reach > kNearPole) return;
    // The farthest meridian that a circle around the centre touches.
    const double sine = std::sin(reach * kDegree) / std::cos(lat_ * kDegree);
    lat_reach_ = reach;
    lon_reach_ = static_cast<float>(std::asin(std::min(sine, 1.0)) / kDegree) + kMargin;
    limited_ = true;
}

bool MapReach::misses(std::span<const MapPoint> points) const {
    if (!limited_ || points.empty()) return false;
    MapPoint low = points.front(), high = low;
    for (const MapPoint &p : points) {
        low = {std::min(low.lat, p.lat), std::min(low.lon, p.lon)};
        high = {std::max(high.lat, p.lat), std::max(high.lon, p.lon)};
    }
    if (!(high.lon - low.lon < 180)) return false; // around the date line, or no numbers
    if (beyond(lat_, low.lat, high.lat) > lat_reach_) return true;
    // Longitudes may be counted another turn round.
    constexpr std::array<float, 3> turns{-360, 0, 360};
    return std::ranges::all_of(
        turns, [&](float turn) { return beyond(lon_ + turn, low.lon, high.lon) > lon_reach_; });
}
