#pragma once
/// Ways on the sphere. Cells, storms and rings around a radar all go this one way, so they lie on each other.

#include <algorithm>
#include <cmath>

#include "plot/domain/plot_domain.h"

/// Degrees.
struct SpherePoint {
    double lat, lon;
};

/// A place from which great circles lead away.
class SphereOrigin {
public:
    SphereOrigin() = default;
    SphereOrigin(double lat, double lon)
        : sin_lat_(std::sin(lat * kDegree)), cos_lat_(std::cos(lat * kDegree)), lon_(lon) {}

    /// The point as far away as (east, north) is long, in plane units of 100 km, along the great circle that
    /// sets out in its direction. The longitude is not brought into range.
    [[nodiscard]] SpherePoint at(double east, double north) const {
        const double range = std::hypot(east, north);
        const double arc = range / static_cast<double>(kEarthRadius);
        const double shrink = range > 0 ? std::sin(arc) / range : 1.0 / static_cast<double>(kEarthRadius);
        const double cos_arc = std::cos(arc);
        const double lat = std::asin(std::clamp(cos_arc * sin_lat_ + north * shrink * cos_lat_, -1.0, 1.0));
        const double turn = std::atan2(east * shrink, cos_lat_ * cos_arc - north * shrink * sin_lat_);
        return {lat / kDegree, lon_ + turn / kDegree};
    }
    /// The point `km` away towards `azimuth`, degrees clockwise from north.
    [[nodiscard]] SpherePoint towards(double azimuth, double km) const {
        return at(km / static_cast<double>(kKmPerPlaneUnit) * std::sin(azimuth * kDegree),
                  km / static_cast<double>(kKmPerPlaneUnit) * std::cos(azimuth * kDegree));
    }

    /// The way to a point, the inverse of at(): how far away it is along the great circle, split into east
    /// and north by the direction in which the way sets out. Plane units.
    struct Way {
        double east, north;
    };
    [[nodiscard]] Way to(double lat, double lon) const {
        const double turn = (lon - lon_) * kDegree;
        const double sin_lat = std::sin(lat * kDegree), cos_lat = std::cos(lat * kDegree);
        const double east = cos_lat * std::sin(turn);
        const double north = cos_lat_ * sin_lat - sin_lat_ * cos_lat * std::cos(turn);
        const double across = std::hypot(east, north);
        const double arc = std::atan2(across, sin_lat_ * sin_lat + cos_lat_ * cos_lat * std::cos(turn));
        const double stretch = static_cast<double>(kEarthRadius) * (across > 0 ? arc / across : 1.0);
        return {east * stretch, north * stretch};
    }

private:
    double sin_lat_ = 0, cos_lat_ = 1; ///< of the place
    double lon_ = 0;                   ///< degrees
};
