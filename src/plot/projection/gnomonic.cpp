/// Snyder, chapter 22, on the sphere.

#include "plot/projection/families.h"

namespace gnomonic {

namespace {
constexpr double kHorizon = 1e-6; // cosine; at 90 degrees from the centre the plane has no point left
} // namespace

PlanePoint forward(const ProjectionState &p, double lat, double lon) {
    const double sin_lat = std::sin(radians(lat)), cos_lat = std::cos(radians(lat));
    const double angle = radians(lon - p.lon0), cos_angle = std::cos(angle);
    const double cos_c = p.sin_lat0 * sin_lat + p.cos_lat0 * cos_lat * cos_angle;
    if (cos_c < kHorizon) return {};
    const double k = kEarthSphere / cos_c;
    return {k * cos_lat * std::sin(angle), k * (p.cos_lat0 * sin_lat - p.sin_lat0 * cos_lat * cos_angle),
            true};
}

GeoPoint inverse(const ProjectionState &p, double x, double y) {
    // The point's direction from the earth's centre, with the plane one radius away.
    const double towards_pole = kEarthSphere * p.sin_lat0 + y * p.cos_lat0;
    const double outwards = kEarthSphere * p.cos_lat0 - y * p.sin_lat0;
    return {degrees(std::atan2(towards_pole, std::hypot(outwards, x))),
            degrees(std::atan2(x, outwards)) + p.lon0, true};
}

} // namespace gnomonic
