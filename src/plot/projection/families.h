#pragma once
/// The projection families: constants once per domain, then a forward and an inverse transform by arithmetic
/// alone.
/// Sources: diagram, gnomonic, lambert, lambert_azimuthal, latlon, mercator, mollweide, orthographic, polar,
/// satellite.

#include <algorithm>
#include <cmath>

#include "plot/domain/plot_domain.h"

/// WGS-84 radii in plane units, for the satellite view on the ellipsoid.
inline constexpr double kEarthEquatorial = 63.78137;
inline constexpr double kEarthPolar = 63.56752;
inline constexpr double kEarthSphere = kEarthRadius;

/// What a family derives from a domain. Angles are degrees, lengths plane units; a family leaves the fields
/// that it does not use alone.
struct ProjectionState {
    int code = kProjNone;
    double lat0 = 0, lon0 = 0; ///< projection centre
    double sin_lat0 = 0, cos_lat0 = 1;
    double hemisphere = 1;    ///< 1 north, -1 south
    double scale = 1;         ///< polar: radius at 90 degrees from the pole; conic: R F
    double cone = 1;          ///< cone constant of the conic, negative when it opens to the south
    bool ellipsoid = false;   ///< satellite view
    bool scan_angles = false; ///< plane coordinates are scan angles, else their tangents
    double distance = 0;      ///< satellite from the earth's centre
    double tangent2 = 0;      ///< square of the tangent from the satellite to the equator
    double limb_cosine = 0;   ///< cosine of the central angle at which the limb lies
    double xmin = 0, ymin = 0, xfactor = 1, yfactor = 1; ///< linear diagrams
};

/// A plane position, or with `visible` false the missing value.
struct PlanePoint {
    double x = kMissingF, y = kMissingF;
    bool visible = false;
};

/// A geographic position; `visible` may be false beside a position where a transform is defined that way.
struct GeoPoint {
    double lat = kMissingF, lon = kMissingF;
    bool visible = false;
};

inline double radians(double degrees) {
    return degrees * kDegree;
}
inline double degrees(double radians) {
    return radians / kDegree;
}
/// One step of 360 degrees towards [-180, 180].
inline double step_into_range(double lon) {
    return lon > 180 ? lon - 360 : lon < -180 ? lon + 360 : lon;
}
/// As many steps as needed.
inline double bring_into_range(double lon) {
    if (lon > 180) return lon - 360 * std::ceil((lon - 180) / 360);
    if (lon < -180) return lon + 360 * std::ceil((-180 - lon) / 360);
    return lon;
}
/// Arc sine of a value that rounding may have carried past 1.
inline double safe_asin(double sine) {
    return std::asin(std::clamp(sine, -1.0, 1.0));
}

// Every `prepare` gives false when the domain's parameters make no projection. `forward` takes a longitude
// within
// [-180, 180].

/// Polar stereographic, the pole at (0, 0); the central meridian points down the plot in the north.
namespace polar {
[[nodiscard]] bool prepare(ProjectionState &p, const PlotDomain &domain);
PlanePoint forward(const ProjectionState &p, double lat, double lon);
GeoPoint inverse(const ProjectionState &p, double x, double y);
} // namespace polar

/// Cylindrical equidistant, in degrees.
namespace latlon {
PlanePoint forward(const ProjectionState &p, double lat, double lon);
GeoPoint inverse(const ProjectionState &p, double x, double y);
} // namespace latlon

namespace mercator {
PlanePoint forward(const ProjectionState &p, double lat, double lon);
GeoPoint inverse(const ProjectionState &p, double x, double y);
} // namespace mercator

/// Lambert conformal conic, the apex at (0, 0).
namespace lambert {
[[nodiscard]] bool prepare(ProjectionState &p, const PlotDomain &domain);
PlanePoint forward(const ProjectionState &p, double lat, double lon);
GeoPoint inverse(const ProjectionState &p, double x, double y);
} // namespace lambert

namespace orthographic {
PlanePoint forward(const ProjectionState &p, double lat, double lon);
GeoPoint inverse(const ProjectionState &p, double x, double y);
} // namespace orthographic

namespace gnomonic {
PlanePoint forward(const ProjectionState &p, double lat, double lon);
GeoPoint inverse(const ProjectionState &p, double x, double y);
} // namespace gnomonic

namespace mollweide {
PlanePoint forward(const ProjectionState &p, double lat, double lon);
GeoPoint inverse(const ProjectionState &p, double x, double y);
} // namespace mollweide

/// Lambert azimuthal equal-area.
namespace lambert_azimuthal {
PlanePoint forward(const ProjectionState &p, double lat, double lon);
GeoPoint inverse(const ProjectionState &p, double x, double y);
} // namespace lambert_azimuthal

/// View from a satellite over the equator.
namespace satellite {
[[nodiscard]] bool prepare(ProjectionState &p, const PlotDomain &domain);
PlanePoint forward(const ProjectionState &p, double lat, double lon);
GeoPoint inverse(const ProjectionState &p, double x, double y);
} // namespace satellite

/// Diagrams: `lat` and `lon` stand for the first and second data coordinate.
namespace diagram {
[[nodiscard]] bool prepare(ProjectionState &p, const PlotDomain &domain);
PlanePoint forward(const ProjectionState &p, double a, double b);
GeoPoint inverse(const ProjectionState &p, double x, double y);
} // namespace diagram
