/// Snyder, chapter 12, equidistant cylindrical, on the sphere.

#include "plot/projection/families.h"

namespace latlon {

PlanePoint forward(const ProjectionState &p, double lat, double lon) {
    return {step_into_range(lon - p.lon0), lat, true};
}

GeoPoint inverse(const ProjectionState &p, double x, double y) {
    return {y, step_into_range(x + p.lon0), true};
}

} // namespace latlon
