#pragma once
/// One run of a radial as a single wedge, for radial sources that are not stored bin by bin.

#include <array>

#include "graphics/core/types.h"

/// polygon  inner first edge, outer first edge, outer second edge, inner second edge, closing point; product
/// plane of the
///          open product
/// steps    x and y of one bin along the first edge, then along the second edge
/// Fills the wedge of `run` bins in the colour of `value` and moves the inner corners to its outer end, ready
/// for the next run. 0, or -1 without drawing when the "sum" component is off.
[[nodiscard]] int NIDS_plot_WEDGE(std::array<Point, 5> &polygon, const std::array<float, 4> &steps, float run,
                                  float value);
