#include "plot/projection/families.h"

namespace satellite {

namespace {

constexpr double kDefaultDistance = 421.61, kDefaultDistance2 = 177754.98;
constexpr double kLongestDistance = 1e6;
// Square of the polar over the equatorial radius.
constexpr double kEarthRatio2 = (kEarthPolar * kEarthPolar) / (kEarthEquatorial * kEarthEquatorial);
constexpr float kScanMode = 1.0F;

GeoPoint inverse_sphere(const ProjectionState &p, double x, double y) {
    if (p.scan_angles) {
        x = std::tan(x / p.distance) * p.distance;
        y = std::tan(y / p.distance) * p.distance;
    }
    const double r2 = x * x + y * y + p.distance2;
    const double w = p.distance4 - r2 * p.tangent2;
    if (!(w >= 0)) return {}; // the line of sight passes the earth
    const double t = (p.distance2 - std::sqrt(w)) / r2;
    const double lat = safe_asin(y * t / kEarthSphere);
    return {degrees(lat), degrees(safe_asin(x * t / (std::cos(lat) * kEarthSphere))) + p.lon0, true};
}

GeoPoint inverse_ellipsoid(const ProjectionState &p, double x, double y) {
    const double alpha = p.scan_angles ? x / p.distance : std::atan(x / p.distance);
    const double beta = p.scan_angles ? y / p.distance : std::atan(y / p.distance);
    const double cos_alpha = std::cos(alpha), cos_beta = std::cos(beta), sin_beta = std::sin(beta);
    const double a = cos_alpha * p.distance * cos_beta;
    const double g = sin_beta * sin_beta / kEarthRatio2 + cos_beta * cos_beta;
    const double w = a * a - g * p.tangent2;
    if (!(w >= 0)) return {};
    const double t = (a - std::sqrt(w)) / g;
    const double sx = p.distance - cos_alpha * t * cos_beta;
    const double sy = std::sin(alpha) * t * cos_beta;
    const double sz = sin_beta * t;
    return {degrees(std::atan(sz / (std::hypot(sx, sy) * kEarthRatio2))),
            degrees(std::atan(sy / sx)) + p.lon0, true};
}

} // namespace

bool prepare(ProjectionState &p, const PlotDomain &domain) {
    const bool given = !is_missing(domain.p3);
    p.distance = given ? domain.p3 : kDefaultDistance;
    p.distance2 = given ? p.distance * p.distance : kDefaultDistance2;
    p.distance4 = p.distance2 * p.distance2;
    p.tangent2 = p.distance2 - kEarthEquatorial * kEarthEquatorial;
    p.limb_cosine = kEarthSphere / p.distance;
    p.scan_angles = domain.p4 == kScanMode;
    p.ellipsoid = domain.ellipsoid == 1;
    return p.distance > kEarthEquatorial && p.distance < kLongestDistance;
}

PlanePoint forward(const ProjectionState &p, double lat, double lon) {
    double centric = radians(lat), radius = kEarthSphere;
    if (p.ellipsoid) {
        centric = std::atan(kEarthRatio2 * std::tan(centric));
        const double cosine = std::cos(centric);
        radius = kEarthPolar / std::sqrt(1 - (1 - kEarthRatio2) * cosine * cosine);
    }
    const double angle = radians(lon - p.lon0), cos_lat = std::cos(centric);
    const double q = std::cos(angle) * cos_lat;
    if (q < p.limb_cosine) return {}; // behind the limb
    const double depth = p.distance - radius * q;
    const double sideways = radius * std::sin(angle) * cos_lat;
    double x = sideways / depth;
    double y = radius * std::sin(centric) / std::hypot(sideways, depth);
    if (p.scan_angles) {
        x = std::atan(x);
        y = std::atan(y);
    }
    return {x * p.distance, y * p.distance, true};
}

GeoPoint inverse(const ProjectionState &p, double x, double y) {
    return p.ellipsoid ? inverse_ellipsoid(p, x, y) : inverse_sphere(p, x, y);
}

} // namespace satellite
