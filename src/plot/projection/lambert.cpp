/// Snyder, chapter 15, two standard parallels, on the sphere.

#include "plot/projection/families.h"

namespace lambert {

namespace {

constexpr double kDefaultTrueLat1 = 30, kDefaultTrueLat2 = 60;
constexpr double kFarLimit = 89;       // degrees into the far hemisphere
constexpr double kFlattestCone = 1e-4; // below, the cone is a cylinder and its apex out of reach

double tangent_from_pole(double lat) {
    return std::tan(radians(45 - lat / 2));
}

double cone_constant(double lat1, double lat2) {
    if (lat1 == lat2) return std::sin(radians(lat1));
    return (std::log(std::cos(radians(lat1))) - std::log(std::cos(radians(lat2)))) /
           (std::log(tangent_from_pole(lat1)) - std::log(tangent_from_pole(lat2)));
}

} // namespace

// The southern cone is the mirror image of the northern one, so there the true latitudes count from the
// equator towards the south pole, whether they were given so (as the defaults are) or as southern latitudes.
bool prepare(ProjectionState &p, const PlotDomain &domain) {
    double lat1 = kDefaultTrueLat1, lat2 = kDefaultTrueLat2;
    if (!is_missing(domain.p3)) {
        lat1 = domain.p3;
        lat2 = is_missing(domain.p4) ? lat1 : domain.p4;
    }
    if (std::abs(lat1) >= 90 || std::abs(lat2) >= 90) return false;
    if (p.hemisphere < 0 && lat1 + lat2 < 0) {
        lat1 = -lat1;
        lat2 = -lat2;
    }
    p.cone = cone_constant(lat1, lat2);
    if (!(std::abs(p.cone) > kFlattestCone)) return false;
    p.scale = kEarthSphere * std::cos(radians(lat1)) / (p.cone * std::pow(tangent_from_pole(lat1), p.cone));
    return std::isfinite(p.scale);
}

PlanePoint forward(const ProjectionState &p, double lat, double lon) {
    const double from_equator = std::max(lat * p.hemisphere, -kFarLimit);
    const double rho = p.scale * std::pow(tangent_from_pole(from_equator), p.cone);
    const double angle = p.cone * radians(step_into_range(lon - p.lon0));
    return {rho * std::sin(angle), -p.hemisphere * rho * std::cos(angle), true};
}

GeoPoint inverse(const ProjectionState &p, double x, double y) {
    // A cone that opens to the south has negative radii.
    const double side = p.cone < 0 ? -1 : 1;
    const double rho = side * std::hypot(x, y);
    const double angle = rho == 0 ? 0 : degrees(std::atan2(side * x, -side * p.hemisphere * y));
    const double from_pole = 2 * degrees(std::atan(std::pow(rho / p.scale, 1 / p.cone)));
    return {p.hemisphere * (90 - from_pole), angle / p.cone + p.lon0, true};
}

} // namespace lambert
