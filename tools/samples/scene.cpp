#include "samples/scene.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace samples {

namespace {

constexpr double kRadian = std::numbers::pi / 180.0;
constexpr double kKmPerMinutePerKnot = 1.852 / 60.0;
constexpr double kMetresPerSecondPerKnot = 0.5144;
constexpr double kNoEcho = -33.0;

/// East and north components of a motion given by where it comes from.
double east(double from_deg, double speed) {
    return -speed * std::sin(from_deg * kRadian);
}
double north(double from_deg, double speed) {
    return -speed * std::cos(from_deg * kRadian);
}

/// A smooth, repeatable ripple that keeps echoes from looking like drawn circles.
double ripple(double x, double y) {
    return std::sin(x * 0.31 + 1.7 * std::sin(y * 0.17)) + std::sin(y * 0.27 - 1.3 * std::sin(x * 0.13)) +
           0.6 * std::sin((x + y) * 0.61) + 0.5 * std::sin((x - 2 * y) * 0.43);
}

/// Reflectivity of a cell: steep on the inflow side, a tail of rain behind.
double cell_dbz(const Cell &cell, double x, double y) {
    const double along =
        ((x - cell.x_km) * std::sin(65 * kRadian) + (y - cell.y_km) * std::cos(65 * kRadian));
    const double across =
        ((x - cell.x_km) * std::cos(65 * kRadian) - (y - cell.y_km) * std::sin(65 * kRadian));
    const double stretch = along < 0 ? 1.0 : 2.2;
    const double d2 = (along * along) / (stretch * stretch) + across * across * 1.4;
    return cell.peak_dbz - 9.0 * d2 / (cell.radius_km * cell.radius_km);
}

} // namespace

Scene::Scene(double minutes) : minutes_(minutes) {
    const double move_x = east(kMotionFromDeg, kMotionKnots) * kKmPerMinutePerKnot * minutes;
    const double move_y = north(kMotionFromDeg, kMotionKnots) * kKmPerMinutePerKnot * minutes;
    cells_ = {{"A1", -95, -20, 63, 9, 48, true}, {"B2", -70, 38, 58, 8, 41, false},
              {"C3", -48, 88, 55, 7, 38, false}, {"D4", -118, -70, 60, 8, 45, true},
              {"E5", 42, -64, 51, 6, 30, false}, {"F6", -20, 128, 48, 6, 28, false}};
    for (Cell &cell : cells_) {
        cell.x_km += move_x;
        cell.y_km += move_y;
        cell.peak_dbz += 2.0 * std::sin(minutes / 14.0 + cell.radius_km);
    }
}

double Scene::dbz(double x, double y) const {
    double best = kNoEcho;
    for (const Cell &cell : cells_) best = std::max(best, cell_dbz(cell, x, y));
    // The squall line joins the cells; steady rain lies behind it.
    const double line_x = cells_[0].x_km + 0.42 * (y - cells_[0].y_km) - 0.0012 * (y - 20) * (y - 20) + 18;
    const double from_line = x - line_x;
    const double ends = std::max(0.0, std::abs(y - 10) - 110) * 0.35;
    const double width = from_line > 0 ? 5.0 : 11.0;
    best = std::max(best, 46 - 9 * (from_line / width) * (from_line / width) - ends);
    const double behind = from_line + 48;
    best = std::max(best, 31 - 9 * (behind / 26) * (behind / 26) - ends);
    best += 1.6 * ripple(x, y);
    return best < 4 ? kNoEcho : best;
}

double Scene::radial_velocity(double x, double y) const {
    const double range = std::hypot(x, y);
    if (range < 0.1) return 0;
    const Wind wind = environment_wind(std::min(30.0, 0.8 + range * 0.055), minutes_);
    double u = east(wind.from_deg, wind.knots) * kMetresPerSecondPerKnot;
    double v = north(wind.from_deg, wind.knots) * kMetresPerSecondPerKnot;
    for (const Cell &cell : cells_) {
        if (!cell.rotating) continue;
        // A Rankine vortex, 18 m/s at 3 km.
        const double dx = x - cell.x_km;
        const double dy = y - cell.y_km;
        const double r = std::max(0.3, std::hypot(dx, dy));
        const double speed = 18.0 * (r < 3 ? r / 3 : 3 / r);
        u += -speed * dy / r;
        v += speed * dx / r;
    }
    return (u * x + v * y) / range;
}

double Scene::top_kft(double x, double y) const {
    const double z = dbz(x, y);
    if (z < 10) return 0;
    double top = 8 + z * 0.45;
    for (const Cell &cell : cells_) {
        const double d2 = std::pow(x - cell.x_km, 2) + std::pow(y - cell.y_km, 2);
        top = std::max(top, cell.top_kft - 12 * d2 / std::pow(2.5 * cell.radius_km, 2));
    }
    return std::min(60.0, top);
}

double Scene::liquid(double x, double y) const {
    const double z = dbz(x, y);
    if (z < 10) return 0;
    return std::min(75.0, 0.0013 * std::pow(10.0, z * 0.0571 + 0.45) * top_kft(x, y) * 0.3);
}

double Scene::hour_rain_inch(double x, double y) const {
    constexpr int kSteps = 12;
    double inches = 0;
    for (int i = 0; i < kSteps; ++i) {
        const Scene earlier(minutes_ - 60.0 * i / kSteps);
        const double z = std::min(53.0, earlier.dbz(x, y));
        if (z > 5) inches += std::pow(std::pow(10.0, z / 10) / 300.0, 1.0 / 1.4) / 25.4 / kSteps;
    }
    return inches;
}

Wind environment_wind(double height_kft, double minutes) {
    return {175 + 65 * (1 - std::exp(-height_kft / 9)), 16 + 2.1 * height_kft -
                                                            0.02 * height_kft * height_kft +
                                                            3 * std::sin(minutes / 40 + height_kft / 5)};
}

} // namespace samples
