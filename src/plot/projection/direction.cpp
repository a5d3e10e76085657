#include "plot/projection/direction.h"

#include "plot/projection/sphere.h"

namespace {

constexpr double kProbeKm = 1;
/// A step on the plane this many times as long as the one the other way has crossed a seam.
constexpr double kTorn = 2;

struct Vector {
    double x = 0, y = 0;
    [[nodiscard]] double length() const { return std::hypot(x, y); }
};

/// Degrees clockwise from up; 0 for a vector without length.
double angle_of(const Vector &v) {
    return v.x == 0 && v.y == 0 ? 0 : degrees(std::atan2(v.x, v.y));
}

/// Ways of equal length on the earth, as they lie on the plane.
struct LocalAxes {
    Vector east, north;
};

/// How the plane moves with a step from `centre` towards (east, north), from a step each way. Nothing when
/// neither end is shown.
std::optional<Vector> probe(const MapProjection &projection, const SphereOrigin &origin,
                            const PlanePoint &centre, double east, double north) {
    constexpr double step = kProbeKm / 100; // plane units
    const auto shown = [&](double sign) {
        const SpherePoint place = origin.at(sign * step * east, sign * step * north);
        return project(projection, place.lat, place.lon);
    };
    const PlanePoint ahead = shown(1), behind = shown(-1);
    const Vector forth{ahead.x - centre.x, ahead.y - centre.y},
        back{centre.x - behind.x, centre.y - behind.y};
    if (!ahead.visible && !behind.visible) return std::nullopt;
    if (!behind.visible || back.length() > kTorn * forth.length()) return forth;
    if (!ahead.visible || forth.length() > kTorn * back.length()) return back;
    return Vector{(forth.x + back.x) / 2, (forth.y + back.y) / 2};
}

std::optional<LocalAxes> local_axes(const MapProjection &projection, double x, double y) {
    const GeoPoint place = unproject(projection, x, y);
    if (place.lat == kMissingF) return std::nullopt;
    const PlanePoint centre = project(projection, place.lat, place.lon);
    if (!centre.visible) return std::nullopt;
    const SphereOrigin origin(place.lat, place.lon);
    const auto east = probe(projection, origin, centre, 1, 0);
    const auto north = probe(projection, origin, centre, 0, 1);
    if (!east || !north) return std::nullopt;
    return LocalAxes{*east, *north};
}

/// Where true north points on the plane of a projection that keeps angles; nothing for the others.
std::optional<double> conformal_north(const ProjectionState &p, double x, double y) {
    switch (p.code) {
    case kProjMercator: return 0;
    case kProjPolar:
        // At the pole itself directions count from the meridian of Greenwich.
        if (x == 0 && y == 0) return -p.hemisphere * p.lon0;
        return angle_of({-p.hemisphere * x, -p.hemisphere * y});
    case kProjLambert: {
        // Towards the apex, or away from it when the cone opens to the other side.
        const double side = (p.cone < 0 ? -1 : 1) * p.hemisphere;
        return angle_of({-side * x, -side * y});
    }
    default: return std::nullopt;
    }
}

} // namespace

std::optional<double> direction_on_plane(const MapProjection &projection, double direction, double x,
                                         double y) {
    if (const auto north = conformal_north(projection.state, x, y)) return direction + *north;
    const auto axes = local_axes(projection, x, y);
    if (!axes) return std::nullopt;
    const double sine = std::sin(radians(direction)), cosine = std::cos(radians(direction));
    const double drawn = angle_of(
        {sine * axes->east.x + cosine * axes->north.x, sine * axes->east.y + cosine * axes->north.y});
    // Within half a turn of what was asked, so that it is unchanged where the plane's axes are true.
    return direction + std::remainder(drawn - direction, 360);
}

std::optional<double> direction_from_north(const MapProjection &projection, double right, double up, double x,
                                           double y) {
    const double drawn = angle_of({right, up});
    if (const auto north = conformal_north(projection.state, x, y)) return drawn - *north;
    const auto axes = local_axes(projection, x, y);
    if (!axes) return std::nullopt;
    const auto &[east, north] = *axes;
    // Solves right = east.x sin a + north.x cos a, up = east.y sin a + north.y cos a, but for a factor.
    const double area = east.x * north.y - north.x * east.y;
    if (area == 0) return std::nullopt;
    const double sine = (right * north.y - north.x * up) / area;
    const double cosine = (east.x * up - right * east.y) / area;
    const double found = angle_of({sine, cosine});
    return drawn + std::remainder(found - drawn, 360);
}
