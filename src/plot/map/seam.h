#pragma once
/// Lines that leave a projection at one side and enter it at the other.

#include <optional>

#include "graphics/core/types.h"

/// Whether a line between two plane points of the current projection leaves it at one side and enters it at
/// the other: neighbours farther apart than `longest`, plane units. Then how far apart in x the two places of
/// a point on the seam are, signed as the jump is; 0 where no shift joins the sides and the line must end.
[[nodiscard]] std::optional<float> MAP_seam_jump(const Point &from, const Point &to, float longest);
