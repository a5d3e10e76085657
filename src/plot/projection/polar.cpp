/// Snyder, chapter 21, polar aspect, on the sphere.

#include "plot/projection/families.h"

namespace polar {

namespace {
constexpr double kFarLimit = 75;       // degrees into the far hemisphere, beyond which points are drawn there
constexpr double kDefaultTrueLat = 60; // of the hemisphere
} // namespace

bool prepare(ProjectionState &p, const PlotDomain &domain) {
    const double true_lat = is_missing(domain.p3) ? p.hemisphere * kDefaultTrueLat : domain.p3;
    p.scale = kEarthSphere * (1 + p.hemisphere * std::sin(radians(true_lat)));
    return std::abs(true_lat) <= 90 && p.scale > kEarthSphere * 1e-6;
}

PlanePoint forward(const ProjectionState &p, double lat, double lon) {
    const double from_equator = std::max(lat * p.hemisphere, -kFarLimit);
    const double r = p.scale * std::tan(radians((90 - from_equator) / 2));
    const double angle = radians(lon - p.lon0);
    return {r * std::sin(angle), -p.hemisphere * r * std::cos(angle), true};
}

GeoPoint inverse(const ProjectionState &p, double x, double y) {
    const double lon = x == 0 && y == 0 ? 0 : degrees(std::atan2(x, -p.hemisphere * y));
    const double from_pole = 2 * degrees(std::atan(std::hypot(x, y) / p.scale));
    return {p.hemisphere * (90 - from_pole), lon + p.lon0, true};
}

} // namespace polar
