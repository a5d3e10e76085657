#pragma once
/// The shapes of markers, as paths of connected lines.

#include <array>
#include <span>

#include "graphics/core/types.h"

/// In raster units, where y grows downwards.
struct MarkerShape {
    std::array<std::span<const Point>, 4> paths; ///< around (0, 0); unused ones are empty
    bool scaled = true;                          ///< in half sizes, else in device units
    bool upright = false;                        ///< has a top: is turned over where y grows upwards
};

/// Shape of a marker type, 1 to 9; no path for any other type.
const MarkerShape &marker_shape(int type);
