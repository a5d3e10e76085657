/// Snyder, chapter 7, on the sphere.

#include "plot/projection/families.h"

namespace mercator {

namespace {
constexpr double kHighestLat = 89.9; // the poles are infinitely far away
} // namespace

PlanePoint forward(const ProjectionState &p, double lat, double lon) {
    const double clamped = std::clamp(lat, -kHighestLat, kHighestLat);
    return {kEarthSphere * radians(step_into_range(lon - p.lon0)),
            -kEarthSphere * std::log(std::tan(radians(45 - clamped / 2))), true};
}

GeoPoint inverse(const ProjectionState &p, double x, double y) {
    return {90 - 2 * degrees(std::atan(std::exp(-y / kEarthSphere))),
            step_into_range(x / (kEarthSphere * kDegree) + p.lon0), true};
}

} // namespace mercator
