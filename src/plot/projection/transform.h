#pragma once
/// One projection chosen by its code: constants derived from a domain, and the transforms over them. No
/// state.

#include "plot/projection/families.h"

/// Constants of the domain's projection. `possible` is false when the parameters make no projection (the
/// transforms are then safe to call and show no point).
struct MapProjection {
    ProjectionState state;
    bool possible = true;
};
MapProjection derive_projection(const PlotDomain &domain);

/// True when the code has a transform.
[[nodiscard]] bool has_transform(int code);

/// Geographic to plane, and back; never an infinite or undefined number. Only for codes that have a
/// transform.
PlanePoint project(const MapProjection &projection, double lat, double lon);
GeoPoint unproject(const MapProjection &projection, double x, double y);

/// True when a picture can be drawn on the domain: finite numbers, a grid of at least one point with positive
/// spacing, latitudes within the poles, parameters that make a projection.
[[nodiscard]] bool is_possible_domain(const PlotDomain &domain);
