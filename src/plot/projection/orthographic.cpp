/// Snyder, chapter 20, on the sphere.

#include "plot/projection/families.h"

namespace orthographic {

PlanePoint forward(const ProjectionState &p, double lat, double lon) {
    const double sin_lat = std::sin(radians(lat)), cos_lat = std::cos(radians(lat));
    const double angle = radians(lon - p.lon0), cos_angle = std::cos(angle);
    if (cos_lat * p.cos_lat0 * cos_angle + p.sin_lat0 * sin_lat < 0) return {}; // the far side
    return {kEarthSphere * cos_lat * std::sin(angle),
            kEarthSphere * (p.cos_lat0 * sin_lat - p.sin_lat0 * cos_lat * cos_angle), true};
}

GeoPoint inverse(const ProjectionState &p, double x, double y) {
    const double w = kEarthSphere * kEarthSphere - x * x - y * y;
    if (w < 0) return {};
    const double depth = std::sqrt(w);
    return {degrees(safe_asin((depth * p.sin_lat0 + y * p.cos_lat0) / kEarthSphere)),
            degrees(std::atan2(x, depth * p.cos_lat0 - y * p.sin_lat0)) + p.lon0, true};
}

} // namespace orthographic
