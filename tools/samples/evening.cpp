#include "samples/evening.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace samples {

namespace {

constexpr double kPolarLon = -105;

double polar_scale() {
    return kEarthKm * (1 + std::sin(60 * kRadian));
}

} // namespace

EarthWay earth_way(double from_lat, double from_lon, double lat, double lon) {
    const double a = lat * kRadian, a0 = from_lat * kRadian, step = (lon - from_lon) * kRadian;
    const double east = std::cos(a) * std::sin(step);
    const double north = std::cos(a0) * std::sin(a) - std::sin(a0) * std::cos(a) * std::cos(step);
    const double up = std::sin(a0) * std::sin(a) + std::cos(a0) * std::cos(a) * std::cos(step);
    const double azimuth = std::atan2(east, north) / kRadian;
    return {kEarthKm * std::atan2(std::hypot(east, north), up), azimuth < 0 ? azimuth + 360 : azimuth};
}

double Evening::dbz(double lat, double lon) const {
    constexpr double kNoEcho = -33, kReachKm = 460;
    const EarthWay way = earth_way(site_.lat, site_.lon, lat, lon);
    if (way.km > kReachKm || way.km <= 0) return kNoEcho;
    return scene_.dbz(way.km * std::sin(way.azimuth * kRadian), way.km * std::cos(way.azimuth * kRadian));
}

bool Evening::near(double lat, double lon) const {
    constexpr double kDegrees = 6;
    return std::abs(lat - site_.lat) < kDegrees && std::abs(lon - site_.lon) < kDegrees;
}

void Evening::place(const Cell &cell, double &lat, double &lon) const {
    const double angle = std::hypot(cell.x_km, cell.y_km) / kEarthKm, turn = std::atan2(cell.x_km, cell.y_km);
    const double a0 = site_.lat * kRadian;
    const double sine = std::sin(a0) * std::cos(angle) + std::cos(a0) * std::sin(angle) * std::cos(turn);
    lat = std::asin(sine) / kRadian;
    lon = site_.lon +
          std::atan2(std::sin(turn) * std::sin(angle) * std::cos(a0), std::cos(angle) - std::sin(a0) * sine) /
              kRadian;
}

unsigned summary_level(double dbz) {
    constexpr std::array<double, 6> steps{20, 30, 40, 45, 50, 55};
    return static_cast<unsigned>(std::ranges::count_if(steps, [dbz](double step) { return dbz >= step; }));
}

void Polar::forward(double lat, double lon, double &x, double &y) {
    const double r = polar_scale() * std::tan((90 - lat) / 2 * kRadian), turn = (lon - kPolarLon) * kRadian;
    x = r * std::sin(turn);
    y = -r * std::cos(turn);
}

void Polar::inverse(double x, double y, double &lat, double &lon) {
    lat = 90 - 2 * std::atan(std::hypot(x, y) / polar_scale()) / kRadian;
    lon = kPolarLon + std::atan2(x, -y) / kRadian;
}

} // namespace samples
