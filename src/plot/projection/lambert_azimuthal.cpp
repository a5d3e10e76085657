/// Snyder, chapter 24, on the sphere.

#include "plot/projection/families.h"

namespace lambert_azimuthal {

namespace {
constexpr double kAntipode = 1e-12; // of 1 + cosine of the arc: within ten metres of the antipode
constexpr double kTiny = 1e-10;
} // namespace

PlanePoint forward(const ProjectionState &p, double lat, double lon) {
    const double sin_lat = std::sin(radians(lat)), cos_lat = std::cos(radians(lat));
    const double angle = radians(lon - p.lon0), cos_angle = std::cos(angle);
    const double cos_c = p.sin_lat0 * sin_lat + p.cos_lat0 * cos_lat * cos_angle;
    if (1 + cos_c < kAntipode) return {};
    const double k = kEarthSphere * std::sqrt(2 / (1 + cos_c));
    return {k * cos_lat * std::sin(angle), k * (p.cos_lat0 * sin_lat - p.sin_lat0 * cos_lat * cos_angle),
            true};
}

GeoPoint inverse(const ProjectionState &p, double x, double y) {
    const double rho = std::hypot(x, y);
    const double m = rho / (2 * kEarthSphere);
    if (m > 1) return {};
    if (rho < kTiny) return {p.lat0, p.lon0, false}; // a position, though the status says none
    const double c = 2 * std::asin(m), sin_c = std::sin(c), cos_c = std::cos(c);
    const double sin_lat = std::clamp(p.cos_lat0 * sin_c * y / rho + p.sin_lat0 * cos_c, -1.0, 1.0);
    double lon = p.lon0;
    if (std::abs(std::abs(p.lat0) - 90) < kTiny) {
        lon += degrees(p.lat0 > 0 ? std::atan2(x, -y) : std::atan2(x, y));
    } else if (const double d = cos_c - p.sin_lat0 * sin_lat; d != 0) {
        lon += degrees(std::atan2(p.cos_lat0 * x * sin_c, rho * d));
    }
    return {degrees(std::asin(sin_lat)), lon, true};
}

} // namespace lambert_azimuthal
