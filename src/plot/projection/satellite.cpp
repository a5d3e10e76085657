/// Snyder, chapter 23, vertical perspective.

#include "plot/projection/families.h"

namespace satellite {

namespace {

constexpr double kDefaultDistance = 421.61;
constexpr double kLongestDistance = 1e6;
// Square of the polar over the equatorial radius.
constexpr double kEarthRatio2 = (kEarthPolar * kEarthPolar) / (kEarthEquatorial * kEarthEquatorial);
constexpr float kScanMode = 1.0F;

} // namespace

bool prepare(ProjectionState &p, const PlotDomain &domain) {
    p.distance = is_missing(domain.p3) ? kDefaultDistance : domain.p3;
    p.scan_angles = domain.p4 == kScanMode;
    p.ellipsoid = domain.ellipsoid == 1;
    const double equatorial = p.ellipsoid ? kEarthEquatorial : kEarthSphere;
    p.tangent2 = p.distance * p.distance - equatorial * equatorial;
    p.limb_cosine = kEarthSphere / p.distance;
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

// The line of sight, turned by two scan angles, meets the earth at its nearer crossing; a sphere is an
// ellipsoid whose radii are alike.
GeoPoint inverse(const ProjectionState &p, double x, double y) {
    const double ratio2 = p.ellipsoid ? kEarthRatio2 : 1;
    const double alpha = p.scan_angles ? x / p.distance : std::atan(x / p.distance);
    const double beta = p.scan_angles ? y / p.distance : std::atan(y / p.distance);
    const double cos_alpha = std::cos(alpha), cos_beta = std::cos(beta), sin_beta = std::sin(beta);
    const double a = cos_alpha * p.distance * cos_beta;
    const double g = sin_beta * sin_beta / ratio2 + cos_beta * cos_beta;
    const double w = a * a - g * p.tangent2;
    if (!(w >= 0)) return {}; // the line of sight passes the earth
    const double t = (a - std::sqrt(w)) / g;
    const double sx = p.distance - cos_alpha * t * cos_beta;
    const double sy = std::sin(alpha) * t * cos_beta;
    const double sz = sin_beta * t;
    return {degrees(std::atan(sz / (std::hypot(sx, sy) * ratio2))), degrees(std::atan2(sy, sx)) + p.lon0,
            true};
}

} // namespace satellite
