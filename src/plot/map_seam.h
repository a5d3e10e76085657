#pragma once
/// Lines that leave a projection at one side and enter it at the other.

#include <optional>

/// How far apart in x, in plane units, the two places of a point on the seam of the current projection are,
/// at height y. 0 for projections without a seam; nothing where a line must end at the seam, since no shift
/// joins its sides.
std::optional<float> MAP_seam_period(float y);
