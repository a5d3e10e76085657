#pragma once
/// Choosing levels and colours for the data of a picture, before anything of it is drawn.

#include <optional>
#include <span>
#include <string_view>

/// What a driver proposes; the user's resources may replace it.
struct LevelChoice {
    std::string_view colors;       ///< level list, or colours alone
    std::span<const float> values; ///< of colours alone; none: levels are base + k x interval
    float base = 0, interval = 0;  ///< of those, when interval is above 0
    float range_min = 0, range_max = 0;
};

/// Forgets the levels of the picture before and sets these (as colour fill), with the plot parameters and the
/// resources "color_fill", "con_interval" and "con_base" applied. Colours of the user's without values get
/// equal steps over the range of the driver's own levels; nothing is drawn below the first.
void CONT_choose_levels(const LevelChoice &choice);

/// What the resource "con_base" says: "v" the base, ">v" base and lower end, "<v" the upper end.
struct UserBase {
    std::optional<float> base, min, max;
};
UserBase CONT_user_base();
