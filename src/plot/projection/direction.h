#pragma once
/// Directions on the earth and on the plane of a projection, all in degrees clockwise.

#include <optional>

#include "plot/projection/transform.h"

/// Where a direction from true north at plane point (x, y) points on the plane, from its y axis; not brought
/// into [0, 360). Nothing where the projection shows no place.
[[nodiscard]] std::optional<double> direction_on_plane(const MapProjection &projection, double direction,
                                                       double x, double y);
/// The other way: the direction from true north of a way on the plane, (right, up) from (x, y).
[[nodiscard]] std::optional<double> direction_from_north(const MapProjection &projection, double right,
                                                         double up, double x, double y);
